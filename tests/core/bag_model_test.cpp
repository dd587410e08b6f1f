// The bag beside its naive model, on random calls.

#include <gtest/gtest.h>

#include <random>

#include "tests/core/bag_calls.h"

namespace {

TEST(Bag, AgreesWithTheModelOnRandomCalls) {
  std::mt19937 random(20240611);
  cc::test::BagCalls calls(
      [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); });
  for (int i = 0; i < 200'000; ++i) {
    ASSERT_EQ("", calls.step()) << "call " << i;
  }
}

}  // namespace
