// Attributes: shapes, trimming, errors with the place where reading stopped, and the warning.

#include <gtest/gtest.h>

#include "tests/markup/reader_trace.h"

namespace {

using cc::test::errorOf;
using cc::test::OpenDoc;
using cc::test::str;
using cc::test::traceOf;

std::string letters(std::size_t n) { return std::string(n, 'n'); }

// What is read of the attributes of one tag: the walk's text behind the tag itself.
std::string attributesOf(const std::string& tag) {
  const std::string trace = traceOf(tag);
  const std::size_t begin = trace.find(") ");
  const std::size_t end = trace.rfind("\nend");
  return begin == std::string::npos ? "" : trace.substr(begin + 2, end - begin - 2);
}

TEST(Attribute, ShapesAndErrors) {
  const struct {
    std::string tag, expected;
  } rows[] = {
      // None.
      {"<a>", ""},
      {"<a/>", ""},
      {"<a >", ""},
      {"<a />", ""},
      {"</a >", ""},
      {"<?xml?>", ""},
      {"<a/ >", ""},
      // Spaces around everything, or none.
      {"<a x=\"1\">", "x=1"},
      {"<a x = \"1\" >", "x=1"},
      {"<a\tx\r\n=\n\"1\"/>", "x=1"},
      {"<a b=\"1\"c=\"2\">", "b=1 c=2"},
      {"<a/b x=\"1\">", "x=1"},
      {"<a x=\"\" y=\"\">", "x= y="},
      {"</a x=\"1\">", "x=1"},
      {"<a x=\"'<>/=?\">", "x='<>/=?"},
      {"<a x=\"&quot;\" x=\"2\">", "x=&quot; x=2"},
      {"<?xml version=\"1.0\" encoding=\"UTF-8\" ?>", "version=1.0 encoding=UTF-8"},
      {"<a 0=\"1\" .:_=\"2\" <=\"3\">", "0=1 .:_=2 <=3"},
      // What ends the search for another one.
      {"<a x=\"1\"/y=\"2\">", "x=1"},
      {"<a x=\"1\" -y=\"2\">", "x=1"},
      {"<a x=\"1\" !y=\"2\">", "x=1"},
      {"<a x=\"1\" ?y=\"2\">", "x=1"},
      // Names.
      {"<a x>", "!1 @5 1:6"},
      {"<a x/>", "!1 @5 1:6"},
      {"<a x&=\"1\">", "!1 @5 1:6"},
      {"<a x\"1\">", "!1 @5 1:6"},
      {"<a x\xC3\xA9=\"1\">", "!1 @5 1:6"},
      {"<a \"1\">", "!2 @4 1:5"},
      {"<a ='1'>", "!2 @4 1:5"},
      {"<a x=\"1\" &>", "x=1 !2 @10 1:11"},
      {"<a " + letters(511) + "=\"1\">", letters(511) + "=1"},
      {"<a " + letters(512) + "=\"1\">", "!31 @515 1:516"},
      {"<a <" + letters(511) + "=\"1\">", "!31 @515 1:516"},
      // Equals signs and quotes.
      {"<a x y=\"1\">", "!5 @6 1:7"},
      {"<a x >", "!5 @6 1:7"},
      {"<a x \"1\">", "!5 @6 1:7"},
      {"<a x==\"1\">", "!13 @6 1:7"},
      {"<a x= =\"1\">", "!13 @7 1:8"},
      {"<a x = = \"1\">", "!13 @8 1:9"},
      {"<a x=1>", "!18 @6 1:7"},
      {"<a x='1'>", "!18 @6 1:7"},
      {"<a x=>", "!18 @6 1:7"},
      {"<a x='\" y=\">'>", "!18 @6 1:7"},
      // Line breaks are trimmed, other control bytes become spaces, with one warning for a value.
      {"<a x=\"\r\nabc\r\n\">", "x=abc"},
      {"<a x=\"\r\n\n\r\">", "x="},
      {"<a x=\"\n a \n\">", "x= a "},
      {"<a x=\"a\nb\">", "w x x=a b"},
      {"<a x=\"a\tb\tc\">", "w x x=a b c"},
      {"<a x=\"\tabc\t\">", "w x x= abc "},
      {"<a x=\"\n\t\n\">", "w x x= "},
      {"<a x=\"\x01\" y=\"\x1F\" z=\"\x7F\x80\">", "w x x=  w y y=  z=\x7F\x80"},
      {std::string("<a x=\"\0\">", 9), "w x x= "},
  };
  for (const auto& row : rows) EXPECT_EQ(row.expected, attributesOf(row.tag)) << row.tag;
}

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
    const char* text;
    unsigned int cut;
    int error;
    unsigned int at;
  } rows[] = {
      {"<a x=\"1\">", 0, 33, 0},  // nothing was read
      {"<a x=\"1\">", 2, 33, 2}, {"<a x=\"1\">", 3, 33, 3}, {"<a x=\"1\">", 4, 15, 4},
      {"<a x=\"1\">", 5, 33, 5}, {"<a x=\"1\">", 6, 6, 6},  {"<a x=\"1\">", 7, 6, 7},
  };
  for (const auto& row : rows) {
    OpenDoc doc(row.text);
    MLDoc::Token token;
    ASSERT_TRUE(doc.step(token));
    token.tag.end = token.tag.begin + row.cut;
    doc.moveTo(0);
    MLDoc::Attribute attribute;
    EXPECT_EQ(row.error, errorOf([&] { doc.attribute(token, attribute); })) << row.cut;
    EXPECT_EQ(row.at, doc.at()) << row.cut;
  }
  // A name of 512 bytes at the end of a cut tag is cut, not too long.
  OpenDoc doc("<a " + letters(600) + ">");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  token.tag.end = token.tag.begin + 3 + 512;
  MLDoc::Attribute attribute;
  EXPECT_EQ(15, errorOf([&] { doc.attribute(token, attribute); }));
  ++token.tag.end;
  doc.moveTo(0);
  EXPECT_EQ(31, errorOf([&] { doc.attribute(token, attribute); }));
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
  EXPECT_EQ(0U, doc.at());
}

}  // namespace
