// The vectors and holders: the growth rule, ownership, and every allocation failing once. What a
// move leaves behind is looked at on purpose.
// NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)

#include "containers.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "charproc.h"
#include "tests/core/bag_model.h"
#include "tests/support/alloc_sweep.h"

using namespace cc::test;

namespace {

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
  for (const int capacity : {(1 << 30) + 1, INT_MAX}) {
    EXPECT_EQ(INT_MAX, cc::storageClass(capacity, INT_MAX));
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

TEST(SimpleVector, ExpandNeverShrinksAndRefusesWhatNoIntCounts) {
  SimpleVector<char> v;
  v.append('x');
  int most = 1;
  for (const int need : {-5, 0, 257, 16, 4097, 8193}) {
    v.expand(need);
    most = std::max(most, need);
    EXPECT_EQ(BagModel::rule(most), v.getCapacity()) << need;
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

TEST(SimpleVector, AppendingIsLinearAndKeepsTheElements) {
  for (const int n : {20'000, 400'000}) {
    const AllocCount count;
    SimpleVector<int> v;
    v.append(0);
    while (v.getCount() < n) {
      v.append(v[v.getCount() - 1]);  // of its own
      ASSERT_EQ(BagModel::rule(v.getCount()), v.getCapacity());
      ++v[v.getCount() - 1];
    }
    int i = 0;
    for (const int x : v) ASSERT_EQ(i++, x);
    EXPECT_EQ(n, i);
    EXPECT_LT(count.bytes(), 6 * sizeof(int) * static_cast<std::size_t>(n)) << n;
    EXPECT_LT(count.blocks(), 40u) << n;
  }
}

TEST(SimpleVector, IsWholeWhateverAllocationFails) {
  sweepAllocations([](AllocSweep& sweep) {
    SimpleVector<int> v;
    for (int i = 0; i < 300; ++i) {
      const int capacity = v.getCapacity();
      while (!sweep.attempt([&] { v.append(i); })) {
        EXPECT_EQ(capacity, v.getCapacity());
        ASSERT_EQ(i, v.getCount());
        v.expand(i + 1);
      }
    }
    for (int i = 0; i < 300; ++i) ASSERT_EQ(i, v[i]);
  });
}

TEST(StringVector, OwnsItsStrings) {
  const std::size_t before = liveBlocks();
  {
    StringVector<char> v;
    v.append(strnew("a", 1));
    v.append(nullptr);
    for (int i = 0; i < 30; ++i) v.append(strnew("more", 4));
    v.truncate(40);
    EXPECT_EQ(32, v.getCount());
    v.truncate(3);
    EXPECT_EQ(3, v.getCount());
    EXPECT_EQ(32, v.getCapacity());
    EXPECT_EQ(before + 3, liveBlocks());

    StringVector<char> moved(std::move(v));
    EXPECT_EQ(nullptr, v.getData());
    EXPECT_EQ(0, v.getCount());
    EXPECT_EQ(0, v.getCapacity());
    StringVector<char> target;
    target.append(strnew("old", 3));
    target = std::move(moved);
    StringVector<char>& same = target;
    target = std::move(same);
    EXPECT_EQ(before + 3, liveBlocks());
    EXPECT_EQ(32, target.getCapacity());
    EXPECT_STREQ("a", target[0]);
    EXPECT_STREQ("more", target[2]);

    target.removeAll();
    EXPECT_EQ(nullptr, target.getData());
    EXPECT_EQ(0, target.getCount());
    EXPECT_EQ(0, target.getCapacity());
    EXPECT_EQ(before, liveBlocks());
    target.append(strnew("again", 5));
    EXPECT_STREQ("again", target[0]);
  }
  EXPECT_EQ(before, liveBlocks());
}

TEST(ArrayHolder, OwnsOneArray) {
  const std::size_t before = liveBlocks();
  {
    char* text = strnew("text", 4);
    BufHolder<char> a(text);
    a.reset(text);  // its own array
    EXPECT_STREQ("text", a.get());
    BufHolder<char> b(std::move(a));
    EXPECT_EQ(nullptr, a.get());
    BufHolder<char>& same = b;
    b = std::move(same);
    EXPECT_EQ(text, b.get());
    a = std::move(b);
    a.reset(strnew("other", 5));
    EXPECT_EQ(before + 1, liveBlocks());
    char* stolen = a.steal();
    EXPECT_EQ(nullptr, a.get());
    EXPECT_STREQ("other", stolen);
    b.reset(stolen);
    b.reset();
    EXPECT_EQ(before, liveBlocks());
    a.reset(strnew("left to the destructor", 22));
  }
  EXPECT_EQ(before, liveBlocks());
}

}  // namespace
// NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
