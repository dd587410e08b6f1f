// The bag: literal bytes, limits, aliasing, growth, and every allocation failing once.

#include "bag.h"

#include <gtest/gtest.h>

#include "tests/core/bag_model.h"
#include "tests/support/alloc_sweep.h"

using cc::test::AllocCount;
using cc::test::AllocSweep;
using cc::test::BagModel;
using cc::test::liveBlocks;
using cc::test::resultOf;
using cc::test::sweepAllocations;
using Result = BagModel::Result;

namespace {

std::string bytesOf(const Bag& bag) {
  return {bag.getBuffer(), static_cast<std::size_t>(bag.getSize())};
}

template <std::size_t N>
std::string bytes(const char (&literal)[N]) {
  return {literal, N - 1};
}

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

struct State {
  std::string data;
  int position, capacity;
  explicit State(const Bag& b)
      : data(bytesOf(b)), position(b.getPosition()), capacity(b.getCapacity()) {}
  bool operator==(const State&) const = default;
};

std::ostream& operator<<(std::ostream& out, const State& s) {
  return out << s.data.size() << " bytes, cursor " << s.position << ", capacity " << s.capacity
             << ", data " << testing::PrintToString(s.data);
}

TEST(Bag, StoresValuesAndStringsAtFixedBytes) {
  Bag bag;
  const int five = 5;
  const int seven = 7;
  bag.putDataAligned(&five, 4, 4);
  bag.putString("ab");
  bag.putDataAligned(&seven, 4, 4);
  EXPECT_EQ(bytes("\5\0\0\0ab\0\0\7\0\0\0"), bytesOf(bag));
  EXPECT_EQ(16, bag.getCapacity());
  bag.setPosition(0);
  int value = 0;
  bag.getDataAligned(&value, 4, 4);
  EXPECT_EQ(5, value);
  EXPECT_STREQ("ab", bag.getStringPtr());
  EXPECT_EQ(7, bag.getPosition());
  bag.getDataAligned(&value, 4, 4);
  EXPECT_EQ(7, value);
  EXPECT_THROW(bag.getDataAligned(&value, 1, 4), Bag::Exception);
}

// What a write leaves: {data, cursor, operation, data and cursor after}.
TEST(Bag, WritesEndTheDataAtTheCursor) {
  const struct {
    const char* name;
    std::string before;
    int position;
    void (*write)(Bag&);
    std::string after;
  } rows[] = {
      {"in the middle", "0123456789", 2, [](Bag& b) { b.putData("xyz", 3); }, "01xyz"},
      {"nothing in the middle", "0123456789", 2, [](Bag& b) { b.putData(nullptr, 0); }, "01"},
      {"null text", "0123", 2, [](Bag& b) { b.putStringNZ(nullptr); }, "01"},
      {"null string", "0123", 2, [](Bag& b) { b.putString(nullptr); }, bytes("01\0")},
      {"text", "", 0, [](Bag& b) { b.putStringNZ("abc"); }, "abc"},
      {"aligned at the end", "01234", 5, [](Bag& b) { b.putDataAligned("abcd", 4, 4); },
       bytes("01234\0\0\0abcd")},
      {"aligned inside keeps the gap's bytes", "0123456789", 1,
       [](Bag& b) { b.putDataAligned("xy", 2, 4); }, "0123xy"},
      {"aligned gap half inside", "01234", 4, [](Bag& b) { b.putDataAligned("xy", 2, 8); },
       bytes("01234\0\0\0xy")},
      {"aligned, no bytes", "01234", 5, [](Bag& b) { b.putDataAligned(nullptr, 0, 4); },
       bytes("01234\0\0\0")},
      {"no alignment", "012", 3, [](Bag& b) { b.putDataAligned("x", 1, 0); }, "012x"},
      {"cursor behind the data", "012", 6, [](Bag& b) { b.putData("x", 1); }, bytes("012\0\0\0x")},
      {"cursor far behind the data", "", 300, [](Bag& b) { b.putDataAligned("x", 1, 4); },
       std::string(300, '\0') + "x"},
      {"nothing behind the data", "012", 5, [](Bag& b) { b.putData(nullptr, 0); },
       bytes("012\0\0")},
  };
  for (const auto& row : rows) {
    Bag bag = exactBag(row.before, row.position);
    row.write(bag);
    EXPECT_EQ(row.after, bytesOf(bag)) << row.name;
    EXPECT_EQ(static_cast<int>(row.after.size()), bag.getPosition()) << row.name;
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

// What may not be read, or not be written, leaves everything but an aligned cursor: {cursor,
// operation, result, cursor after}.
TEST(Bag, RefusesWhatDoesNotFit) {
  static char room[16];
  const struct {
    const char* name;
    int position;
    void (*call)(Bag&);
    Result result;
    int after;
  } rows[] = {
      {"past the end", 5, [](Bag& b) { b.getData(room, 2); }, Result::Exception, 5},
      {"at the end", 6, [](Bag& b) { b.getDataPtr(1); }, Result::Exception, 6},
      {"nothing at the end", 6, [](Bag& b) { b.getDataPtr(0); }, Result::Done, 6},
      {"nothing, nowhere to put it", 6, [](Bag& b) { b.getData(nullptr, 0); }, Result::Done, 6},
      {"nothing behind the end", 7, [](Bag& b) { b.getDataPtr(0); }, Result::Exception, 7},
      {"negative", 3, [](Bag& b) { b.getData(room, hidden(-1)); }, Result::Exception, 3},
      {"least", 3, [](Bag& b) { b.getDataPtr(INT_MIN); }, Result::Exception, 3},
      {"greatest", 3, [](Bag& b) { b.getDataPtr(INT_MAX); }, Result::Exception, 3},
      {"aligned past the end", 1, [](Bag& b) { b.getDataPtrAligned(4, 4); }, Result::Exception, 4},
      {"aligned behind the end", 5, [](Bag& b) { b.getDataPtrAligned(0, 4); }, Result::Exception,
       8},
      {"aligned, greatest", 1, [](Bag& b) { b.getDataAligned(room, hidden(INT_MAX), 4); },
       Result::Exception, 4},
      {"far cursor", INT_MAX, [](Bag& b) { b.getDataAligned(room, hidden(INT_MAX), 1); },
       Result::Exception, INT_MAX},
      {"far cursor, aligned", INT_MAX, [](Bag& b) { b.getDataPtrAligned(1, 4); }, Result::Exception,
       INT_MAX},
      {"negative cursor", -1, [](Bag& b) { b.getDataPtr(0); }, Result::Exception, -1},
      {"negative cursor, aligned", -1, [](Bag& b) { b.getDataPtrAligned(1, 4); }, Result::Exception,
       -1},
      {"negative cursor, string", -1, [](Bag& b) { b.getStringPtr(); }, Result::Exception, -1},
      {"least cursor", INT_MIN, [](Bag& b) { b.getDataPtrAligned(1, 4); }, Result::Exception,
       INT_MIN},
      {"no terminator", 2, [](Bag& b) { b.getStringPtr(); }, Result::Exception, 2},
      {"string at the end", 6, [](Bag& b) { b.getStringPtr(); }, Result::Exception, 6},
      {"deleting past the end", 2, [](Bag& b) { b.delSpace(4, 3); }, Result::Exception, 2},
      {"deleting, greatest", 2, [](Bag& b) { b.delSpace(4, INT_MAX); }, Result::Exception, 2},
      {"deleting behind the end", 2, [](Bag& b) { b.delSpace(7, 1); }, Result::Exception, 2},
      {"deleting a negative range", 2, [](Bag& b) { b.delSpace(4, -1); }, Result::Exception, 2},
      {"writing, greatest", 1, [](Bag& b) { b.putDataPtr(INT_MAX); }, Result::NoMemory, 1},
      {"writing, rounded past an int", 0, [](Bag& b) { b.putDataPtr(INT_MAX - 4000); },
       Result::NoMemory, 0},
      {"writing a negative count", 1, [](Bag& b) { b.putData(room, hidden(-1)); }, Result::NoMemory,
       1},
      {"writing at a far cursor", INT_MAX, [](Bag& b) { b.putData("x", 1); }, Result::NoMemory,
       INT_MAX},
      {"writing at a far cursor, aligned", INT_MAX - 1, [](Bag& b) { b.putDataAligned("x", 1, 4); },
       Result::NoMemory, INT_MAX - 1},
      {"writing at a negative cursor", -4, [](Bag& b) { b.putData("x", 1); }, Result::NoMemory, -4},
      {"writing at a negative cursor, aligned", -1, [](Bag& b) { b.putDataAligned("x", 1, 4); },
       Result::NoMemory, -1},
      {"expanding", 1, [](Bag& b) { b.expand(INT_MAX); }, Result::NoMemory, 1},
      {"a negative buffer", 1, [](Bag& b) { b.setBufferSize(-1); }, Result::NoMemory, 1},
      {"inserting, greatest", 1, [](Bag& b) { b.insSpace(0, INT_MAX); }, Result::NoMemory, 1},
      {"inserting before a far cursor", INT_MAX, [](Bag& b) { b.insSpace(0, 1); }, Result::NoMemory,
       INT_MAX},
      {"inserting a negative count", 1, [](Bag& b) { b.insSpace(0, -1); }, Result::NoMemory, 1},
  };
  for (const auto& row : rows) {
    Bag bag = exactBag("012345", row.position);
    EXPECT_EQ(row.result, resultOf([&] { row.call(bag); })) << row.name;
    EXPECT_EQ("012345", bytesOf(bag)) << row.name;
    EXPECT_EQ(row.after, bag.getPosition()) << row.name;
    EXPECT_EQ(6, bag.getCapacity()) << row.name;
  }
}

TEST(Bag, AnEmptyBagReadsNothing) {
  Bag bag;
  EXPECT_EQ(nullptr, bag.getDataPtr(0));
  EXPECT_EQ(nullptr, bag.insSpace(0, 0));
  bag.delSpace(9, 0);
  bag.getData(nullptr, 0);
  EXPECT_EQ(Result::Exception, resultOf([&] { bag.getDataPtr(1); }));
  EXPECT_EQ(Result::Exception, resultOf([&] { bag.getStringPtr(); }));
}

// {offset, count, cursor before, cursor after} on ten bytes.
TEST(Bag, EditingCarriesTheCursor) {
  const struct {
    int offset, n, before, after;
  } inserted[] = {{2, 3, 2, 5}, {2, 3, 1, 1}, {2, 3, 8, 11}, {10, 3, 10, 13}, {0, 0, 4, 4}};
  for (const auto& row : inserted) {
    Bag bag = exactBag("0123456789", row.before);
    char* gap = bag.insSpace(row.offset, row.n);
    EXPECT_EQ(bag.getBuffer() + row.offset, gap);
    EXPECT_EQ(row.after, bag.getPosition()) << row.offset << ' ' << row.before;
    EXPECT_EQ(10 + row.n, bag.getSize());
  }
  const struct {
    int offset, n, before, after;
  } deleted[] = {
      {2, 3, 8, 5}, {2, 3, 5, 2}, {2, 3, 4, 2}, {2, 3, 3, 2},    // behind, inside
      {2, 3, 1, 1}, {4, 3, 4, 1}, {2, 3, 2, 0}, {0, 10, 10, 0},  // before, at the offset
  };
  for (const auto& row : deleted) {
    Bag bag = exactBag("0123456789", row.before);
    bag.delSpace(row.offset, row.n);
    EXPECT_EQ(row.after, bag.getPosition()) << row.offset << ' ' << row.before;
    EXPECT_EQ(std::string("0123456789")
                  .erase(static_cast<std::size_t>(row.offset), static_cast<std::size_t>(row.n)),
              bytesOf(bag));
  }
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
  EXPECT_EQ(State(copy), State(assigned));
  const Bag& same = assigned;
  assigned = same;
  EXPECT_EQ(State(copy), State(assigned));
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
  EXPECT_EQ(State(Bag()), State(assigned));
}

// What a move leaves behind is looked at on purpose.
// NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
TEST(Bag, MovesItsBuffer) {
  const std::size_t before = liveBlocks();
  {
    Bag bag;
    bag.putString("text");
    bag.setPosition(2);
    const State state(bag);
    char* buffer = bag.getBuffer();
    Bag other("other", 5);
    other.stealFrom(bag);
    EXPECT_EQ(buffer, other.getBuffer());
    EXPECT_EQ(State(Bag()), State(bag));
    other.stealFrom(other);
    Bag& same = other;
    other = std::move(same);
    EXPECT_EQ(State(Bag(std::move(other))), state);
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
    EXPECT_EQ(State(Bag()), State(bag));

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
  for (const auto& [need, capacity] : {std::pair(3, 16), {300, 512}, {5000, 8192}}) {
    Bag bag;
    bag.putDataPtr(need);
    EXPECT_EQ(capacity, bag.getCapacity());
  }
  Bag bag;
  for (int i = 1; i < 30'000; ++i) {
    bag.putData("x", 1);
    ASSERT_EQ(BagModel::rule(i), bag.getCapacity());
  }
  bag.setPosition(0);
  bag.putData("x", 1);
  bag.expand(7);
  EXPECT_EQ(BagModel::rule(29'999), bag.getCapacity());
  bag.setBufferSize(7);  // exact again, and grown by the rule from there
  EXPECT_EQ(7, bag.getCapacity());
  bag.putDataPtr(7);
  EXPECT_EQ(16, bag.getCapacity());
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
      {"itself", [](Bag& b) { b << b; }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Bag done(std::string(100, 'x').data(), 100);
    done.setPosition(98);
    const Bag start(done);
    row.call(done);
    const State after(done);
    sweepAllocations([&](AllocSweep& sweep) {
      Bag bag(start);
      const State before(bag);
      const bool worked = sweep.attempt([&] { row.call(bag); });
      EXPECT_EQ(worked ? after : before, State(bag));
      if (!worked) {  // and it serves on
        row.call(bag);
        EXPECT_EQ(after, State(bag));
      }
    });
  }
}

}  // namespace
