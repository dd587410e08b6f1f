// The vectors and holders: the growth rule, ownership, and every allocation failing once. What a
// move leaves behind is looked at on purpose.
// NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)

#include "containers.h"

#include <gtest/gtest.h>

#include <numeric>

#include "tests/core/bag_model.h"
#include "tests/support/alloc_sweep.h"

using cc::test::AllocCount;
using cc::test::AllocSweep;
using cc::test::BagModel;
using cc::test::liveBlocks;
using cc::test::sweepAllocations;

namespace {

char* newText(const char* s) {
  char* text = new char[std::strlen(s) + 1];
  std::strcpy(text, s);
  return text;
}

TEST(Growth, RoundsUpByTheSizeOfTheNeed) {
  for (const int need : {0, 1, 16, 17, 256, 257, 4096, 4097, 8193, 1 << 30, INT_MAX - 4095}) {
    EXPECT_EQ(BagModel::rule(need), cc::roundedCapacity(need)) << need;
  }
  EXPECT_EQ(INT_MIN, cc::roundedCapacity(INT_MIN));
  for (const int need : {INT_MAX - 4094, INT_MAX}) {
    EXPECT_THROW(cc::roundedCapacity(need), std::bad_alloc) << need;
  }
}

TEST(Growth, StorageComesInClassesInProportion) {
  const struct {
    int capacity, room;
  } rows[] = {
      {48, 64},          {80, 128}, {4096, 4096}, {20480, 32768}, {(1 << 30) + 4096, INT_MAX},
      {INT_MAX, INT_MAX}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.room, cc::storageClass(row.capacity, INT_MAX)) << row.capacity;
  }
  EXPECT_EQ(120, cc::storageClass(112, 120));
  int last = 0;
  for (int capacity = 1; capacity < 100'000; ++capacity) {
    const int room = cc::storageClass(capacity, INT_MAX);
    ASSERT_GE(room, capacity);
    ASSERT_LT(room, 2 * capacity);
    ASSERT_GE(room, last) << capacity;
    last = room;
  }
}

TEST(SimpleVector, ReportsTheRuledCapacityAndKeepsElements) {
  SimpleVector<int> v;
  EXPECT_EQ(nullptr, v.getData());
  EXPECT_EQ(0, v.getCapacity());
  for (int i = 0; i < 20'000; ++i) {
    v.append(i * 3);
    ASSERT_EQ(i + 1, v.getCount());
    ASSERT_EQ(BagModel::rule(i + 1), v.getCapacity());
  }
  int i = 0;
  for (const int x : v) ASSERT_EQ(3 * i++, x);
  EXPECT_EQ(20'000, i);
  EXPECT_EQ(30, v[10]);
}

TEST(SimpleVector, ExpandNeverShrinksAndRefusesWhatNoIntCounts) {
  SimpleVector<char> v;
  v.append('x');
  const struct {
    int need, capacity;
  } rows[] = {{-5, 16}, {0, 16}, {257, 512}, {16, 512}, {4097, 8192}, {8193, 12288}};
  for (const auto& row : rows) {
    v.expand(row.need);
    EXPECT_EQ(row.capacity, v.getCapacity()) << row.need;
  }
  EXPECT_THROW(v.expand(INT_MAX), std::bad_alloc);
  EXPECT_EQ(12288, v.getCapacity());
  EXPECT_EQ('x', v[0]);
  struct Large {
    char bytes[1 << 20];
  };
  SimpleVector<Large> large;
  EXPECT_THROW(large.expand(INT_MAX - 4095), std::bad_alloc);
  EXPECT_EQ(0, large.getCapacity());
}

TEST(SimpleVector, AppendsAnElementOfItsOwn) {
  SimpleVector<int> v;
  v.append(7);
  while (v.getCount() < 1000) v.append(v[v.getCount() - 1]);
  EXPECT_EQ(7000, std::accumulate(v.begin(), v.end(), 0));
}

TEST(SimpleVector, AppendingIsLinear) {
  for (const int n : {100'000, 200'000, 400'000}) {
    const AllocCount count;
    SimpleVector<int> v;
    for (int i = 0; i < n; ++i) v.append(i);
    EXPECT_LT(count.bytes(), 6 * sizeof(int) * static_cast<std::size_t>(n)) << n;
    EXPECT_LT(count.blocks(), 40u) << n;
  }
}

TEST(SimpleVector, MovesItsArray) {
  SimpleVector<int> a;
  for (int i = 0; i < 40; ++i) a.append(i);
  const int* data = a.getData();
  SimpleVector<int> b(std::move(a));
  EXPECT_EQ(nullptr, a.getData());
  EXPECT_EQ(0, a.getCount());
  EXPECT_EQ(0, a.getCapacity());
  SimpleVector<int> c;
  c.append(1);
  c = std::move(b);
  SimpleVector<int>& same = c;
  c = std::move(same);
  EXPECT_EQ(data, c.getData());
  EXPECT_EQ(40, c.getCount());
  EXPECT_EQ(48, c.getCapacity());
  a.append(5);  // an emptied vector serves on
  EXPECT_EQ(5, a[0]);
}
TEST(SimpleVector, IsWholeWhateverAllocationFails) {
  sweepAllocations([](AllocSweep& sweep) {
    SimpleVector<int> v;
    int expected = 0;
    for (int i = 0; i < 300; ++i) {
      const int capacity = v.getCapacity();
      if (sweep.attempt([&] { v.append(i); })) {
        ++expected;
      } else {
        EXPECT_EQ(capacity, v.getCapacity());
        break;
      }
      ASSERT_EQ(BagModel::rule(expected), v.getCapacity());
    }
    ASSERT_EQ(expected, v.getCount());
    for (int i = 0; i < expected; ++i) ASSERT_EQ(i, v[i]);
  });
}

TEST(StringVector, OwnsItsStrings) {
  const std::size_t before = liveBlocks();
  {
    StringVector<char> v;
    v.append(newText("a"));
    v.append(nullptr);
    for (int i = 0; i < 30; ++i) v.append(newText("more"));
    v.truncate(40);
    EXPECT_EQ(32, v.getCount());
    v.truncate(3);
    EXPECT_EQ(3, v.getCount());
    EXPECT_EQ(32, v.getCapacity());
    EXPECT_EQ(before + 3, liveBlocks());

    StringVector<char> moved(std::move(v));
    EXPECT_EQ(0, v.getCount());
    EXPECT_STREQ("more", moved[2]);
    StringVector<char> target;
    target.append(newText("old"));
    target = std::move(moved);
    EXPECT_EQ(before + 3, liveBlocks());
    EXPECT_STREQ("a", target[0]);

    target.removeAll();
    EXPECT_EQ(nullptr, target.getData());
    EXPECT_EQ(0, target.getCount());
    EXPECT_EQ(0, target.getCapacity());
    EXPECT_EQ(before, liveBlocks());
    target.append(newText("again"));
    EXPECT_STREQ("again", target[0]);
  }
  EXPECT_EQ(before, liveBlocks());
}
template <class Holder>
class HolderTest : public testing::Test {};
using Holders = testing::Types<ArrayHolder<char>, BufHolder<char>>;
TYPED_TEST_SUITE(HolderTest, Holders);

TYPED_TEST(HolderTest, OwnsOneArray) {
  const std::size_t before = liveBlocks();
  {
    TypeParam none;
    EXPECT_EQ(nullptr, none.get());
    char* text = newText("text");
    TypeParam a(text);
    a.reset(text);  // its own array
    EXPECT_STREQ("text", a.get());
    TypeParam b(std::move(a));
    EXPECT_EQ(nullptr, a.get());
    TypeParam& same = b;
    b = std::move(same);
    EXPECT_EQ(text, b.get());
    a = std::move(b);
    a.reset(newText("other"));
    EXPECT_EQ(before + 1, liveBlocks());
    char* stolen = a.steal();
    EXPECT_EQ(nullptr, a.get());
    EXPECT_STREQ("other", stolen);
    b.reset(stolen);
    b.reset();
    EXPECT_EQ(before, liveBlocks());
    none.reset(newText("left to the destructor"));
  }
  EXPECT_EQ(before, liveBlocks());
}
}  // namespace
// NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
