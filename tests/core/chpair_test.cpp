// The slice: tables of trimming and cutting; nothing outside of the slice is read.

#include "chpair.h"

#include <gtest/gtest.h>

#include "charr.h"
#include "tests/support/guarded_buffer.h"

namespace {

std::string textOf(const ChPair& s) { return std::string(std::string_view(s)); }

TEST(ChPair, TakesTexts) {
  const ChPair none;
  EXPECT_EQ(nullptr, none.begin);
  EXPECT_TRUE(none.isEmpty());
  EXPECT_EQ("", textOf(none));
  const char* null = nullptr;
  EXPECT_EQ(nullptr, ChPair(null).end);
  EXPECT_EQ(nullptr, ChPair(ChArr()).end);
  const ChArr owned("owned");
  ChPair s = owned;
  EXPECT_EQ(owned.get(), s.begin);
  EXPECT_EQ(5u, s.length());
  s = "literal";
  EXPECT_EQ("literal", textOf(s));
  s = null;
  EXPECT_EQ(nullptr, s.begin);
  s = owned;
  EXPECT_EQ("owned", textOf(s));
  s = ChArr();
  EXPECT_EQ(nullptr, s.begin);
  EXPECT_EQ(nullptr, s.end);
}

TEST(ChPair, TrimsSpacesOnly) {
  const struct {
    const char* text;
    int from, count;
  } rows[] = {
      {"  a b  ", 2, 3}, {"   ", 3, 0}, {"\ta ", 0, 2}, {" \r\n ", 1, 2}, {"", 0, 0},
      {"a", 0, 1},       {" a", 1, 1},  {"a ", 0, 1},   {" ", 1, 0},
  };
  for (const auto& row : rows) {
    ChPair s(row.text);
    EXPECT_EQ(&s, &s.trimmed());
    EXPECT_EQ(row.text + row.from, s.begin) << '"' << row.text << '"';
    EXPECT_EQ(row.text + row.from + row.count, s.end) << '"' << row.text << '"';
  }
  ChPair none;
  EXPECT_EQ(nullptr, none.trimmed().end);
}

TEST(ChPair, SplitsAtTheFirstSeparator) {
  const struct {
    std::string text;
    char separator;
    bool found;
    std::string left, right;
  } rows[] = {
      {"key=value", '=', true, "key", "value"},
      {"key=value", ':', false, "", ""},
      {"=x", '=', true, "", "x"},
      {"x=", '=', true, "x", ""},
      {"a==b", '=', true, "a", "=b"},
      {"", '=', false, "", ""},
      {std::string("a\0b", 3), '\0', true, "a", "b"},
      {"ab\xFF", '\xFF', true, "ab", ""},
  };
  for (const auto& row : rows) {
    const cc::test::GuardedBuffer memory(row.text);
    const ChPair whole(memory.begin(), memory.end());
    ChPair left("left");
    ChPair right("right");
    EXPECT_EQ(row.found, whole.split(left, row.separator, right)) << row.text;
    EXPECT_EQ(row.found ? row.left : "left", textOf(left)) << row.text;
    EXPECT_EQ(row.found ? row.right : "right", textOf(right)) << row.text;
    if (!row.found) continue;
    ChPair self = whole;
    self.split(self, row.separator, right);
    EXPECT_EQ(row.left, textOf(self)) << row.text;
    self = whole;
    self.split(left, row.separator, self);
    EXPECT_EQ(row.right, textOf(self)) << row.text;
  }
}

}  // namespace
