// The bag: beside its naive model, at the limits of an int, blocks and composite values, aliasing,
// growth, and every allocation failing once.

#include "bag.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "charr.h"
#include "chpair.h"
#include "tests/core/bag_calls.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/stride.h"

using namespace cc::test;
using namespace std::string_literals;
using Result = BagModel::Result;

namespace {

// A bag of `text` with the cursor at `position`, in a buffer of exactly that size.
Bag exactBag(const std::string& text, int position = 0) {
  const auto n = static_cast<int>(text.size());
  char* buffer = new char[text.size()];
  std::memcpy(buffer, text.data(), text.size());
  Bag bag;
  bag.setBuffer(buffer, n, -1);
  bag.setPosition(position);
  return bag;
}

// A number that the compiler cannot know: it would warn of the impossible ones.
int hidden(int n) {
  const volatile int opaque = n;
  return opaque;
}

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

// All that can be seen of a bag.
auto stateOf(const Bag& b) { return std::tuple(bytesOf(b), b.getPosition(), b.getCapacity()); }

TEST(Bag, AgreesWithTheModelOnRandomCalls) {
  std::mt19937 random(20240611);
  BagCalls calls(
      [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); });
  for (int i = 0; i < 300'000 / stride; ++i) {
    ASSERT_EQ("", calls.step()) << "call " << i;
  }
}

// Each call on `text` in a buffer of that size; the cursor ends behind the data. Where an
// allocation fails nothing has changed, and the bag serves on.
TEST(Bag, WritesAllOrNothing) {
  static const std::string text = "0123456789abcde\0"s;
  static const std::string ones(100, '\1');
  static const StringVector<char> strings = vectorOf({"a", nullptr, ones.c_str()});
  static const Bag other = exactBag("another text", 12);
  static const auto at = [](Bag& b) { return b.getBuffer(); };
  const struct {
    int position;
    void (*call)(Bag&);
    std::string after;
  } rows[] = {
      // the end of the data is that of what was written
      {2, [](Bag& b) { b.putData(nullptr, 0); }, "01"},
      {2, [](Bag& b) { b.putStringNZ(nullptr); }, "01"},
      {2, [](Bag& b) { b.putStringNZ("abc"); }, "01abc"},
      {2, [](Bag& b) { b.putString(nullptr); }, "01\0"s},
      {2, [](Bag& b) { b.putDataAligned(nullptr, 0, 8); }, "01234567"},
      {2, [](Bag& b) { b.putDataAligned("x", 1, 0); }, "01x"},
      // more than there is room for
      {16, [](Bag& b) { b.putData("XYZ", 3); }, text + "XYZ"},
      {17, [](Bag& b) { b.putDataAligned("XYZ", 3, 4); }, text + "\0\0\0\0XYZ"s},
      {20, [](Bag& b) { std::memset(b.putDataPtr(100), 1, 100); }, text + "\0\0\0\0"s + ones},
      {16, [](Bag& b) { std::memset(b.insSpace(0, 100), 1, 100); }, ones + text},
      {16, [](Bag& b) { b.putFormatStringNZ("%05000d", 0); }, text + std::string(4095, '0')},
      {16, [](Bag& b) { b.expand(1000); }, text},
      {16, [](Bag& b) { b.setBufferSize(50); }, text},
      {16, [](Bag& b) { b = other; }, "another text"},
      // composite values
      {16, [](Bag& b) { b << Bag("xyz", 3); }, text + "\3\0\0\0xyz"s},
      {16, [](Bag& b) { b << strings; }, text + "\3\0\0\0a\0\0"s + ones + '\0'},
      {16, [](Bag& b) { b << ChPair(text.c_str() + 14, text.c_str() + 16) << ChPair(); },
       text + "e\0\0\0"s},
      // bytes of the bag itself
      {16, [](Bag& b) { b.putData(at(b) + 4, 8); }, text + "456789ab"},
      {6, [](Bag& b) { b.putDataAligned(at(b) + 4, 8, 4); }, "01234567456789ab"},  // overlaps
      {16, [](Bag& b) { b.putString(at(b)); }, text + text},
      {16, [](Bag& b) { b.putFormatStringNZ("<%s>", at(b) + 9); }, text + "<9abcde>"},
      {16, [](Bag& b) { b << ChPair(at(b) + 8, at(b) + 15); }, text + "89abcde\0"s},
      {16, [](Bag& b) { b << b; }, text + "\20\0\0\0"s + text},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    sweepAllocations([&](AllocSweep& sweep) {
      Bag bag = exactBag(text, row.position);
      const auto before = stateOf(bag);
      if (!sweep.attempt([&] { row.call(bag); })) {
        EXPECT_EQ(before, stateOf(bag));
        row.call(bag);
      }
      EXPECT_EQ(row.after, bytesOf(bag));
      EXPECT_EQ(static_cast<int>(row.after.size()), bag.getPosition());
    });
  }
}

// Numbers near the limits of an int, where the model of all other calls does not go.
TEST(Bag, RefusesWhatNoIntCounts) {
  static char room[16];
  const struct {
    int position;
    void (*call)(Bag&);
    Result result;
    int after;
  } rows[] = {
      {3, [](Bag& b) { b.getDataPtr(INT_MIN); }, Result::Exception, 3},
      {3, [](Bag& b) { b.getDataPtr(INT_MAX); }, Result::Exception, 3},
      {1, [](Bag& b) { b.getDataAligned(room, hidden(INT_MAX), 4); }, Result::Exception, 4},
      {INT_MAX, [](Bag& b) { b.getData(room, hidden(INT_MAX)); }, Result::Exception, INT_MAX},
      {INT_MAX, [](Bag& b) { b.getDataPtrAligned(1, 4); }, Result::Exception, INT_MAX},
      {INT_MIN, [](Bag& b) { b.getDataPtrAligned(1, 4); }, Result::Exception, INT_MIN},
      {INT_MIN, [](Bag& b) { b.getStringPtr(); }, Result::Exception, INT_MIN},
      {2, [](Bag& b) { b.delSpace(4, INT_MAX); }, Result::Exception, 2},
      {1, [](Bag& b) { b.putDataPtr(INT_MAX); }, Result::NoMemory, 1},
      {0, [](Bag& b) { b.putDataPtr(INT_MAX - 4000); }, Result::NoMemory, 0},
      {1, [](Bag& b) { b.putData(room, hidden(-1)); }, Result::NoMemory, 1},
      {INT_MAX, [](Bag& b) { b.putData("x", 1); }, Result::NoMemory, INT_MAX},
      {INT_MAX - 1, [](Bag& b) { b.putDataAligned("x", 1, 4); }, Result::NoMemory, INT_MAX - 1},
      {1, [](Bag& b) { b.expand(INT_MAX); }, Result::NoMemory, 1},
      {1, [](Bag& b) { b.setBufferSize(-1); }, Result::NoMemory, 1},
      {1, [](Bag& b) { b.insSpace(0, INT_MAX); }, Result::NoMemory, 1},
      {INT_MAX, [](Bag& b) { b.insSpace(0, 1); }, Result::NoMemory, INT_MAX},
      {1, [](Bag& b) { b.insSpace(0, -1); }, Result::NoMemory, 1},
      {6, [](Bag& b) { b.getData(nullptr, 0); }, Result::Done, 6},
      // an end of a block without its beginning
      {6, [](Bag& b) { b.markEndOfBlock(INT_MIN); }, Result::Exception, 6},
      {6, [](Bag& b) { b.markEndOfBlock(3); }, Result::Exception, 6},
      {6, [](Bag& b) { b.markEndOfBlock(7); }, Result::Exception, 6},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    Bag bag = exactBag("012345", row.position);
    EXPECT_EQ(row.result, resultOf([&] { row.call(bag); }));
    EXPECT_EQ("012345", bytesOf(bag));
    EXPECT_EQ(row.after, bag.getPosition());
    EXPECT_EQ(6, bag.getCapacity());
  }
}

// What a move leaves behind is looked at on purpose.
// NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
TEST(Bag, MovesItsBuffer) {
  const std::size_t blocks = liveBlocks();
  Bag bag = exactBag("text", 2);
  const auto state = stateOf(bag);
  char* buffer = bag.getBuffer();
  bag.stealFrom(bag);
  Bag& same = bag;
  bag = static_cast<const Bag&>(same);
  bag = std::move(same);
  EXPECT_EQ(state, stateOf(bag));
  Bag moved(std::move(bag));
  EXPECT_EQ(nullptr, bag.getBuffer());
  Bag other("other", 5);
  other.stealFrom(moved);
  EXPECT_EQ(state, stateOf(other));
  EXPECT_EQ(stateOf(Bag()), stateOf(moved));
  EXPECT_TRUE(bag == exactBag(""));
  EXPECT_FALSE(other == Bag("texT", 4));
  EXPECT_FALSE(other == Bag("tex", 3));
  EXPECT_EQ(0, Bag("text", 4).getPosition());

  other.setBuffer(buffer, 3, 5);  // the buffer it has
  EXPECT_EQ(std::tuple("tex", 0, 5), stateOf(other));
  other.setPosition(4);
  int n = -1;
  EXPECT_EQ(buffer, other.steal(n));
  EXPECT_EQ(3, n);
  other.setBuffer(buffer, 0, 4);
  EXPECT_EQ(nullptr, other.steal(n));
  other.putString("freed for another buffer");
  other.setBuffer(nullptr, 3, 5);
  EXPECT_EQ(stateOf(Bag()), stateOf(other));
  other.setPosition(3);
  other.clear();  // nothing to clear
  EXPECT_EQ(3, other.getPosition());
  EXPECT_EQ(blocks, liveBlocks());
}
// NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)

TEST(Bag, KeepsTheWholeAllocationWhenItGrows) {
  Bag bag = exactBag("0123456789");
  bag.putData("ab", 2);
  bag.expand(100);
  EXPECT_EQ("ab23456789", std::string(bag.getBuffer(), 10));
  bag.setBufferSize(5);
  EXPECT_EQ("ab234", std::string(bag.getBuffer(), 5));
  EXPECT_EQ(2, bag.getSize());
}

void putBlock(Bag& bag, const char* text) {
  const int content = bag.markBeginOfBlock();
  bag.putString(text);
  bag.markEndOfBlock(content);
}

TEST(Bag, AppendingIsLinear) {
  void (*const pieces[])(Bag&) = {
      [](Bag& b) { b.putData("abcdefgh", 8); },
      [](Bag& b) { b.putString("abcdefg"); },
      [](Bag& b) { std::memcpy(b.putDataPtrAligned(8, 4), "abcdefgh", 8); },
      [](Bag& b) { std::memcpy(b.insSpace(b.getSize(), 8), "abcdefgh", 8); },
      [](Bag& b) { putBlock(b, "abc"); },
  };
  for (const auto& piece : pieces) {
    for (const int n : {50'000, 200'000}) {
      const AllocCount count;
      Bag bag;
      for (int i = 0; i < n; ++i) piece(bag);
      EXPECT_EQ(8 * n, bag.getSize());
      EXPECT_LT(count.bytes(), 6 * 8 * static_cast<std::size_t>(n)) << n;
      EXPECT_LT(count.blocks(), 45u) << n;
    }
  }
}

TEST(BagBlocks, ReadBackNestedAndConfined) {
  Bag bag("12345", 5);
  bag.setPosition(5);
  const int outer = bag.markBeginOfBlock();
  EXPECT_EQ("12345\0\0\0\0\0\0\0"s, bytesOf(bag));
  bag.putString("outer");
  putBlock(bag, "inner");
  bag.putString("rest");
  bag.markEndOfBlock(outer);
  bag.putString("after");
  const int whole = bag.getSize();

  bag.setPosition(5);
  EXPECT_EQ(whole, bag.beginBlock());
  const int outerEnd = bag.getSize();
  EXPECT_STREQ("outer", bag.getStringPtr());
  EXPECT_EQ(outerEnd, bag.beginBlock());
  EXPECT_THROW(bag.endBlock(outerEnd), Bag::Exception);  // not read yet
  EXPECT_STREQ("inner", bag.getStringPtr());
  EXPECT_THROW(bag.getDataPtr(1), Bag::Exception);
  EXPECT_THROW(bag.getStringPtr(), Bag::Exception);
  bag.endBlock(outerEnd);
  EXPECT_STREQ("rest", bag.getStringPtr());
  bag.endBlock(whole);
  EXPECT_STREQ("after", bag.getStringPtr());

  bag.setPosition(5);
  bag.passBlock(bag.beginBlock());
  EXPECT_STREQ("after", bag.getStringPtr());
}

// {data, cursor after the refusal}
TEST(BagBlocks, RefuseALengthThatDoesNotFit) {
  const struct {
    std::string data;
    int after;
  } rows[] = {{"\0\0\0"s, 0},
              {"\1\0\0\0"s, 4},
              {"\5\0\0\0abcd"s, 4},
              {"\377\377\377\377abcd", 4},
              {"\377\377\377\177abcd", 4},
              {"\0\0\0\200abcd"s, 4}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.data));
    Bag bag = exactBag(row.data);
    EXPECT_THROW(bag.beginBlock(), Bag::Exception);
    EXPECT_EQ(row.after, bag.getPosition());
    EXPECT_EQ(row.data, bytesOf(bag));

    Bag inner = exactBag("old", 2);
    bag.setPosition(0);
    EXPECT_THROW(bag >> inner, Bag::Exception);
    EXPECT_EQ(row.after, bag.getPosition());
    EXPECT_EQ(std::tuple("", 0, 3), stateOf(inner));
  }
}

TEST(BagValues, AreReadAgainOrNotAtAll) {
  StringVector<char> v;
  for (int i = 0; i < 20; ++i) v.append(ChArr("a string").steal());
  Bag bag;
  bag << Bag("an inner bag of some length", 27) << v << Bag() << StringVector<char>();
  sweepAllocations([&](AllocSweep& sweep) {
    bag.setPosition(0);
    Bag inner = exactBag("old", 1);
    const auto before = stateOf(inner);
    if (!sweep.attempt([&] { bag >> inner; })) {
      EXPECT_EQ(0, bag.getPosition());
      EXPECT_EQ(before, stateOf(inner));
      bag >> inner;
    }
    EXPECT_EQ(std::tuple("an inner bag of some length", 0, 32), stateOf(inner));
    const int start = bag.getPosition();
    StringVector<char> read = vectorOf({"first"});
    if (!sweep.attempt([&] { bag >> read; })) {
      EXPECT_EQ(start, bag.getPosition());
      EXPECT_EQ("[first]", joined(read));
      bag >> read;
    }
    EXPECT_EQ("[first]" + joined(v), joined(read));
    bag >> inner >> read;
    EXPECT_EQ(std::tuple("", 0, 32), stateOf(inner)) << "the room stays";
    EXPECT_EQ(21, read.getCount());
    EXPECT_EQ(bag.getSize(), bag.getPosition());
  });
}

TEST(BagValues, EveryPrefixIsRefusedWithWhatWasRead) {
  Bag whole;
  whole << vectorOf({"a", "", "bcd", "e"});
  const std::string data = bytesOf(whole);
  for (std::size_t n = 0; n < data.size(); ++n) {
    Bag bag = exactBag(data.substr(0, n));
    StringVector<char> read;
    EXPECT_THROW(bag >> read, Bag::Exception) << n;
    int complete = 0;
    for (std::size_t i = 4; i < n; ++i) complete += data[i] == 0;
    EXPECT_EQ(complete, read.getCount()) << n;
  }
}

TEST(BagValues, TheCountWordAsksForNoMoreThanTheDataHolds) {
  for (const char* word : {"\377\377\377\177", "\0\0\1\0", "\150\0\0\0"}) {
    Bag bag = exactBag(std::string(word, 4) + std::string(100, '\0'));
    StringVector<char> read;
    const AllocCount count;
    EXPECT_THROW(bag >> read, Bag::Exception);
    EXPECT_EQ(100, read.getCount());
    EXPECT_EQ(112, read.getCapacity());
    EXPECT_LT(count.bytes(), 4000u);
  }
  Bag negative = exactBag("\377\377\377\377a\0"s);
  StringVector<char> none;
  negative >> none;
  EXPECT_EQ(0, none.getCount());
  EXPECT_EQ(4, negative.getPosition());
}

}  // namespace
