// Texts from documents and file names reach the output as printable text or JSON strings only.
#include "findings.h"

#include <algorithm>
#include <cstdio>

#include "diagnostics.h"
#include "messages.h"
#include "utf8io.h"
#include "utf8proc.h"

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

bool isFourByteCharacter(std::string_view text, std::size_t i) {
  if (text.size() - i < 4) return false;
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[i + k]); };
  const unsigned int second = byte(1);
  if (byte(0) < 0xF0 || byte(0) > 0xF4 || (second & 0xC0) != 0x80) return false;
  if ((byte(0) == 0xF0 && second < 0x90) || (byte(0) == 0xF4 && second > 0x8F)) return false;
  return (byte(2) & 0xC0) == 0x80 && (byte(3) & 0xC0) == 0x80;
}

// The number of bytes of the character at `i`, or 0 where the bytes are no UTF-8.
std::size_t characterSize(std::string_view text, std::size_t i) {
  if (isFourByteCharacter(text, i)) return 4;
  const auto lead = static_cast<unsigned char>(text[i]);
  const std::size_t n = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : 3;
  if (text.size() - i < n || strchk_utf8(text.data() + i, static_cast<unsigned int>(n))) return 0;
  unsigned short unit = 0;
  getch_utf8(unit, text.data() + i, text.data() + i + n);
  const bool overlong = (n == 2 && unit < 0x80) || (n == 3 && unit < 0x800);
  return overlong || (unit >= 0xD800 && unit <= 0xDFFF) ? 0 : n;
}

}  // namespace

void print(std::string_view text, FILE* stream) {
  utf8printf_s(stream, text.data(), text.data() + text.size());
}

std::string jsonString(std::string_view text) {
  std::string out = "\"";
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t n = characterSize(text, i);
    const char c = text[i];
    if (n == 0) {
      out += "\\ufffd";
    } else if (n == 1 && (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned int>(c));
      out += escape;
    } else {
      if (c == '"' || c == '\\') out += '\\';
      out.append(text, i, n);
    }
    i += n ? n : 1;
  }
  return out += '"';
}

void Printer::openDocument(const std::string& path, bool readable) {
  ++documents;
  firstFinding = true;
  if (form == Format::Json) {
    print(documents == 1 ? "{\"documents\":[\n" : ",\n", stream);
    print("{\"name\":" + jsonString(path) + ",\"readable\":" + (readable ? "true" : "false") +
              ",\"findings\":[",
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
            ",\"number\":" + std::to_string(number) + ",\"text\":" + jsonString(text) + "}";
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
