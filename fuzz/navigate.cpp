// Children, contents, attributes by name and values of a document, called in an order that the
// first part of the input decides.
#include "fuzz/fuzz.h"
#include "tests/markup/reader_trace.h"
#include "tests/reference/number_model.h"

namespace {

using cc::test::errorOf;
using cc::test::OpenDoc;

void values(OpenDoc& doc, const ChPair& raw) {
  std::string expected;
  const bool good = reference::unescape(raw, expected);
  ChArr decoded;
  fuzz::expect((errorOf([&] { doc.convertEscape(raw, decoded); }) < 0) == good);
  fuzz::expect(expected.c_str() == std::string_view(decoded.c_str()));
  const char* const begin = raw.begin ? raw.begin : doc.begin();
  const std::string tail(begin, doc.begin() + doc.size());
  const auto number = reference::wholeDouble(tail, raw.length());
  double value = 0;
  fuzz::expect((errorOf([&] { value = doc.getDouble(raw); }) < 0) == number.has_value());
  fuzz::expect(!number || fuzz::sameBits(value, *number));
}

void visit(OpenDoc& doc, MLDoc::Token& token, fuzz::Input& program) {
  MLDoc::ChildIterator child(&doc, token);
  while (child()) {
    fuzz::expect(token.opening && token.tag.end == doc.begin() + doc.at());
    const int choice = program.number(0, 3);
    if (choice == 0) values(doc, doc.getAttributeValue(token, program.text().c_str()));
    if (choice == 1 && !token.closing) values(doc, doc.content(token));
    if (choice == 2) visit(doc, token, program);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string_view order = input.part();
  fuzz::Input program(reinterpret_cast<const unsigned char*>(order.data()), order.size());
  OpenDoc doc(input.rest());
  for (int i = 0; i < 4; ++i) {
    MLDoc::Token token;
    errorOf([&] { visit(doc, token, program); });
    fuzz::expect(doc.at() <= doc.size());
  }
  return 0;
}
