#include "text/format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "text/number.h"

namespace zento {
namespace {

std::string Fixed4(double value) {
  std::array<char, kLongestFixed4> out;
  return {out.data(), WriteFixed4(out.data(), value)};
}

std::string Scientific(double value) {
  std::array<char, kLongestScientific> out;
  return {out.data(), WriteScientific(out.data(), value)};
}

// An exact decimal expansion by schoolbook arithmetic, slow and independent of the code under test:
// m x 2^e is m x 2^e, or for negative e m x 5^-e behind a point moved by -e places.
struct Exact {
  std::string digits;  // without leading zeros; empty for 0
  int whole = 0;       // how many of them stand before the point; may be negative

  // The digit of 10^-place; place 0 is the ones.
  char At(int place) const {
    const int index = whole - 1 + place;
    return index < 0 || index >= static_cast<int>(digits.size()) ? '0' : digits[index];
  }
};

Exact Expand(double magnitude) {
  int binary = 0;
  const auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(magnitude, &binary), 53));
  binary -= 53;
  std::vector<std::uint32_t> limbs;  // base 10^9, lowest first
  for (std::uint64_t rest = mantissa; rest != 0; rest /= 1000000000) {
    limbs.push_back(static_cast<std::uint32_t>(rest % 1000000000));
  }
  const int times = std::abs(binary);
  for (int i = 0; i < times;) {
    const int step = std::min(times - i, 12);  // 5^12 < 2^28
    const std::uint64_t factor =
        binary < 0 ? static_cast<std::uint64_t>(std::pow(5, step)) : 1U << step;
    std::uint64_t carry = 0;
    for (std::uint32_t& limb : limbs) {
      carry += limb * factor;
      limb = static_cast<std::uint32_t>(carry % 1000000000);
      carry /= 1000000000;
    }
    if (carry != 0) limbs.push_back(static_cast<std::uint32_t>(carry));
    i += step;
  }
  Exact exact;
  for (auto limb = limbs.rbegin(); limb != limbs.rend(); ++limb) {
    const std::string nine = std::to_string(*limb);
    exact.digits += (limb == limbs.rbegin() ? "" : std::string(9 - nine.size(), '0')) + nine;
  }
  exact.whole = static_cast<int>(exact.digits.size()) + (binary < 0 ? binary : 0);
  return exact;
}

// The digits from the one of 10^-first to the one of 10^-last, the next one rounding half up.
std::string RoundedDigits(const Exact& exact, int first, int last) {
  std::string digits = "0";
  for (int place = first; place <= last; ++place) digits += exact.At(place);
  if (exact.At(last + 1) >= '5') {
    std::size_t i = digits.size();
    while (digits[--i] == '9') digits[i] = '0';
    ++digits[i];
  }
  return digits;
}

std::string SlowFixed(double value, int decimals) {
  const Exact exact = Expand(std::fabs(value));
  std::string digits = RoundedDigits(exact, 1 - std::max(exact.whole, 1), decimals);
  if (digits.front() == '0') digits.erase(0, 1);
  const bool zero = digits.find_first_not_of('0') == std::string::npos;
  if (decimals > 0) digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
  return (value < 0 && !zero ? "-" : "") + digits;
}

std::string SlowScientific(double value) {
  if (value == 0) return "0.0e+0";
  const Exact exact = Expand(std::fabs(value));
  int exponent = exact.whole - 1;
  std::string digits = RoundedDigits(exact, -exponent, 4 - exponent);
  if (digits.front() == '0') {
    digits.erase(0, 1);
  } else {
    ++exponent;
    digits.pop_back();
  }
  while (digits.size() > 2 && digits.back() == '0') digits.pop_back();
  digits.insert(1, ".");
  return (value < 0 ? "-" : "") + digits + (exponent < 0 ? "e-" : "e+") +
         std::to_string(std::abs(exponent));
}

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

struct Example {
  double value;
  const char* pattern;
  const char* text;
};

void Check(const std::vector<Example>& examples) {
  for (const Example& example : examples) {
    EXPECT_EQ(Format(example.value, example.pattern), example.text)
        << example.value << " under " << example.pattern;
  }
}

TEST(Format, WritesFixedPatterns) {
  Check({{-0.2, "0.0000", "-0.2000"},
         {12345.678, "0.0", "12345.7"},
         {0.01234, "#0.00000", "0.01234"},
         {12.5, "####0.0", "12.5"},
         {99.96, "##0.0", "100.0"},
         {0, "##0.0", "0.0"},
         {1599.5, "###0", "1600"},
         {200, "0000", "0200"},
         {5, "000", "005"},
         {12345, "000", "12345"},
         {0.28274, "0.0###", "0.2827"},
         {2, "0.0###", "2.0"},
         {0.5, "#0.0####", "0.5"},
         {49.96, "###0.#", "50"},
         {50.04, "###0.#", "50"},
         {0.25, "0.###", "0.25"},
         {-0.0004, "0.###", "0"},
         {0.5, "#.##", ".5"},
         {0, "#.##", "0"},
         {1e22, "0.0", "10000000000000000000000.0"},
         {0.001220703125, "0.000000", "0.001221"}});
}

TEST(Format, WritesExponentPatterns) {
  Check({{0.0000123456, "0.0###e+0", "1.2346e-5"},
         {0.001, "0.0###e+0", "1.0e-3"},
         {0, "0.0###e+0", "0.0e+0"},
         {-1.25e-10, "0.0###e+0", "-1.25e-10"},
         {0.05, "00E+0", "50E-3"},
         {0.0996, "00E+0", "10E-2"},
         {0, "00E+0", "00E+0"},
         {100, "000E+0", "100E+0"},
         {5, "000E+0", "500E-2"},
         {30000, "000E+0", "300E+2"},
         {1.5e-6, "0.0#e+00", "1.5e-06"},
         {1.2e-6, "0.0##e+0#", "1.2e-6"},
         {1.2e-16, "0.0##e+0#", "1.2e-16"},
         {1.5e-6, "0.00e+00", "1.50e-06"},
         {99999, "0.0000e+0", "9.9999e+4"},
         {999999, "0.000e+0", "1.000e+6"},
         {1234.5, "#.##e+#", "1.23e+3"},
         {0, "#.##e+#", "0e+0"},
         {1234.5, "0.0E-0", "1.2E3"}});
}

TEST(Format, RoundsTheExactValueAndTiesAwayFromZero) {
  Check({{0.125, "0.00", "0.13"},
         {-0.125, "0.00", "-0.13"},
         {2.5, "0", "3"},
         {0.5, "0", "1"},
         {0.49999999999999994, "0", "0"},
         {1.005, "0.00", "1.00"},
         {0.00005, "0.0000", "0.0001"},
         {0.03125, "0.0###", "0.0313"},
         {9.5, "0", "10"},
         {0.05, "0", "0"},
         {1.5, "0e+0", "2e+0"},
         {9.5, "0e+0", "1e+1"}});
}

TEST(Format, HasNoMinusSignOnZeros) {
  Check({{-0.00004, "0.0000", "0.0000"}, {-0.0, "0.0", "0.0"}, {-0.0, "0.0###e+0", "0.0e+0"}});
}

TEST(Format, CopiesOtherTextAndSurvivesOddPatterns) {
  Check({{2.5, "E = 0.00 V", "E = 2.50 V"},
         {-2.5, "(0.0)", "-(2.5)"},
         {7, "0e", "7e"},
         {7, "0e+", "7e+"},
         {7.5, "", "7.5"},
         {7.5, "V", "7.5"},
         {7.5, ".", "7.5"},
         {0.5, ".00", ".50"}});
}

TEST(Format, NamesWhatIsNoNumber) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Format(std::nan(""), "0.0"), "NaN");
  EXPECT_EQ(Format(-kInfinity, "0.0e+0"), "-Inf");
}

void ExpectExact(double value) {
  ASSERT_EQ(Fixed4(value), SlowFixed(value, 4)) << value;
  ASSERT_EQ(Scientific(value), SlowScientific(value)) << value;
  ASSERT_EQ(Format(value, "0.0000"), SlowFixed(value, 4)) << value;
  ASSERT_EQ(Format(value, "0.0###e+0"), SlowScientific(value)) << value;
}

TEST(TableFormats, AreExactForAnyBitPattern) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 20000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (std::isfinite(value)) ExpectExact(value);
  }
}

// Decimal texts that end in a 5 just behind the last digit kept: their doubles lie a hair above or
// below the half or exactly on it. And their neighbours.
TEST(TableFormats, AreExactNextToTies) {
  std::mt19937_64 random(4);
  const auto expect_around = [](double value) {
    ExpectExact(value);
    ExpectExact(std::nextafter(value, 0));
    ExpectExact(-std::nextafter(value, 1e300));
  };
  for (int i = 0; i < 10000; ++i) {
    const auto digits = static_cast<double>(random() % 200000) + 0.5;
    expect_around(digits / 1e4);
    expect_around(digits * std::pow(10, static_cast<int>(random() % 60) - 30));
    expect_around(static_cast<double>(random() % 1000000) * 5 / 4096);
    expect_around(static_cast<double>(random() % 4096) / 32 / 1e4);
  }
  for (int exponent = -320; exponent <= 308; ++exponent) {
    expect_around(std::pow(10, exponent));
    expect_around(9.99995 * std::pow(10, exponent - 1));
    expect_around(std::ldexp(1, exponent * 3));
  }
}

TEST(TableFormats, AreWhatFormatWritesInTheRangeOfMeasurements) {
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> volts(-10, 10);
  std::uniform_real_distribution<double> decade(-15, 6);
  for (int i = 0; i < 300000; ++i) {
    const double voltage = volts(random);
    ASSERT_EQ(Fixed4(voltage), Format(voltage, "0.0000"));
    const double current = voltage * std::pow(10, decade(random));
    ASSERT_EQ(Scientific(current), Format(current, "0.0###e+0"));
  }
}

TEST(TableFormats, FitTheirRoomAndHoldNumbersOnly) {
  constexpr double kMost = std::numeric_limits<double>::max();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Fixed4(-kMost).size(), kLongestFixed4);
  EXPECT_EQ(Fixed4(-kMost), SlowFixed(-kMost, 4));
  EXPECT_EQ(Scientific(-2.2346e-308).size(), kLongestScientific);
  EXPECT_EQ(Fixed4(std::nan("")), "0.0000");
  EXPECT_EQ(Scientific(-std::nan("")), "0.0e+0");
  EXPECT_EQ(Fixed4(-kInfinity), Fixed4(-kMost));
  EXPECT_EQ(Scientific(kInfinity), "1.7977e+308");
}

TEST(Format, IsExactForAnyNumberOfDecimals) {
  std::mt19937_64 random(6);
  for (int i = 0; i < 5000; ++i) {
    const int decimals = static_cast<int>(random() % 12);
    const std::string pattern = decimals == 0 ? "0" : "0." + std::string(decimals, '0');
    const double value = std::ldexp(static_cast<double>(random() % 100000), -(i % 40));
    ASSERT_EQ(Format(-value, pattern), SlowFixed(-value, decimals)) << value;
  }
  const double least = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(Format(least, "0." + std::string(1200, '0')), SlowFixed(least, 1200));
  EXPECT_EQ(Format(0.1, "0." + std::string(60, '0')), SlowFixed(0.1, 60));
  EXPECT_EQ(Format(0.5, "0." + std::string(900, '0') + "e+0"),
            "5." + std::string(900, '0') + "e-1");
}

TEST(Format, WritesTheGeneralDate) {
  EXPECT_EQ(FormatGeneralDate({2026, 11, 22, 21, 32, 39}), "2026/11/22 21:32:39");
  EXPECT_EQ(FormatGeneralDate({2026, 1, 2, 3, 4, 5}), "2026/01/02 03:04:05");
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
