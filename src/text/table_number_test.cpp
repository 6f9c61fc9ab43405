#include "text/table_number.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

std::string Plain(double value) {
  std::array<char, kLongestPlain> out;
  return {out.data(), WritePlain(out.data(), value)};
}

std::string Scientific4(double value) {
  std::array<char, kLongestScientific4> out;
  return {out.data(), WriteScientific4(out.data(), value)};
}

void Compare(double value) {
  ASSERT_EQ(Plain(value), PlainNumber(value));
  ASSERT_EQ(Scientific4(value), Format(value, "0.0000e+0")) << value;
}

TEST(TableNumber, WritesWhatTheGeneralFormsWrite) {
  for (const double value : {0.0, -0.0, 1.0, -1.0, 0.05, -1e-6, 1e14, 1e15, 123456789012345678.0,
                             1e-4, 9.999e-5, 0.1 + 0.2, 99999.5, 9.99995, 5e-324, 1e100, 1e22,
                             -1.2345678901234567e-308, std::numeric_limits<double>::max()}) {
    Compare(value);
  }
  std::mt19937_64 random(1);
  for (int i = 0; i < 50000; ++i) {
    const auto any = std::bit_cast<double>(random());
    if (std::isfinite(any)) Compare(any);
    const double decimals = std::pow(10.0, static_cast<int>(random() % 30) - 12);
    Compare(std::round(1e5 * std::ldexp(static_cast<double>(random()), -64)) / decimals);
  }
}

// Powers of two, below which the doubles lie closer, their neighbours, and numbers with all digits.
TEST(TableNumber, WritesTheShortestNumberWhereNothingIsRoundAboutIt) {
  std::mt19937_64 random(2);
  for (int exponent = -125; exponent < 56; ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    for (const double value : {power, std::nextafter(power, 0), std::nextafter(power, 2 * power),
                               std::nextafter(std::nextafter(power, 0), 0)}) {
      ASSERT_EQ(Plain(value), PlainNumber(value));
    }
    for (int i = 0; i < 1000; ++i) {
      const double value = power * (1 + std::ldexp(static_cast<double>(random() >> 12U), -52));
      ASSERT_EQ(Plain(-value), PlainNumber(-value));
    }
  }
}

TEST(TableNumber, ATableHoldsNumbersOnly) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Plain(std::nan("")), "0");
  EXPECT_EQ(Plain(-kInfinity), PlainNumber(std::numeric_limits<double>::lowest()));
  EXPECT_EQ(Scientific4(std::nan("")), "0.0000e+0");
  EXPECT_EQ(Scientific4(kInfinity), "1.7977e+308");
}

}  // namespace
}  // namespace zento
