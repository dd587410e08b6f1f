// A client checks what a document says and throws its own message with the document's name, line
// and column, as the reader does for a syntax error.

#include <cstdio>
#include <string>

#include "mlproc.h"

namespace {

const char kText[] = "<limits>\n  <limit name=\"speed\" value=\"900\"/>\n</limits>\n";

void checkLimits(MLDoc& doc) {
  MLDoc::Token token;
  MLDoc::ChildIterator top(&doc, token);
  while (top("limits"))
    for (MLDoc::ChildIterator limit(&doc, token); limit("limit");)
      if (doc.getInt(doc.getAttributeValue(token, "value")) > 100)
        doc.erro("A limit is at most 100.");
}

}  // namespace

int main() {
  MLDoc doc;
  doc.load("limits.xml", kText, sizeof kText - 1);
  try {
    checkLimits(doc);
  } catch (const TTT& failure) {
    std::string text;
    failure.makeMulti(text);
    std::printf("%s\n", text.c_str());
  }
}

// Prints:
// ...
