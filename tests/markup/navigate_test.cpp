// Children, attributes by name and plain text content.

#include <gtest/gtest.h>

#include "tests/markup/reader_trace.h"
#include "tests/support/alloc_sweep.h"

namespace {

using cc::test::errorOf;
using cc::test::OpenDoc;
using cc::test::str;
using ChildIterator = MLDoc::ChildIterator;

const char* const sample =
    "<?xml version=\"1.0\"?><!-- note --><r a=\"1\" e=\"\"><x/><y>t</y><x k=\"2\"></x></r>";

// The names of the children that are left, with their own children in brackets.
std::string tree(OpenDoc& doc, MLDoc::Token& token) {
  std::string out;
  ChildIterator next(&doc, token);
  while (next()) {
    out += str(token.name);
    const std::string children = tree(doc, token);
    if (!children.empty()) out += "(" + children + ")";
    out += " ";
  }
  return out;
}

TEST(ChildIterator, WalksTrees) {
  const struct {
    const char* text;
    const char* expected;
  } rows[] = {
      {"text<!-- c --><?i?>", ""},
      {sample, "r(x y x ) "},
      {"<a/><b/>", "a b "},
      {"<a><b><c><d/></c></b><e/></a><f/>", "a(b(c(d ) ) e ) f "},
      {"<a>1<!-- <b> -->2<?c <d/>?>3<e/>4</a>", "a(e ) "},
      {"</a><b/>", ""},  // a stray end tag ends the walk
      {"<a/></b><c/>", "a "},
      {"<a><b></c></d>", "a(b ) "},  // end tags close whatever is open
  };
  for (const auto& row : rows) {
    OpenDoc doc(row.text);
    MLDoc::Token token;
    EXPECT_EQ(row.expected, tree(doc, token)) << row.text;
  }
}

TEST(ChildIterator, LeavesTheTokenOnTheParentsEnd) {
  OpenDoc doc("<r><x><deep/></x>text<y/></r><s/>");
  MLDoc::Token token;
  ChildIterator top(&doc, token);
  ASSERT_TRUE(top());
  ChildIterator inner(&doc, token);
  ASSERT_TRUE(inner());
  EXPECT_EQ("x", str(token.name));
  ASSERT_TRUE(inner()) << "steps over what is inside";
  EXPECT_EQ("y", str(token.name));
  EXPECT_EQ(1, token.depth);
  EXPECT_FALSE(inner());
  EXPECT_EQ("</r>", str(token.tag));
  EXPECT_EQ(0, token.depth);
  const unsigned int behind = doc.at();
  EXPECT_FALSE(inner()) << "finished";
  EXPECT_FALSE(ChildIterator(&doc, token)()) << "an end tag has none";
  EXPECT_EQ(behind, doc.at()) << "nothing was read";
  ASSERT_TRUE(top());
  EXPECT_EQ("s", str(token.name));
  EXPECT_FALSE(top());
  EXPECT_FALSE(top());
}

TEST(ChildIterator, FindsByName) {
  OpenDoc doc(sample);
  MLDoc::Token token;
  ChildIterator top(&doc, token);
  ASSERT_TRUE(top("r"));
  EXPECT_EQ("1", str(doc.getAttributeValue(token, "a")));
  EXPECT_NE(nullptr, doc.getAttributeValue(token, "e").begin) << "empty, but there";
  EXPECT_TRUE(doc.getAttributeValue(token, "e").isEmpty());
  for (const char* none : {"A", "aa", ""}) {
    EXPECT_EQ(nullptr, doc.getAttributeValue(token, none).begin) << none;
  }
  ChildIterator inner(&doc, token);
  ASSERT_TRUE(inner("x"));
  EXPECT_EQ("<x/>", str(token.tag));
  ASSERT_TRUE(inner("x"));
  EXPECT_EQ("2", str(doc.getAttributeValue(token, "k")));
  EXPECT_FALSE(inner("x"));
  EXPECT_FALSE(top("r"));
}

TEST(ChildIterator, AnUnclosedParentIsErrorSevenAtItsTag) {
  const struct {
    const char* text;
    const char* place;
  } rows[] = {{"<r><x/>", "1:4"}, {"\n <r a=\"1\">text<b></b>", "2:11"}, {"<r><a><b>", "1:4"}};
  for (const auto& row : rows) {
    OpenDoc doc(row.text);
    MLDoc::Token token;
    ChildIterator top(&doc, token);
    ASSERT_TRUE(top());
    ChildIterator inner(&doc, token);
    EXPECT_EQ(7, errorOf([&] {
                while (inner()) {
                }
              }))
        << row.text;
    EXPECT_EQ(row.place, doc.place()) << row.text;
  }
}

TEST(AttributeIterator, PositionsBehindTheTagWhicheverWayItEnds) {
  OpenDoc doc("<a x=\"1\" y=\"2\" z='3'><b/>");
  MLDoc::Token token;
  ASSERT_TRUE(doc.step(token));
  const unsigned int behind = doc.at();
  MLDoc::Attribute attribute;
  {
    MLDoc::AttributeIterator find(&doc, token);
    EXPECT_EQ(0U, doc.at());
    ASSERT_TRUE(find(attribute, "y"));
    EXPECT_EQ("2", str(attribute.value));
    EXPECT_EQ(14U, doc.at());
  }
  EXPECT_EQ(behind, doc.at());
  EXPECT_EQ("1", str(doc.getAttributeValue(token, "x"))) << "what follows a match is not read";
  EXPECT_EQ(behind, doc.at());
  EXPECT_EQ(18, errorOf([&] { doc.getAttributeValue(token, "none"); }));
  EXPECT_EQ(behind, doc.at());
  ASSERT_TRUE(doc.step(token));
  EXPECT_EQ("b", str(token.name));
}

TEST(Content, IsThePlainTextOfAnElement) {
  const struct {
    const char* text;
    const char* content;
  } rows[] = {
      {"<y>t &amp; u</y>", "t &amp; u"}, {"<y></y>", ""},           {"<y> \n </other>", " \n "},
      {"<y a=\"1\">x > y</y>", "x > y"}, {"<?i?>text</y>", "text"},
  };
  for (const auto& row : rows) {
    OpenDoc doc(row.text);
    MLDoc::Token token;
    ASSERT_TRUE(doc.step(token));
    const int depth = token.depth;
    EXPECT_EQ(row.content, str(doc.content(token)));
    EXPECT_EQ(depth - 1, token.depth);
    EXPECT_EQ(doc.size(), doc.at());
  }
  MLDoc::Token token;
  for (const char* text : {"<y/>", "</y>", "<y>", "<y>text", "<y><z/></y>", "<y><z></z></y>",
                           "<y>a<!-- note -->b</y>", "<y><?i?></y>"}) {
    OpenDoc doc(text);
    MLDoc::Token level;
    EXPECT_EQ(24, errorOf([&] { doc.content(level); })) << "the document's level";
    ASSERT_TRUE(doc.step(token));
    EXPECT_EQ(24, errorOf([&] { doc.content(token); })) << text;
  }
  OpenDoc bad("<y>a<&");
  ASSERT_TRUE(bad.step(token));
  EXPECT_EQ(0, errorOf([&] { bad.content(token); })) << "the tokenizer's errors pass through";
}

TEST(Navigation, AllocatesNothing) {
  OpenDoc doc("<list><item id=\"x\" note=\"a&lt;b\">text</item><!-- c --></list>");
  const cc::test::AllocCount count;
  MLDoc::Token token;
  ChildIterator top(&doc, token);
  while (top("list")) {
    ChildIterator inner(&doc, token);
    while (inner("item")) {
      doc.getAttributeValue(token, "note");
      doc.content(token);
    }
  }
  EXPECT_EQ(0U, count.blocks());
}

}  // namespace
