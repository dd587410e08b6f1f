// The bag: literal bytes, limits, aliasing, growth, and every allocation failing once.

#include "bag.h"

#include <gtest/gtest.h>

#include <tuple>

#include "charproc.h"
#include "chpair.h"
#include "tests/core/bag_model.h"
#include "tests/support/alloc_sweep.h"

using cc::test::AllocCount;
using cc::test::AllocSweep;
using cc::test::BagModel;
using cc::test::bytes;
using cc::test::bytesOf;
using cc::test::liveBlocks;
using cc::test::resultOf;
using cc::test::sweepAllocations;
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

// All that can be seen of a bag.
auto stateOf(const Bag& b) { return std::tuple(bytesOf(b), b.getPosition(), b.getCapacity()); }

TEST(Bag, WritesEndTheDataAtTheCursor) {
  const struct {
    void (*write)(Bag&);
    std::string after;
  } rows[] = {
      {[](Bag& b) { b.putData(nullptr, 0); }, "01"},
      {[](Bag& b) { b.putStringNZ(nullptr); }, "01"},
      {[](Bag& b) { b.putStringNZ("abc"); }, "01abc"},
      {[](Bag& b) { b.putString(nullptr); }, bytes("01\0")},
      {[](Bag& b) { b.putDataAligned(nullptr, 0, 8); }, bytes("01234\0\0\0")},
      {[](Bag& b) { b.putDataAligned("x", 1, 0); }, "01x"},
  };
  for (const auto& row : rows) {
    Bag bag = exactBag("01234", 2);
    row.write(bag);
    EXPECT_EQ(row.after, bytesOf(bag));
    EXPECT_EQ(static_cast<int>(row.after.size()), bag.getPosition());
  }
}

TEST(Bag, WritesBytesOfItsOwn) {
  const std::string text = "0123456789abcdef";
  Bag grown = exactBag(text, 16);
  grown.putData(grown.getBuffer() + 4, 8);  // reallocates
  EXPECT_EQ(text + "456789ab", bytesOf(grown));
  grown.setPosition(6);
  grown.putDataAligned(grown.getBuffer() + 4, 10, 4);  // overlaps
  EXPECT_EQ("01234567456789abcd", bytesOf(grown));
  Bag strung = exactBag(bytes("ab\0"), 3);
  strung.putString(strung.getBuffer());
  EXPECT_EQ(bytes("ab\0ab\0"), bytesOf(strung));
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

TEST(Bag, AnEmptyBagReadsNothing) {
  Bag bag;
  EXPECT_EQ(nullptr, bag.getDataPtr(0));
  EXPECT_EQ(nullptr, bag.insSpace(0, 0));
  bag.delSpace(9, 0);
  bag.getData(nullptr, 0);
}

TEST(Bag, CopiesExactly) {
  Bag bag;
  bag.putString("some text");
  bag.setPosition(5);
  const Bag copy(bag);
  EXPECT_EQ(10, copy.getCapacity());
  EXPECT_EQ(5, copy.getPosition());
  EXPECT_TRUE(copy == bag);
  Bag assigned("old", 3);
  EXPECT_EQ(16, assigned.getCapacity());
  EXPECT_EQ(0, assigned.getPosition());
  assigned = bag;
  EXPECT_EQ(stateOf(copy), stateOf(assigned));
  const Bag& same = assigned;
  assigned = same;
  EXPECT_EQ(stateOf(copy), stateOf(assigned));
  EXPECT_FALSE(assigned == Bag("some texT", 10));
  EXPECT_FALSE(assigned == Bag("some text", 9));

  Bag emptied;
  emptied.expand(1);
  emptied.setPosition(7);
  EXPECT_TRUE(emptied == Bag(nullptr, 0));
  const Bag none(emptied);
  EXPECT_EQ(0, none.getPosition());
  EXPECT_EQ(nullptr, none.getBuffer());
  assigned = emptied;
  EXPECT_EQ(stateOf(Bag()), stateOf(assigned));
}

// What a move leaves behind is looked at on purpose.
// NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
TEST(Bag, MovesItsBuffer) {
  const std::size_t before = liveBlocks();
  {
    Bag bag;
    bag.putString("text");
    bag.setPosition(2);
    const auto state = stateOf(bag);
    char* buffer = bag.getBuffer();
    Bag other("other", 5);
    other.stealFrom(bag);
    EXPECT_EQ(buffer, other.getBuffer());
    EXPECT_EQ(stateOf(Bag()), stateOf(bag));
    other.stealFrom(other);
    Bag& same = other;
    other = std::move(same);
    EXPECT_EQ(stateOf(Bag(std::move(other))), state);
    EXPECT_EQ(nullptr, other.getBuffer());

    int n = -1;
    EXPECT_EQ(nullptr, bag.steal(n));
    EXPECT_EQ(0, n);
    bag.expand(5);
    EXPECT_EQ(nullptr, bag.steal(n));
    EXPECT_EQ(0, bag.getCapacity());
    bag.putStringNZ("bytes");
    buffer = bag.getBuffer();
    char* stolen = bag.steal(n);
    EXPECT_EQ(buffer, stolen);
    EXPECT_EQ(5, n);
    EXPECT_EQ(stateOf(Bag()), stateOf(bag));

    bag.setBuffer(stolen, 3, 5);
    EXPECT_EQ("byt", bytesOf(bag));
    bag.putDataPtr(5)[4] = 0;
    EXPECT_EQ(stolen, bag.getBuffer());
    EXPECT_EQ(5, bag.getCapacity());
    bag.setBuffer(nullptr, 0, -1);
    bag.setPosition(3);
    bag.clear();  // nothing to clear
    EXPECT_EQ(3, bag.getPosition());
  }
  EXPECT_EQ(before, liveBlocks());
}
// NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)

TEST(Bag, ReportsTheRuledCapacity) {
  Bag bag;
  for (int i = 1; i < 30'000; ++i) {
    bag.putData("x", 1);
    ASSERT_EQ(BagModel::rule(i), bag.getCapacity());
  }
}

TEST(Bag, KeepsTheWholeAllocationWhenItGrows) {
  Bag bag = exactBag("0123456789");
  bag.putData("ab", 2);
  bag.expand(100);
  EXPECT_EQ("ab23456789", std::string(bag.getBuffer(), 10));
  bag.setBufferSize(5);
  EXPECT_EQ("ab234", std::string(bag.getBuffer(), 5));
  EXPECT_EQ(2, bag.getSize());
}

TEST(Bag, AppendingIsLinear) {
  void (*const pieces[])(Bag&) = {
      [](Bag& b) { b.putData("abcd", 4); },
      [](Bag& b) { b.putString("abc"); },
      [](Bag& b) { std::memcpy(b.putDataPtrAligned(4, 4), "abcd", 4); },
      [](Bag& b) { std::memcpy(b.insSpace(b.getSize(), 4), "abcd", 4); },
  };
  for (const auto& piece : pieces) {
    for (const int n : {100'000, 200'000, 400'000}) {
      const AllocCount count;
      Bag bag;
      for (int i = 0; i < n; ++i) piece(bag);
      EXPECT_EQ(4 * n, bag.getSize());
      EXPECT_LT(count.bytes(), 6 * 4 * static_cast<std::size_t>(n)) << n;
      EXPECT_LT(count.blocks(), 45u) << n;
    }
  }
}

TEST(Bag, IsWholeWhateverAllocationFails) {
  static const Bag other("another bag, of 30 bytes or so", 30);
  static StringVector<char> strings;
  for (int i = 0; i < 20; ++i) strings.append(strnew("a string", 8));
  const struct {
    const char* name;
    void (*call)(Bag&);
  } rows[] = {
      {"putData", [](Bag& b) { b.putData("0123456789abcdef", 16); }},
      {"putData of its own", [](Bag& b) { b.putData(b.getBuffer(), 100); }},
      {"putDataAligned", [](Bag& b) { b.putDataAligned("0123456789abcdef", 16, 16); }},
      {"putDataPtr", [](Bag& b) { std::memset(b.putDataPtr(100), 1, 100); }},
      {"putDataPtrAligned", [](Bag& b) { std::memset(b.putDataPtrAligned(200, 4), 1, 200); }},
      {"putString", [](Bag& b) { b.putString("0123456789abcdef"); }},
      {"putStringNZ", [](Bag& b) { b.putStringNZ("0123456789abcdef"); }},
      {"putFormatStringNZ", [](Bag& b) { b.putFormatStringNZ("%0100d", 7); }},
      {"insSpace", [](Bag& b) { std::memset(b.insSpace(3, 100), 1, 100); }},
      {"expand", [](Bag& b) { b.expand(1000); }},
      {"setBufferSize", [](Bag& b) { b.setBufferSize(50); }},
      {"copy", [](Bag& b) { b = other; }},
      {"construction", [](Bag& b) { b = Bag("0123456789abcdef0", 17); }},
      {"a bag", [](Bag& b) { b << other; }},
      {"a slice", [](Bag& b) { b << ChPair("a slice"); }},
      {"strings", [](Bag& b) { b << strings; }},
      {"itself", [](Bag& b) { b << b; }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Bag done(std::string(100, 'x').data(), 100);
    done.setPosition(98);
    const Bag start(done);
    row.call(done);
    const auto after = stateOf(done);
    sweepAllocations([&](AllocSweep& sweep) {
      Bag bag(start);
      const auto before = stateOf(bag);
      const bool worked = sweep.attempt([&] { row.call(bag); });
      EXPECT_EQ(worked ? after : before, stateOf(bag));
      if (!worked) {  // and it serves on
        row.call(bag);
        EXPECT_EQ(after, stateOf(bag));
      }
    });
  }
  strings.removeAll();
}

}  // namespace
