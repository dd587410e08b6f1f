// Two catalogues side by side, message by message.
#include <algorithm>
#include <cstdio>
#include <set>

#include "catalogue.h"
#include "commands.h"
#include "diagnostics.h"
#include "json.h"

namespace cclng {

namespace {

struct Counts {
  std::size_t translated = 0;
  std::size_t same = 0;
  std::size_t missing = 0;
};

Counts count(const Catalogue& catalogue, const Catalogue& reference) {
  Counts counts;
  for (const Message& original : reference.messages) {
    const Message* message = catalogue.find(original.number);
    if (message && message->text == original.text) {
      ++counts.same;
    } else if (!message || message->text.empty()) {
      ++counts.missing;
    } else {
      ++counts.translated;
    }
  }
  return counts;
}

std::string row(const std::string& document, const Catalogue& catalogue, std::size_t texts,
                const Counts& counts) {
  char numbers[96];
  std::snprintf(numbers, sizeof numbers, "  %5zu  %10zu  %5zu  %7zu  ", texts, counts.translated,
                counts.same, counts.missing);
  std::string language = tools::printable(catalogue.language);
  language.resize(std::max<std::size_t>(language.size(), 8), ' ');
  return language + numbers + tools::printable(document) + "\n";
}

std::string record(const std::string& document, const Catalogue& catalogue, std::size_t texts,
                   const Counts& counts) {
  return "{\"name\":" + tools::json_string(document) +
         ",\"language\":" + tools::json_string(catalogue.language) +
         ",\"texts\":" + std::to_string(texts) +
         ",\"translated\":" + std::to_string(counts.translated) +
         ",\"same\":" + std::to_string(counts.same) +
         ",\"missing\":" + std::to_string(counts.missing) + "}";
}

std::string change(const char* what, int number, const std::string& text) {
  return std::string(what) + " " + std::to_string(number) + ": \"" + tools::printable(text) + "\"";
}

}  // namespace

int stats(std::vector<std::string> documents, std::string reference, bool json) {
  if (reference.empty()) reference = documents.front();
  documents.erase(std::remove(documents.begin(), documents.end(), reference), documents.end());
  int worst = tools::ExitClean;
  const Catalogue original = load_checked(reference, worst);
  if (worst != tools::ExitClean) return worst;

  const std::size_t texts = original.messages.size();
  std::string out = json ? "{\"reference\":" + tools::json_string(reference) + ",\"documents\":["
                         : "language  texts  translated   same  missing  document\n";
  const char* between = "\n";
  for (const std::string& document : documents) {
    int code = tools::ExitClean;
    const Catalogue catalogue = load_partial(document, original, code);
    worst = std::max(worst, code);
    if (code != tools::ExitClean) continue;
    const Counts counts = count(catalogue, original);
    if (json) {
      out += between + record(document, catalogue, texts, counts);
      between = ",\n";
    } else {
      out += row(document, catalogue, texts, counts);
    }
  }
  if (json) out += "]}\n";
  return std::max(worst, deliver("", out));
}

int diff(const std::string& older, const std::string& newer) {
  int code = tools::ExitClean;
  int other = tools::ExitClean;
  const Catalogue before = load_any(older, code);
  const Catalogue after = load_any(newer, other);
  code = std::max(code, other);
  if (code != tools::ExitClean) return code;

  std::set<int> numbers;
  for (const Message& message : before.messages) numbers.insert(message.number);
  for (const Message& message : after.messages) numbers.insert(message.number);
  std::string out;
  for (const int number : numbers) {
    const Message* left = before.find(number);
    const Message* right = after.find(number);
    if (!left) {
      out += change("added", number, right->text) + "\n";
    } else if (!right) {
      out += change("removed", number, left->text) + "\n";
    } else if (left->text != right->text) {
      out +=
          change("changed", number, left->text) + " -> \"" + tools::printable(right->text) + "\"\n";
    }
  }
  code = deliver("", out);
  return code != tools::ExitClean || out.empty() ? code : static_cast<int>(tools::ExitFindings);
}

}  // namespace cclng
