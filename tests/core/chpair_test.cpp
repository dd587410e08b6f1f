// The slice: tables of trimming and cutting; nothing outside of the slice is read.

#include "chpair.h"

#include <gtest/gtest.h>

#include "charr.h"
#include "tests/support/guarded_buffer.h"

namespace {

std::string textOf(const ChPair& s) { return std::string(std::string_view(s)); }

TEST(ChPair, TakesTexts) {
  const char* null = nullptr;
  const ChArr owned("owned");
  ChPair s;
  for (const ChPair& none : {ChPair(), ChPair(null), ChPair(ChArr()), s = null, s = ChArr()}) {
    EXPECT_EQ(nullptr, none.begin);
    EXPECT_EQ(nullptr, none.end);
    EXPECT_TRUE(none.isEmpty());
    EXPECT_EQ("", textOf(none));
  }
  for (const ChPair& whole : {ChPair(owned), s = owned, ChPair(owned.get()), s = owned.get()}) {
    EXPECT_EQ(owned.get(), whole.begin);
    EXPECT_EQ(5u, whole.length());
    EXPECT_EQ("owned", textOf(whole));
  }
}

TEST(ChPair, TrimsSpacesOnly) {
  const struct {
    const char* text;
    int from, count;
  } rows[] = {{"  a b  ", 2, 3}, {"   ", 3, 0}, {"\ta ", 0, 2}, {" \r\n ", 1, 2}, {"", 0, 0}};
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
      {"key=value", ':', false, "left", "right"},
      {"", '=', false, "left", "right"},
      {"=x", '=', true, "", "x"},
      {"a==b", '=', true, "a", "=b"},
      {std::string("a\0b", 3), '\0', true, "a", "b"},
      {"ab\xFF", '\xFF', true, "ab", ""},
  };
  for (const auto& row : rows) {
    const cc::test::GuardedBuffer memory(row.text);
    const ChPair whole(memory.begin(), memory.end());
    ChPair left("left");
    ChPair right("right");
    EXPECT_EQ(row.found, whole.split(left, row.separator, right)) << row.text;
    EXPECT_EQ(row.left, textOf(left)) << row.text;
    EXPECT_EQ(row.right, textOf(right)) << row.text;
    for (ChPair* same : {&left, &right}) {
      if (!row.found) continue;
      *same = whole;
      same->split(left, row.separator, right);
      EXPECT_EQ(row.left, textOf(left)) << row.text;
      EXPECT_EQ(row.right, textOf(right)) << row.text;
    }
  }
}

}  // namespace
