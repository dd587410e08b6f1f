// Attributes: what stays of a document after them and after a warning, and tokens of no document.

#include <gtest/gtest.h>

#include "tests/markup/reader_trace.h"
#include "tests/reference/markup_model.h"

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
    void warning(const TTT&, const Token& token, Attribute& attribute) override {
      EXPECT_EQ("a", str(token.name));
      EXPECT_EQ("1\t2", str(attribute.value));
      if (++warnings == 1) throw 7;
    }
  } doc;
  doc.put("<a x=\"1\t2\"><b/>");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  MLDoc::Attribute attribute;
  EXPECT_EQ(7, errorOf([&] { doc.attribute(token, attribute); }));
  EXPECT_EQ("<a x=\"1\t2\"><b/>", doc.content()) << "a hook that throws leaves the bytes";
  EXPECT_EQ(10U, doc.at());
  ASSERT_FALSE(doc.attribute(token, attribute));
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(doc.attribute(token, attribute));
    EXPECT_EQ("x", str(attribute.name));
    EXPECT_EQ("1 2", str(attribute.value));
    ASSERT_FALSE(doc.attribute(token, attribute));
    EXPECT_EQ(11U, doc.at());
  }
  EXPECT_EQ(2, doc.warnings);
  EXPECT_TRUE(doc.step(token));
  EXPECT_EQ("b", str(token.name));
}

TEST(Attribute, TagsThatEndTooEarly) {
  // Tokens of a caller's own, whose tag is cut: nothing behind their end is looked at.
  for (const std::string& text : {std::string("<a x=\"1\" >"), "<a " + std::string(600, 'n')}) {
    OpenDoc doc(text + ">");
    cc::reference::MarkupModel model(text + ">");
    MLDoc::Token token;
    cc::reference::MarkupToken same;
    ASSERT_TRUE(doc.step(token) && model.step(same));
    for (std::size_t cut = 0; cut < text.size(); ++cut) {
      token.tag.end = token.tag.begin + cut;
      same.tag.end = cut;
      doc.moveTo(0);
      model.position = 0;
      MLDoc::Attribute attribute;
      cc::reference::MarkupAttribute found;
      EXPECT_EQ(
          errorOf([&] { model.attribute(same, found) && model.attribute(same, found); }),
          errorOf([&] { doc.attribute(token, attribute) && doc.attribute(token, attribute); }))
          << cut;
      EXPECT_EQ(model.position, doc.at()) << cut;
    }
  }
}

TEST(Attribute, OfTokensThatHaveNoNameOrAnothers) {
  const struct {
    const char* text;
    int nameEnd;
  } rows[] = {{"<a x=\"1\">", 1}, {"<?xml x=\"1\"?>", 8}};
  for (const auto& row : rows) {
    OpenDoc doc(row.text);
    MLDoc::Token token;
    ASSERT_TRUE(doc.step(token));
    token.name = ChPair(doc.begin() + 1, doc.begin() + row.nameEnd);
    MLDoc::Attribute attribute;
    ASSERT_TRUE(doc.attribute(token, attribute));
    EXPECT_EQ("x", str(attribute.name));
  }
}

TEST(Attribute, TokensOfNoTextHaveNone) {
  OpenDoc doc("<a x=\"1\"/>");
  const std::string elsewhere = "<b y=\"2\"/>";
  MLDoc::Token token;  // the document's level
  for (const ChPair& tag :
       {ChPair(), ChPair(elsewhere.c_str()), ChPair(doc.begin(), doc.begin() + doc.size() + 1)}) {
    token.tag = tag;
    MLDoc::Attribute attribute;
    EXPECT_EQ(33, errorOf([&] { doc.attribute(token, attribute); }));
    EXPECT_EQ(33, errorOf([&] { doc.getAttributeValue(token, "y"); }));
    EXPECT_EQ(0U, doc.at());
  }
}

}  // namespace
