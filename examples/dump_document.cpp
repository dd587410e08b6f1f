// Every element of a document in order, one a line: its depth, name, attributes and plain text,
// with entities decoded. The document is stepped through; nothing is built.

#include <cstdio>
#include <string>
#include <string_view>

#include "charr.h"
#include "mlproc.h"

namespace {

constexpr std::string_view kSpecial = "\\\n\r\t";
constexpr std::string_view kLetters = "\\nrt";

// A value on one line: backslashes, line ends and tabs as in C.
void print(const char* label, const ChPair& name, MLDoc& doc, const ChPair& raw) {
  ChArr value;
  doc.convertEscape(raw, value);
  std::string line;
  for (const char* p = value.c_str(); *p; ++p) {
    const std::size_t special = kSpecial.find(*p);
    if (special != kSpecial.npos) line += '\\';
    line += special != kSpecial.npos ? kLetters[special] : *p;
  }
  std::printf("%s%.*s=%s", label, static_cast<int>(name.length()), name.begin, line.c_str());
}

void dump(MLDoc& doc) {
  MLDoc::Token token;
  MLDoc::Attribute attribute;
  ChPair start;  // the start tag just read, or null
  while (doc.step(token)) {
    if (token.type == MLDoc::Token::Element && token.opening) {
      std::printf("\n%d %.*s", token.depth + (token.closing ? 1 : 0),
                  static_cast<int>(token.name.length()), token.name.begin);
      while (doc.attribute(token, attribute)) print("\t@", attribute.name, doc, attribute.value);
    } else if (token.type == MLDoc::Token::Element && start.begin) {
      print("\t", ChPair(), doc, ChPair(start.end, token.tag.begin));
    }
    start = token.opening && !token.closing ? token.tag : ChPair();
  }
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  MLDoc doc;
  try {
    doc.load(argc > 1 ? argv[1] : "servers.xml");
    dump(doc);
  } catch (const TTT& failure) {
    std::string text;
    failure.makeMulti(text);
    std::fprintf(stderr, "%s\n", text.c_str());
    return 1;
  }
}
