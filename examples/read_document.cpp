// A document is walked as a tree without building one: children by name, attributes by name, text.

#include <cstdio>

#include "mlproc.h"
#include "pairtag.h"

namespace {

const char kText[] =
    "<menu>\n"
    "  <item name=\"coffee\" size=\"Large\" price=\"2.50\">with &lt;milk&gt;</item>\n"
    "  <!-- <item name=\"tea\"/> -->\n"
    "  <item name=\"water\" size=\"small\" price=\"0\"/>\n"
    "</menu>\n";

const PairTag kSizes[] = {{"small", 1}, {"large", 2}, {nullptr, 0}};

void printItem(MLDoc& doc, MLDoc::Token& token) {
  ChArr name;
  doc.convertEscape(doc.getAttributeValue(token, "name"), name);
  const int size = kSizes[0].translate(doc.getAttributeValue(token, "size"));
  const double price = doc.getDouble(doc.getAttributeValue(token, "price"));
  ChArr note;
  if (!token.closing) doc.convertEscape(doc.content(token), note);
  std::printf("%s: size %d, %.2f, \"%s\"\n", name.c_str(), size, price, note.c_str());
}

}  // namespace

int main() {
  MLDoc doc;
  doc.load("menu", kText, sizeof kText - 1);
  MLDoc::Token token;
  MLDoc::ChildIterator top(&doc, token);
  while (top("menu"))
    for (MLDoc::ChildIterator item(&doc, token); item("item");) printItem(doc, token);
}

// Prints:
// coffee: size 2, 2.50, "with <milk>"
// water: size 1, 0.00, ""
