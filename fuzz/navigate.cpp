// Children, contents, attributes by name and values of a document, called in an order that the
// first part of the input decides.
#include "fuzz/document_values.h"

static void visit(cc::test::OpenDoc& doc, MLDoc::Token& token, fuzz::Input& program) {
  MLDoc::ChildIterator child(&doc, token);
  while (child()) {
    fuzz::expect(token.opening && token.tag.end == doc.begin() + doc.at());
    const int choice = program.number(0, 3);
    if (choice == 0) fuzz::checkValues(doc, doc.getAttributeValue(token, program.text().c_str()));
    if (choice == 1 && !token.closing) fuzz::checkValues(doc, doc.content(token));
    if (choice == 2) visit(doc, token, program);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  fuzz::Input program(input.part());
  cc::test::OpenDoc doc(input.rest());
  for (int i = 0; i < 4; ++i) {
    MLDoc::Token token;
    cc::test::errorOf([&] { visit(doc, token, program); });
    fuzz::expect(doc.at() <= doc.size());
  }
  return 0;
}
