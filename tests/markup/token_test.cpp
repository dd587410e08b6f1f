// The tokenizer: every shape of markup and every error with the place where reading stopped.

#include <gtest/gtest.h>

#include "tests/markup/reader_trace.h"

namespace {

using cc::test::errorOf;
using cc::test::OpenDoc;
using cc::test::str;
using cc::test::traceOf;

struct Row {
  std::string text;
  std::string trace;
};

std::string letters(std::size_t n) { return std::string(n, 'n'); }

TEST(Token, WalksEveryShapeOfMarkup) {
  const Row rows[] = {
      // Nothing to find.
      {"", "end @0 d0"},
      {"text > & ]]> \x80", "end @14 d0"},
      // Elements.
      {"<a>", "E a d1 o [0,3)\nend @3 d1"},
      {"<a/>", "E a d0 oc [0,4)\nend @4 d0"},
      {"</a>", "E a d-1 c [0,4)\nend @4 d-1"},
      {"</a/>", "E a d-1 c [0,5)\nend @5 d-1"},
      {"<a/ >", "E a d1 o [0,5)\nend @5 d1"},
      {"<a x=\"1\" />", "E a d0 oc [0,11) x=1\nend @11 d0"},
      {"<a x=\"1\"/ >", "E a d1 o [0,11) x=1\nend @11 d1"},
      {"<a><b/></c>", "E a d1 o [0,3)\nE b d1 oc [3,7)\nE c d0 c [7,11)\nend @11 d0"},
      {"x<a\r\n>y", "E a d1 o [1,6)\nend @7 d1"},
      {"<0.-:_Z/>", "E 0.-:_Z d0 oc [0,9)\nend @9 d0"},
      // Quotes and tag ends.
      {"<a b=\">\">", "E a d1 o [0,9) b=>\nend @9 d1"},
      {"<a b='>'>", "E a d1 o [0,7) !18 @6 1:7\nend @9 d1"},
      {"<a b=\"/\">", "E a d1 o [0,9) b=/\nend @9 d1"},
      {"<a/b=\">\"/>", "E a d0 oc [0,10)\nend @10 d0"},
      // Instructions and comments.
      {"<?xml version=\"1.0\"?>", "I [0,21) version=1.0\nend @21 d0"},
      {"<?>", "I [0,3)\nend @3 d0"},
      {"<?a \">\" ?>", "I [0,10) !2 @5 1:6\nend @10 d0"},
      {"<!---->", "C [0,7)\nend @7 d0"},
      {"<!--><b/>-->", "C [0,12)\nend @12 d0"},
      {"<!--->-->", "C [0,9)\nend @9 d0"},
      {"<!-- a -- > -->", "C [0,15) !5 @8 1:9\nend @15 d0"},
      {"<!abcd-->", "C [0,9)\nend @9 d0"},
      {"<![CDATA[<x/>]]>--><a/>", "C [0,19)\nE a d0 oc [19,23)\nend @23 d0"},
      // The text ends inside markup.
      {"<", "E d0  [0,1) !11 @1 1:2\nend @1 d0"},
      {"<a", "E d0 o [0,2) !11 @2 1:3\nend @2 d0"},
      {"</", "E d-1 c [0,2) !11 @2 1:3\nend @2 d-1"},
      {"</a", "E d-1 c [0,3) !11 @3 1:4\nend @3 d-1"},
      {"<a x=\"1\"", "E d0 o [0,8) !11 @8 1:9\nend @8 d0"},
      {"<a x=\"1>", "E d0 o [0,8) !11 @8 1:9\nend @8 d0"},
      {"<?a", "I [0,3) !11 @3 1:4\nend @3 d0"},
      {"<!", "C [0,2) !36 @2 1:3\nend @2 d0"},
      {"<!-->", "C [0,5) !36 @5 1:6\nend @5 d0"},
      {"<!--->", "C [0,6) !36 @6 1:7\nend @6 d0"},
      {"<!DOCTYPE x>", "C [0,12) !36 @12 1:13\nend @12 d0"},
      // Names.
      {"<>", "E d0 o [0,2) !14 @2 1:3\nend @2 d0"},
      {"</>", "E d-1 c [0,3) !14 @3 1:4\nend @3 d-1"},
      {"< a>", "E d0 o [0,2) !14 @2 1:3\nend @4 d0"},
      {"<//>", "E d-1 c [0,3) !14 @3 1:4\nend @4 d-1"},
      {"<<a>", "E d0 o [0,2) !22 @2 1:3\nend @4 d0"},
      {"<a<b>", "E d0 o [0,3) !22 @3 1:4\nend @5 d0"},
      {"<a&b>", "E d0 o [0,3) !0 @3 1:4\nend @5 d0"},
      {"<\xC3\xA9/>", "E d0 o [0,2) !0 @2 1:3\nend @5 d0"},
      {"<a=\"1\"/>", "E d0 o [0,3) !0 @3 1:4\nend @8 d0"},
      {std::string("<a\0>", 4), "E d0 o [0,3) !0 @3 1:4\nend @4 d0"},
      // Reading goes on where an error was found.
      {"<a&b><c/>", "E d0 o [0,3) !0 @3 1:4\nE c d0 oc [5,9)\nend @9 d0"},
      // The longest name, and one byte more.
      {"<" + letters(510) + "/>", "E " + letters(510) + " d0 oc [0,513)\nend @513 d0"},
      {"<" + letters(510), "E d0 o [0,511) !11 @511 1:512\nend @511 d0"},
      {"<" + letters(511), "E d0 o [0,512) !30 @512 1:513\nend @512 d0"},
      {"</" + letters(511) + "><b/>",
       "E d-1 c [0,513) !30 @513 1:514\nE b d-1 oc [514,518)\nend @518 d-1"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.trace, traceOf(row.text)) << row.text;
}

TEST(Token, InstructionsAndCommentsKeepTheName) {
  OpenDoc doc("<a><?b?><!--c-->");
  MLDoc::Token token;
  for (int type = 0; type < 3; ++type) {
    ASSERT_TRUE(doc.step(token));
    EXPECT_EQ(type, token.type);
    EXPECT_EQ("a", str(token.name));
    EXPECT_EQ(1, token.depth);
  }
  const MLDoc::Token last = token;
  EXPECT_FALSE(doc.step(token));
  EXPECT_EQ(last.tag.begin, token.tag.begin) << "the end of the text leaves the token alone";
  EXPECT_EQ(last.type, token.type);
}

TEST(Token, AFreshTokenIsEmpty) {
  const MLDoc::Token token;
  EXPECT_EQ(nullptr, token.tag.begin);
  EXPECT_EQ(nullptr, token.name.end);
  EXPECT_EQ(0, token.type + token.depth + token.opening + token.closing);
}

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
  for (const char* unit :
       {"<&\"", "<a \"\"/>", "<!---->", "<>", "<<", "</a\n>", "<a b=\"\tx\"/>", "<?\"\">"}) {
    std::string text;
    while (text.size() < 300'000) text += unit;
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
