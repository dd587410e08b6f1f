// A class of one's own hears of what the reader lets pass: control bytes in a value, each read as
// a space.

#include <cstdio>
#include <string>

#include "mlproc.h"

namespace {

class WarnedDoc : public MLDoc {
 public:
  int warnings = 0;

 protected:
  void warning(const TTT& message, const Token&, Attribute& attribute) override {
    ++warnings;
    TTT whole = message;
    formMessage(whole);  // adds the name of the document, the line and the column
    std::string shown;
    whole.makeMulti(shown);
    std::printf("%.*s: %s\n", static_cast<int>(attribute.name.length()), attribute.name.begin,
                shown.c_str());
  }
};

const char kText[] = "<note title=\"two\nlines\" author=\"Ada\"/>";

}  // namespace

int main() {
  WarnedDoc doc;
  doc.load("note", kText, sizeof kText - 1);
  MLDoc::Token token;
  doc.step(token);
  for (MLDoc::Attribute attribute; doc.attribute(token, attribute);)
    std::printf("%.*s\n", static_cast<int>(attribute.value.length()), attribute.value.begin);
  std::printf("%d warning\n", doc.warnings);
}

// Prints:
// title: An attribute value contains line breaks or control characters; each was read as a space.
// File: note
// Line 2, column 7
// two lines
// Ada
// 1 warning
