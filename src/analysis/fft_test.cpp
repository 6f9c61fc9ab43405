#include "analysis/fft.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "analysis/test_definitions.h"
#include "analysis/vector_passes.h"

namespace zento {
namespace {

struct Sequence {
  std::vector<double> re, im;
};

// Numbers of both signs and of many sizes, zeros of both signs among them.
Sequence Random(std::size_t points, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::normal_distribution<double> value;
  std::uniform_int_distribution<int> power(-20, 20);
  const auto draw = [&] {
    const int p = power(random);
    return p == 0 ? 0.0 * value(random) : std::ldexp(value(random), p);
  };
  Sequence sequence;
  for (std::size_t i = 0; i < points; ++i) {
    sequence.re.push_back(draw());
    sequence.im.push_back(points % 3 == 0 ? 0 : draw());
  }
  return sequence;
}

// The first index at which the bits differ, or the length.
std::size_t Agreement(const std::vector<double>& a, const std::vector<double>& b) {
  std::size_t i = 0;
  while (i < a.size() && std::bit_cast<std::uint64_t>(a[i]) == std::bit_cast<std::uint64_t>(b[i])) {
    ++i;
  }
  return i;
}

TEST(Fft, GivesTheBitsOfItsDefinition) {
  for (std::size_t points = 2; points <= 1u << 17; points *= 2) {
    for (const double sign : {1.0, -1.0}) {
      SCOPED_TRACE(std::to_string(points) + " points, sign " + std::to_string(sign));
      Sequence fast = Random(points, static_cast<std::uint32_t>(points));
      Sequence literal = fast;
      Sequence baseline = fast;
      FFT(fast.re.data(), fast.im.data(), points, sign);
      LiteralFft(literal.re.data(), literal.im.data(), static_cast<long>(points), sign);
      EXPECT_EQ(Agreement(fast.re, literal.re), points);
      EXPECT_EQ(Agreement(fast.im, literal.im), points);
      if (points < 16) continue;
      // What a processor without the wide registers computes.
      FftPassesBaseline(baseline.re.data(), baseline.im.data(), TablesFor(points, sign < 0),
                        sign < 0 ? 1 / static_cast<double>(points) : 1);
      EXPECT_EQ(Agreement(baseline.re, literal.re), points);
      EXPECT_EQ(Agreement(baseline.im, literal.im), points);
    }
  }
}

TEST(Fft, FindsALineAndIsUndone) {
  constexpr std::size_t kPoints = 64;
  Sequence x;
  for (std::size_t n = 0; n < kPoints; ++n) {
    x.re.push_back(3 * std::cos(2 * 3.14159265358979 * 5 * static_cast<double>(n) / kPoints));
    x.im.push_back(0);
  }
  const Sequence before = x;
  FFT(x.re.data(), x.im.data(), kPoints, 1);
  for (std::size_t k = 0; k < kPoints; ++k) {
    EXPECT_NEAR(x.re[k], k == 5 || k == kPoints - 5 ? 3.0 * kPoints / 2 : 0, 1e-10) << k;
    EXPECT_NEAR(x.im[k], 0, 1e-10) << k;
  }
  FFT(x.re.data(), x.im.data(), kPoints, -1);
  for (std::size_t n = 0; n < kPoints; ++n) EXPECT_NEAR(x.re[n], before.re[n], 1e-12);
}

TEST(Fft, LeavesOtherLengthsAlone) {
  for (const std::size_t points : {0, 1, 3, 12, 100}) {
    Sequence x = Random(points + 1, 3);
    const Sequence before = x;
    FFT(x.re.data(), x.im.data(), points, -1);
    EXPECT_EQ(Agreement(x.re, before.re), points + 1);
  }
}

}  // namespace
}  // namespace zento
