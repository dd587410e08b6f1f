// Blocks and composite values of the bag: literal bytes, damaged data, every prefix, every
// allocation failing once.

#include <gtest/gtest.h>

#include "bag.h"
#include "charr.h"
#include "chpair.h"
#include "tests/core/bag_model.h"
#include "tests/support/alloc_sweep.h"

using cc::test::AllocCount;
using cc::test::AllocSweep;
using cc::test::bytes;
using cc::test::bytesOf;
using cc::test::sweepAllocations;

namespace {

Bag bagOf(const std::string& data) { return {data.data(), static_cast<int>(data.size())}; }

// A vector of some strings; null stays null.
StringVector<char> vectorOf(std::initializer_list<const char*> strings) {
  StringVector<char> v;
  for (const char* s : strings) v.append(ChArr(s).steal());
  return v;
}

std::string joined(const StringVector<char>& v) {
  std::string all;
  for (const char* s : v) all += (s ? "[" + std::string(s) + "]" : "null");
  return all;
}

void putBlock(Bag& bag, const char* text) {
  const int content = bag.markBeginOfBlock();
  bag.putString(text);
  bag.markEndOfBlock(content);
}

TEST(BagBlocks, RefuseAnEndWithoutABeginning) {
  Bag unaligned = bagOf("01234");
  unaligned.setPosition(5);
  EXPECT_EQ(12, unaligned.markBeginOfBlock());
  EXPECT_EQ(bytes("01234\0\0\0\0\0\0\0"), bytesOf(unaligned));
  for (const int content : {INT_MIN, -1, 0, 3, 9, INT_MAX}) {
    Bag bag = bagOf("01234567");
    EXPECT_THROW(bag.markEndOfBlock(content), Bag::Exception) << content;
    EXPECT_EQ("01234567", bytesOf(bag));
  }
}

TEST(BagBlocks, ReadBackNestedAndConfined) {
  Bag bag;
  const int outer = bag.markBeginOfBlock();
  bag.putString("outer");
  putBlock(bag, "inner");
  bag.putString("rest");
  bag.markEndOfBlock(outer);
  bag.putString("after");
  const int whole = bag.getSize();

  bag.setPosition(0);
  EXPECT_EQ(whole, bag.beginBlock());
  const int outerEnd = bag.getSize();
  EXPECT_STREQ("outer", bag.getStringPtr());
  EXPECT_EQ(outerEnd, bag.beginBlock());
  EXPECT_THROW(bag.endBlock(outerEnd), Bag::Exception);  // not read yet
  EXPECT_STREQ("inner", bag.getStringPtr());
  EXPECT_THROW(bag.getDataPtr(1), Bag::Exception);
  EXPECT_THROW(bag.getStringPtr(), Bag::Exception);
  bag.endBlock(outerEnd);
  EXPECT_EQ(outerEnd, bag.getSize());
  EXPECT_STREQ("rest", bag.getStringPtr());
  bag.endBlock(whole);
  EXPECT_STREQ("after", bag.getStringPtr());

  bag.setPosition(0);
  bag.passBlock(bag.beginBlock());
  EXPECT_EQ(outerEnd, bag.getPosition());
  EXPECT_STREQ("after", bag.getStringPtr());
}

// {data, cursor after the refusal}
TEST(BagBlocks, RefuseALengthThatDoesNotFit) {
  const struct {
    std::string data;
    int after;
  } rows[] = {{bytes("\0\0\0"), 0},        {bytes("\1\0\0\0"), 4},
              {bytes("\5\0\0\0abcd"), 4},  {"\377\377\377\377abcd", 4},
              {"\377\377\377\177abcd", 4}, {bytes("\0\0\0\200abcd"), 4}};
  for (const auto& row : rows) {
    Bag bag = bagOf(row.data);
    EXPECT_THROW(bag.beginBlock(), Bag::Exception) << testing::PrintToString(row.data);
    EXPECT_EQ(row.after, bag.getPosition()) << testing::PrintToString(row.data);
    EXPECT_EQ(row.data, bytesOf(bag));

    Bag inner("old", 3);
    bag.setPosition(0);
    EXPECT_THROW(bag >> inner, Bag::Exception) << testing::PrintToString(row.data);
    EXPECT_EQ(row.after, bag.getPosition());
    EXPECT_EQ(0, inner.getSize());
    EXPECT_EQ(0, inner.getPosition());
  }
}

TEST(BagValues, ReadBackAppending) {
  const char zeros[] = {'a', 0, 'b'};
  Bag slices;
  slices << ChPair(zeros, zeros + 3) << ChPair() << ChPair("end");
  slices.putFormatStringNZ("%s", std::string(5000, 'x').c_str());
  EXPECT_EQ(bytes("a\0b\0\0end\0") + std::string(4095, 'x'), bytesOf(slices));
  Bag bag;
  bag << Bag("xyz", 3) << vectorOf({"a", nullptr, "bc"}) << Bag() << StringVector<char>();
  bag.setPosition(0);

  Bag inner("older and longer", 16);
  const char* buffer = inner.getBuffer();
  inner.setPosition(5);
  StringVector<char> read = vectorOf({"first"});
  bag >> inner >> read;
  EXPECT_EQ("xyz", bytesOf(inner));
  EXPECT_EQ(0, inner.getPosition());
  EXPECT_EQ(buffer, inner.getBuffer());
  EXPECT_EQ("[first][a][][bc]", joined(read));
  bag >> inner >> read;
  EXPECT_EQ(0, inner.getSize());
  EXPECT_EQ(4, read.getCount());
  EXPECT_EQ(bag.getSize(), bag.getPosition());
}

TEST(BagValues, EveryPrefixIsRefusedWithWhatWasRead) {
  Bag whole;
  whole << vectorOf({"a", "", "bcd", "e"});
  const std::string data = bytesOf(whole);
  for (std::size_t n = 0; n < data.size(); ++n) {
    Bag bag = bagOf(data.substr(0, n));
    StringVector<char> read;
    EXPECT_THROW(bag >> read, Bag::Exception) << n;
    int complete = 0;
    for (std::size_t i = 4; i < n; ++i) complete += data[i] == 0;
    EXPECT_EQ(complete, read.getCount()) << n;
  }
}

TEST(BagValues, TheCountWordAsksForNoMoreThanTheDataHolds) {
  for (const char* word : {"\377\377\377\177", "\0\0\1\0", "\150\0\0\0"}) {
    std::string data(word, 4);
    for (int i = 0; i < 100; ++i) data += bytes("\0");
    Bag bag = bagOf(data);
    StringVector<char> read;
    const AllocCount count;
    EXPECT_THROW(bag >> read, Bag::Exception);
    EXPECT_EQ(100, read.getCount());
    EXPECT_EQ(112, read.getCapacity());
    EXPECT_LT(count.bytes(), 4000u);
  }
  Bag negative = bagOf(bytes("\377\377\377\377a\0"));
  StringVector<char> none;
  negative >> none;
  EXPECT_EQ(0, none.getCount());
  EXPECT_EQ(4, negative.getPosition());
}

TEST(BagValues, TakeWhatLiesInTheBagItself) {
  Bag bag("0123456789abcdef", 16);
  bag.setPosition(16);
  bag << ChPair(bag.getBuffer() + 8, bag.getBuffer() + 16);  // reallocates
  EXPECT_EQ(bytes("0123456789abcdef89abcdef\0"), bytesOf(bag));
  bag.putFormatStringNZ("<%s>", bag.getBuffer() + 16);
  EXPECT_EQ(bytes("0123456789abcdef89abcdef\0<89abcdef>"), bytesOf(bag));
  Bag twice("abc", 3);
  twice.setPosition(3);
  twice << twice;
  EXPECT_EQ(bytes("abc\0\3\0\0\0abc"), bytesOf(twice));
}

TEST(BagValues, BlocksInPiecesAreLinear) {
  for (const int n : {20'000, 40'000, 80'000}) {
    const AllocCount count;
    Bag bag;
    for (int i = 0; i < n; ++i) putBlock(bag, "abc");
    EXPECT_EQ(8 * n, bag.getSize());
    EXPECT_LT(count.bytes(), 6 * 8 * static_cast<std::size_t>(n));
  }
}

TEST(BagValues, ReadingIsUndoneWhenAnAllocationFails) {
  StringVector<char> v;
  for (int i = 0; i < 20; ++i) v.append(ChArr("a string").steal());
  Bag bag;
  bag << Bag("an inner bag of some length", 27) << v;
  sweepAllocations([&](AllocSweep& sweep) {
    bag.setPosition(0);
    Bag inner("old", 3);
    inner.setPosition(1);
    if (!sweep.attempt([&] { bag >> inner; })) {
      EXPECT_EQ(0, bag.getPosition());
      EXPECT_EQ("old", bytesOf(inner));
      EXPECT_EQ(1, inner.getPosition());
      bag >> inner;
    }
    EXPECT_EQ("an inner bag of some length", bytesOf(inner));
    const int start = bag.getPosition();
    StringVector<char> read = vectorOf({"first"});
    if (!sweep.attempt([&] { bag >> read; })) {
      EXPECT_EQ(start, bag.getPosition());
      EXPECT_EQ("[first]", joined(read));
      bag >> read;
    }
    EXPECT_EQ("[first]" + joined(v), joined(read));
  });
}

}  // namespace
