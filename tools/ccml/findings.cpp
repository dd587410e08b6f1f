// Texts from documents and file names reach the output as printable text or JSON strings only.
#include "findings.h"

#include <algorithm>
#include <cstdio>

#include "diagnostics.h"
#include "json.h"
#include "messages.h"
#include "utf8io.h"

namespace ccml {

namespace {

// A message of several lines as one: a line that ends without a full stop gets a semicolon.
std::string oneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c != '\n') {
      line += c;
    } else if (!line.empty()) {
      line += line.back() == '.' ? " " : "; ";
    }
  }
  return line;
}

const char* nameOf(Severity severity) { return severity == Severity::Error ? "error" : "warning"; }

}  // namespace

void print(std::string_view text, FILE* stream) {
  utf8printf_s(stream, text.data(), text.data() + text.size());
}

void Printer::openDocument(const std::string& path, bool readable) {
  ++documents;
  firstFinding = true;
  if (form == Format::Json) {
    print(documents == 1 ? "{\"documents\":[\n" : ",\n", stream);
    print("{\"name\":" + tools::json_string(path) +
              ",\"readable\":" + (readable ? "true" : "false") + ",\"findings\":[",
          stream);
  }
}

void Printer::finding(const std::string& path, const Place* place, const Finding& found) {
  ++(found.severity == Severity::Error ? errors : warnings);
  const std::string text = oneLine(textOf(found.message));
  std::string line;
  if (form == Format::Text) {
    line = tools::printable(path);
    if (place) line += ":" + std::to_string(place->line) + ":" + std::to_string(place->column);
    line += std::string(": ") + nameOf(found.severity) + ": " + tools::printable(text) + "\n";
  } else {
    int dictionary = 0;
    int number = 0;
    found.message.getErrorCode(&dictionary, &number);
    line = firstFinding ? "\n{" : ",\n{";
    if (place)
      line += "\"line\":" + std::to_string(place->line) +
              ",\"column\":" + std::to_string(place->column) + ",";
    line += std::string("\"severity\":\"") + nameOf(found.severity) +
            "\",\"dictionary\":" + std::to_string(dictionary) +
            ",\"number\":" + std::to_string(number) + ",\"text\":" + tools::json_string(text) + "}";
  }
  firstFinding = false;
  print(line, stream);
}

void Printer::document(const std::string& path, const Document& read, Findings& findings) {
  openDocument(path, true);
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.offset < b.offset; });
  PlaceCounter places(read);
  for (const Finding& found : findings) {
    const Place place = places.placeOf(found.offset);
    finding(path, &place, found);
  }
  if (!findings.empty()) ++withFindings;
  if (form == Format::Json) print("]}", stream);
}

void Printer::unreadable(const std::string& path, const TTT& failure) {
  openDocument(path, false);
  finding(path, nullptr, {0, Severity::Error, failure});
  ++unreadables;
  ++withFindings;
  if (form == Format::Json) print("]}", stream);
}

void Printer::finish(bool summary) {
  if (form == Format::Json) {
    print(documents == 0 ? "{\"documents\":[" : "", stream);
    print("],\n\"summary\":{\"documents\":" + std::to_string(documents) + ",\"withFindings\":" +
              std::to_string(withFindings) + ",\"errors\":" + std::to_string(errors) +
              ",\"warnings\":" + std::to_string(warnings) +
              ",\"unreadable\":" + std::to_string(unreadables) + "}}\n",
          stream);
  } else if (summary) {
    TTT message = own(MsgSummary);
    message << documents << withFindings << errors << warnings;
    print(textOf(message) + "\n", stream);
  }
}

int Printer::exitCode() const {
  if (unreadables) return tools::ExitUnreadable;
  return errors || warnings ? tools::ExitFindings : tools::ExitClean;
}

}  // namespace ccml
