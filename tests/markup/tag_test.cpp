// The tables of values and names.

#include <gtest/gtest.h>

#include "pairtag.h"
#include "strtag.h"

namespace {

static_assert(std::is_aggregate_v<PairTag> && std::is_aggregate_v<StrTag> &&
              std::is_aggregate_v<StrPtrTag>);

// The values double (the second 1) and a name is a prefix of another.
const PairTag pairs[] = {{"Red", 1}, {"Green", 2}, {"red", 9},  {"Crimson", 1},
                         {"", 7},    {"Gr", 3},    {nullptr, 5}};
const StrTag strs[] = {{"Red", 1}, {"Green", 2}, {"red", 9},  {"Crimson", 1},
                       {"", 7},    {"Gr", 3},    {nullptr, 5}};

const struct {
  const char* text;
  int value;
} byName[] = {
    {"green", 2}, {"GREEN", 2}, {"Gree", -1},   {"Greens", -1}, {"red", 1},          {"gr", 3},
    {"", 7},      {nullptr, 7}, {"cRiMsOn", 1}, {"x", -1},      {"Gr\xC3\xBCn", -1},
};

const struct {
  int value;
  const char* name;
} byValue[] = {{1, "Red"}, {2, "Green"}, {9, "red"},   {7, ""},
               {3, "Gr"},  {5, nullptr}, {-1, nullptr}};

TEST(Tags, TheFirstMatchCounts) {
  for (const auto& row : byName) {
    EXPECT_EQ(row.value, pairs->translate(row.text)) << row.text;
    EXPECT_EQ(row.value, pairs->translate(ChPair(row.text))) << row.text;
    EXPECT_EQ(row.value, strs->translate(row.text)) << row.text;
  }
  for (const auto& row : byValue) {
    EXPECT_STREQ(row.name, pairs->translate(row.value)) << row.value;
    EXPECT_STREQ(row.name, strs->translate(row.value)) << row.value;
  }
}

TEST(Tags, EmptyTables) {
  const PairTag pair = {nullptr, 1};
  const StrTag str = {nullptr, 1};
  const StrPtrTag ptr = {nullptr, 1};
  pair.init();
  EXPECT_EQ(nullptr, pair.nameEnd);
  EXPECT_EQ(-1, pair.translate(ChPair()));
  EXPECT_TRUE(pair.translate("") == -1 && str.translate("") == -1 && ptr.translate("") == -1);
  EXPECT_TRUE(!pair.translate(1) && !str.translate(1) && !ptr.translate(1));
}

TEST(PairTag, PreparesOnce) {
  const PairTag table[] = {{"one", 1}, {"three", 3}, {nullptr, 0}};
  EXPECT_EQ(1, table->translate("one"));
  EXPECT_EQ(nullptr, table[0].nameEnd) << "a string does not prepare";
  table->init();
  EXPECT_EQ(table[0].name + 3, table[0].nameEnd);
  EXPECT_EQ(table[1].name + 5, table[1].nameEnd);
  EXPECT_EQ(nullptr, table[2].nameEnd);
  // Only the first entry tells whether the table is prepared.
  table[1].nameEnd = table[1].name + 2;
  EXPECT_EQ(3, table->translate(ChPair("th")));
}

TEST(StrPtrTag, ReadsTheVariablesAtEveryLookup) {
  const char* first = "Red";
  const char* second = nullptr;
  const StrPtrTag table[] = {{&first, 1}, {&second, 2}, {nullptr, 0}};
  EXPECT_EQ(1, table->translate("RED"));
  EXPECT_EQ(2, table->translate(""));
  EXPECT_EQ(2, table->translate(static_cast<const char*>(nullptr)));
  EXPECT_EQ(nullptr, table->translate(2));
  first = "Rouge";
  second = "Vert";
  EXPECT_EQ(-1, table->translate("red"));
  EXPECT_EQ(1, table->translate("rouge"));
  EXPECT_EQ(second, table->translate(2));
  EXPECT_EQ(-1, table->translate(""));
}

}  // namespace
