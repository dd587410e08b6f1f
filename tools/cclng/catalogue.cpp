// What a catalogue says about itself, and the checks that compare it with itself and with another.
#include "catalogue.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace cclng {

namespace {

std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// 32-bit FNV-1a.
void hash(std::uint32_t& state, std::string_view bytes) {
  for (const char byte : bytes) {
    state = (state ^ static_cast<unsigned char>(byte)) * 16777619u;
  }
}

std::string shown(const std::string& sequence) {
  if (sequence.empty()) return "none";
  std::string out;
  for (const char kind : sequence) out += (out.empty() ? "%" : " %") + std::string(1, kind);
  return out;
}

std::string missing(int first, int last) {
  if (first == last) return "Message " + std::to_string(first) + " is missing.";
  return "Messages " + std::to_string(first) + " to " + std::to_string(last) + " are missing.";
}

}  // namespace

std::string hex(std::uint32_t stamp) {
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%08x", static_cast<unsigned int>(stamp));
  return digits.data();
}

std::vector<const Message*> Catalogue::sorted() const {
  std::vector<const Message*> list;
  for (const Message& message : messages) list.push_back(&message);
  std::stable_sort(list.begin(), list.end(),
                   [](const Message* a, const Message* b) { return a->number < b->number; });
  return list;
}

std::uint32_t Catalogue::stamp() const {
  if (givenStamp) return *givenStamp;
  std::uint32_t state = 2166136261u;
  hash(state, name + "\n");
  for (const Message* message : sorted()) {
    hash(state, std::to_string(message->number) + placeholders(message->text) + "\n");
  }
  return state;
}

std::vector<std::string> Catalogue::texts() const {
  std::vector<std::string> list;
  for (const Message* message : sorted()) list.push_back(message->text);
  return list;
}

const Message* Catalogue::find(int number) const {
  // Most documents hold their messages in the order of the numbers.
  const auto index = static_cast<std::size_t>(number);
  if (index < messages.size() && messages[index].number == number) return &messages[index];
  const auto it = std::find_if(messages.begin(), messages.end(),
                               [=](const Message& message) { return message.number == number; });
  return it == messages.end() ? nullptr : &*it;
}

std::string placeholders(std::string_view text, std::string* unknown) {
  std::string sequence;
  if (unknown) unknown->clear();
  for (std::size_t i = text.find('%'); i != std::string_view::npos; i = text.find('%', i + 2)) {
    const char kind = i + 1 < text.size() ? text[i + 1] : '\0';
    if (kind == '%') continue;
    if (kind != '\0' && std::string_view("dusi").find(kind) != std::string_view::npos) {
      sequence += kind;
    } else if (unknown && unknown->empty()) {
      // A character of several bytes is shown whole.
      std::size_t end = std::min(i + 2, text.size());
      while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
      *unknown = text.substr(i, end - i);
    }
  }
  return sequence;
}

void check_numbers(const Catalogue& catalogue, int count, Gaps gaps, Findings& findings) {
  if (catalogue.place.line == 0) return;
  int next = 0;
  const Message* previous = nullptr;
  for (const Message* message : catalogue.sorted()) {
    if (previous && message->number == previous->number) {
      findings.add(message->place, RuleNumberTwice,
                   "Message " + std::to_string(message->number) +
                       " stands twice; the first is on line " +
                       std::to_string(previous->place.line) + ".");
      continue;
    }
    previous = message;
    if (count >= 0 && message->number >= count) {
      findings.add(message->place, RuleMessageUnknown,
                   "The reference has no message " + std::to_string(message->number) + ".");
      continue;
    }
    if (gaps == Gaps::Wrong && message->number > next) {
      findings.add(catalogue.place, RuleMessageMissing, missing(next, message->number - 1));
    }
    next = message->number + 1;
  }
  if (gaps == Gaps::Allowed) return;
  if (next < count) findings.add(catalogue.place, RuleMessageMissing, missing(next, count - 1));
  if (count < 0 && next == 0) {
    findings.add(catalogue.place, RuleNoMessage, "The dictionary holds no message.");
  }
}

void check_placeholders(const Catalogue& catalogue, Findings& findings) {
  for (const Message& message : catalogue.messages) {
    std::string unknown;
    placeholders(message.text, &unknown);
    if (unknown.empty()) continue;
    findings.add(message.place, RulePlaceholderUnknown,
                 "Message " + std::to_string(message.number) + " holds " + quoted(unknown) +
                     ", which is no placeholder. Write a percent sign as \"%%\".");
  }
}

void check_name(const Catalogue& catalogue, const Catalogue& reference, Findings& findings) {
  if (catalogue.place.line == 0 || catalogue.name == reference.name) return;
  findings.add(catalogue.place, RuleNameDiffers,
               "The name is " + quoted(catalogue.name) + ", but that of the reference is " +
                   quoted(reference.name) + ".");
}

void check_against(const Catalogue& catalogue, const Catalogue& reference, Findings& findings) {
  if (catalogue.place.line == 0) return;
  check_name(catalogue, reference, findings);
  // Two derived stamps differ only where names, numbers or placeholders do.
  const bool given = catalogue.givenStamp || reference.givenStamp;
  if (given && catalogue.stamp() != reference.stamp()) {
    findings.add(catalogue.place, RuleStampDiffers,
                 "The stamp is " + hex(catalogue.stamp()) + ", but that of the reference is " +
                     hex(reference.stamp()) + ".");
  }
  check_numbers(catalogue, static_cast<int>(reference.messages.size()), Gaps::Wrong, findings);
  for (const Message& message : catalogue.messages) {
    const Message* original = reference.find(message.number);
    if (!original) continue;
    const std::string have = placeholders(message.text);
    const std::string want = placeholders(original->text);
    if (have == want) continue;
    findings.add(message.place, RulePlaceholdersDiffer,
                 "Message " + std::to_string(message.number) + " has the placeholders " +
                     shown(have) + ", but the reference has " + shown(want) + ".");
  }
}

void check_file_name(const Catalogue& catalogue, std::string_view path, Findings& findings) {
  const std::string_view file = path.substr(path.rfind('/') + 1);
  const std::size_t first = file.find('.');
  const std::size_t last = file.rfind('.');
  if (catalogue.place.line == 0 || first == last || file.substr(last) != ".xml") return;
  const std::string_view name = file.substr(0, first);
  const std::string_view language = file.substr(first + 1, last - first - 1);
  if (name != catalogue.name || language != catalogue.language) {
    findings.add(catalogue.place, RuleFileName,
                 "The document is " + quoted(catalogue.name) + " in " + quoted(catalogue.language) +
                     ", but its file name says " + quoted(name) + " in " + quoted(language) + ".");
  }
}

}  // namespace cclng
