// One message a line, in the order of their numbers; texts stand as they are, entities aside.
#include <cstdio>

#include "catalogue.h"

namespace cclng {

namespace {

std::string escaped(std::string_view text, bool quotes) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += quotes ? "&quot;" : "\"";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string attribute(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + escaped(value, true) + "\"";
}

// Lines after the first stand below its text; what would end the comment early is taken apart.
std::string comment(std::string_view text) {
  std::string out = "<!-- ";
  for (const char c : text) {
    if (c == '>' && out.size() >= 2 && out.compare(out.size() - 2, 2, "--") == 0) out += ' ';
    out += c;
    if (c == '\n') out += "     ";
  }
  return out + " -->\n";
}

}  // namespace

std::string write_catalogue(const Catalogue& catalogue) {
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  if (!catalogue.comment.empty()) out += comment(catalogue.comment);
  out +=
      "<dictionary" + attribute("name", catalogue.name) + attribute("language", catalogue.language);
  if (catalogue.givenStamp) out += attribute("stamp", hex(*catalogue.givenStamp));
  out += ">\n";
  for (const Message* message : catalogue.sorted()) {
    out += "  <message" + attribute("number", std::to_string(message->number));
    if (!message->note.empty()) out += attribute("note", message->note);
    out += ">" + escaped(message->text, false) + "</message>\n";
  }
  return out + "</dictionary>\n";
}

}  // namespace cclng
