#include "sim/random.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zento::sim {
namespace {

TEST(Random, GaussianHasTheMomentsAndTheTailsOfOne) {
  Random random(7);
  constexpr int kCount = 4'000'000;
  double sum = 0;
  double squares = 0;
  double fourths = 0;
  int beyond2 = 0;
  int beyond4 = 0;
  int above4 = 0;
  for (int i = 0; i < kCount; ++i) {
    const double x = random.Gaussian();
    sum += x;
    squares += x * x;
    fourths += x * x * x * x;
    beyond2 += std::abs(x) > 2;
    above4 += x > 4;
    beyond4 += std::abs(x) > 4;  // within the tail beyond the ziggurat's bottom layer
  }
  // Five standard errors each.
  EXPECT_NEAR(sum / kCount, 0.0, 5 / std::sqrt(kCount));
  EXPECT_NEAR(squares / kCount, 1.0, 5 * std::sqrt(2.0 / kCount));
  EXPECT_NEAR(fourths / kCount, 3.0, 5 * std::sqrt(96.0 / kCount));
  EXPECT_NEAR(beyond2, kCount * 0.0455003, 5 * std::sqrt(kCount * 0.0455));
  EXPECT_NEAR(above4, kCount * 3.1671e-5, 5 * std::sqrt(kCount * 3.1671e-5));
  EXPECT_NEAR(beyond4, kCount * 6.3342e-5, 5 * std::sqrt(kCount * 6.3342e-5));
}

TEST(Random, TheSeedDecidesEverything) {
  Random one(1);
  Random same(1);
  Random other(2);
  EXPECT_EQ(one.Bits(), same.Bits());
  EXPECT_NE(one.Bits(), other.Bits());
}

}  // namespace
}  // namespace zento::sim
