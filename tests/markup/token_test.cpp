// The tokenizer: documents without a text, and hostile ones.

#include <gtest/gtest.h>

#include "tests/markup/reader_trace.h"
#include "tests/support/stride.h"

namespace {

using cc::test::errorOf;
using cc::test::OpenDoc;

TEST(Token, ADocumentWithoutTextIsAtItsEnd) {
  OpenDoc doc;
  MLDoc::Token token;
  EXPECT_FALSE(doc.step(token));
  doc.put("<a><b>");
  EXPECT_TRUE(doc.step(token));
  doc.release();
  EXPECT_FALSE(doc.step(token));
  EXPECT_EQ("1:1", doc.place());
  EXPECT_EQ(33, errorOf([&] {
              MLDoc::Attribute attribute;
              doc.attribute(MLDoc::Token(), attribute);
            }));
  doc.release();
  EXPECT_EQ(nullptr, doc.begin());
}

TEST(Token, HostileDocumentsTakeLinearTime) {
  // A search that ran to the end of the text for each of these would take minutes.
  const std::size_t size = 300'000U / cc::test::stride;
  for (const char* unit :
       {"<&\"", "<a \"\"/>", "<!---->", "<>", "<<", "</a\n>", "<a b=\"\tx\"/>", "<?\"\">"}) {
    std::string text;
    while (text.size() < size) text += unit;
    OpenDoc doc;
    doc.load(nullptr, text.data(), static_cast<int>(text.size()));
    MLDoc::Token token;
    std::size_t steps = 0;
    for (bool more = true; more; ++steps) {
      errorOf([&] {
        more = doc.step(token);
        if (more) doc.getAttributeValue(token, "none");
      });
    }
    EXPECT_LE(steps, text.size() / 2 + 1) << unit;
    EXPECT_EQ(text.size(), doc.at()) << unit;
  }
}

}  // namespace
