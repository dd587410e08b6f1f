// Attributes: what stays of a document after them and after a warning, and tokens of no document.

#include <gtest/gtest.h>

#include "tests/markup/reader_trace.h"

namespace {

using cc::test::errorOf;
using cc::test::OpenDoc;
using cc::test::str;

TEST(Attribute, AFinishedTagStartsAgainAndWarnsOnce) {
  class Counting : public OpenDoc {
   public:
    using OpenDoc::OpenDoc;
    int warnings = 0;

   protected:
    void warning(const TTT&, const Token&, Attribute&) override { ++warnings; }
  } doc;
  doc.put("<a x=\"1\t2\"><b/>");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  MLDoc::Attribute attribute;
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(doc.attribute(token, attribute));
    EXPECT_EQ("x", str(attribute.name));
    EXPECT_EQ("1 2", str(attribute.value));
    ASSERT_FALSE(doc.attribute(token, attribute));
    EXPECT_EQ(11U, doc.at());
  }
  EXPECT_EQ(1, doc.warnings);
  EXPECT_TRUE(doc.step(token));
  EXPECT_EQ("b", str(token.name));
}

TEST(Attribute, AThrowingHookLeavesTheBytes) {
  class Strict : public OpenDoc {
   protected:
    void warning(const TTT& message, const Token& token, Attribute& attribute) override {
      EXPECT_EQ(16, cc::test::errorNumber(message));
      EXPECT_EQ("a", str(token.name));
      EXPECT_EQ("a\tb\tc", str(attribute.value));
      throw 7;
    }
  } doc;
  doc.put("<a x=\"a\tb\tc\"/>");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  MLDoc::Attribute attribute;
  EXPECT_THROW(doc.attribute(token, attribute), int);
  EXPECT_EQ("<a x=\"a\tb\tc\"/>", doc.content());
  EXPECT_EQ(12U, doc.at());
  EXPECT_FALSE(doc.attribute(token, attribute));
}

TEST(Attribute, TagsThatEndTooEarly) {
  // Tokens of a caller's own, whose tag is cut: nothing behind their end is looked at.
  const struct {
    unsigned int cut;
    int error;
  } rows[] = {
      {0, 33}, {2, 33}, {3, 33}, {4, 15}, {5, 33}, {6, 6}, {7, 6},
  };
  for (const auto& row : rows) {
    OpenDoc doc("<a x=\"1\">");
    MLDoc::Token token;
    ASSERT_TRUE(doc.step(token));
    token.tag.end = token.tag.begin + row.cut;
    doc.moveTo(0);
    MLDoc::Attribute attribute;
    EXPECT_EQ(row.error, errorOf([&] { doc.attribute(token, attribute); })) << row.cut;
    EXPECT_EQ(row.cut, doc.at());
  }
  // A name of 512 bytes at the end of a cut tag is cut, not too long.
  OpenDoc doc("<a " + std::string(600, 'n') + ">");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  token.tag.end = token.tag.begin + 3 + 512;
  MLDoc::Attribute attribute;
  EXPECT_EQ(15, errorOf([&] { doc.attribute(token, attribute); }));
  ++token.tag.end;
  doc.moveTo(0);
  EXPECT_EQ(31, errorOf([&] { doc.attribute(token, attribute); }));
}

TEST(Attribute, ATagIsLookedThroughForItsNameWhereTheTokenHasNone) {
  OpenDoc doc("<a x=\"1\">");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  token.name.end = token.name.begin;
  MLDoc::Attribute attribute;
  ASSERT_TRUE(doc.attribute(token, attribute));
  EXPECT_EQ("x", str(attribute.name));
}

TEST(Attribute, TheNameOfAnInstructionIsNotThatOfAnEarlierElement) {
  OpenDoc doc("<?xml version=\"1.0\"?>");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  token.name = ChPair(doc.begin() + 1, doc.begin() + 8);  // as an element of another text left it
  MLDoc::Attribute attribute;
  ASSERT_TRUE(doc.attribute(token, attribute));
  EXPECT_EQ("version", std::string_view(attribute.name));
}

TEST(Attribute, TokensOfNoTextHaveNone) {
  OpenDoc doc("<a x=\"1\"/>");
  MLDoc::Token token;
  MLDoc::Attribute attribute;
  EXPECT_EQ(33, errorOf([&] { doc.attribute(token, attribute); })) << "the document's level";
  EXPECT_EQ(0U, doc.at());
  const std::string elsewhere = "<b y=\"2\"/>";
  token.tag = ChPair(elsewhere.c_str());
  EXPECT_EQ(33, errorOf([&] { doc.attribute(token, attribute); }));
  EXPECT_EQ(33, errorOf([&] { doc.getAttributeValue(token, "y"); }));
  token.tag = ChPair(doc.begin(), doc.begin() + doc.size() + 1);
  EXPECT_EQ(33, errorOf([&] { doc.attribute(token, attribute); })) << "an end behind the text";
  EXPECT_EQ(0U, doc.at());
}

}  // namespace
