// The bag beside its naive model, on random calls and on all small ones.

#include <gtest/gtest.h>

#include <random>

#include "tests/core/bag_calls.h"

namespace {

using cc::test::BagModel;
using cc::test::bytesOf;
using cc::test::resultOf;

TEST(Bag, AgreesWithTheModelOnRandomCalls) {
  std::mt19937 random(20240611);
  cc::test::BagCalls calls(
      [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); });
  for (int i = 0; i < 200'000; ++i) {
    ASSERT_EQ("", calls.step()) << "call " << i;
  }
}

// Every small number around both ends of eight bytes.
TEST(Bag, AgreesWithTheModelOnEverySmallNumber) {
  const auto check = [](int position, auto onBag, auto onModel) {
    Bag bag("012345\0007", 8);
    BagModel model;
    model.put(bytesOf(bag), 1);
    bag.setPosition(position);
    model.position = position;
    const BagModel::Result expected = onModel(model);
    ASSERT_EQ(expected, resultOf([&] { onBag(bag); })) << position;
    ASSERT_EQ(model.data, bytesOf(bag)) << position;
    ASSERT_EQ(model.position, bag.getPosition()) << position;
    ASSERT_EQ(model.capacity, bag.getCapacity()) << position;
  };
  for (int position = -2; position <= 12; ++position) {
    std::string got;
    check(
        position, [](Bag& b) { b.getStringPtr(); }, [&](auto& m) { return m.getString(got); });
    for (int n = -1; n <= 12; ++n) {
      const std::string text(n > 0 ? static_cast<std::size_t>(n) : 0, 'x');
      for (const int align : {1, 4, 8}) {
        check(
            position, [&](Bag& b) { b.getDataPtrAligned(n, align); },
            [&](auto& m) { return m.get(got, n, align); });
        if (n < 0) continue;
        check(
            position, [&](Bag& b) { b.putDataAligned(text.data(), n, align); },
            [&](auto& m) { return m.put(text, align); });
      }
      for (int offset = -1; offset <= 9; ++offset) {
        check(
            position, [&](Bag& b) { b.delSpace(offset, n); },
            [&](auto& m) { return m.remove(offset, n); });
        if (n < 0 || offset < 0 || offset > 8) continue;
        check(
            position, [&](Bag& b) { std::memcpy(b.insSpace(offset, n), text.data(), text.size()); },
            [&](auto& m) { return m.insert(offset, text); });
      }
    }
  }
}

}  // namespace
