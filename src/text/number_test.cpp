#include "text/number.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <random>

#include "text/format.h"

namespace zento {
namespace {

constexpr double kMost = std::numeric_limits<double>::max();

TEST(ParseLenient, TakesTheLongestPrefixThatIsANumber) {
  EXPECT_EQ(ParseLenient(" \t 1.5V"), 1.5);
  EXPECT_EQ(ParseLenient("-.05"), -0.05);
  EXPECT_EQ(ParseLenient("+5."), 5);
  EXPECT_EQ(ParseLenient("1e-3x"), 1e-3);
  EXPECT_EQ(ParseLenient("1E+05"), 1e5);
  EXPECT_EQ(ParseLenient("2e"), 2);
  EXPECT_EQ(ParseLenient("2e+"), 2);
  EXPECT_EQ(ParseLenient("1.2.3"), 1.2);
  EXPECT_EQ(ParseLenient("1,5"), 1);
  EXPECT_EQ(ParseLenient("1D5"), 1);
  EXPECT_EQ(ParseLenient("1 5"), 1);
  EXPECT_EQ(ParseLenient("0x10"), 0);
}

TEST(ParseLenient, IsZeroWithoutANumber) {
  for (const char* text :
       {"", " ", ".", "-", "+.", "e5", ".e5", "- 5", "inf", "nan", "-Infinity"}) {
    EXPECT_EQ(ParseLenient(text), 0) << text;
  }
}

TEST(ParseLenient, ClampsWhatADoubleCannotHold) {
  EXPECT_EQ(ParseLenient("1e999999999999999999999"), kMost);
  EXPECT_EQ(ParseLenient("-1e309"), -kMost);
  EXPECT_EQ(ParseLenient("1" + std::string(400, '0')), kMost);
  EXPECT_EQ(ParseLenient("1e-400"), 0);
  EXPECT_TRUE(std::signbit(ParseLenient("-1e-99999")));
  EXPECT_EQ(ParseLenient("0e999999"), 0);
  EXPECT_EQ(ParseLenient("0." + std::string(400, '0') + "1e401"), 1);
}

TEST(ParseStrict, WantsTheWholeTextToBeOneNumber) {
  EXPECT_EQ(ParseStrict(" -0.2000\t"), -0.2);
  EXPECT_EQ(ParseStrict("1.2346e-5"), 1.2346e-5);
  for (const char* text : {"", " ", "1.5V", "1 2", "1e", "--1", "nan", "1\r"}) {
    EXPECT_EQ(ParseStrict(text), std::nullopt) << text;
  }
}

TEST(ParseNumber, LeavesTheValueWhenThereIsNoNumber) {
  const std::string_view text = " 1";
  double value = 7;
  EXPECT_EQ(ParseNumber(text.data(), text.data() + text.size(), value), text.data());
  EXPECT_EQ(value, 7);
}

// The same bytes through the standard's conversion, which has no short path.
void ExpectSameAsFromChars(const std::string& text) {
  double expected = 0;
  const char* const last = text.data() + text.size();
  const auto result = std::from_chars(text.data(), last, expected);
  ASSERT_EQ(result.ec, std::errc()) << text;
  double value = 0;
  ASSERT_EQ(ParseNumber(text.data(), last, value), result.ptr) << text;
  ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << text;
}

TEST(ParseNumber, GivesTheBitsOfFromChars) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 200000; ++i) {
    const int digits = 1 + static_cast<int>(random() % 25);
    std::string text = random() % 2 != 0 ? "-" : "";
    const int point = static_cast<int>(random() % (digits + 1));
    for (int d = 0; d < digits; ++d) {
      if (d == point) text += '.';
      text += static_cast<char>('0' + random() % 10);
    }
    if (random() % 2 != 0) text += "e" + std::to_string(static_cast<int>(random() % 61) - 30);
    ExpectSameAsFromChars(text);
  }
  // At and around the edges of the short path.
  for (const char* text :
       {"9007199254740993", "9007199254740992e22", "9007199254740992e23",
        "0.00000000000000000000000000000012345", "12345678901234567890",
        "0000000000000000000000000000001e22", "1e-22", "1e-23", "5e-324", "1.7976931348623157e308",
        "-0.0", "1.00000000000000011102230246251565"}) {
    ExpectSameAsFromChars(text);
  }
}

TEST(ParseNumber, IsLinearInMegabytesOfDigits) {
  const std::string digits(std::size_t{4} << 20, '9');
  EXPECT_EQ(ParseLenient(digits), kMost);
  EXPECT_EQ(ParseLenient("." + digits), 1);
  EXPECT_EQ(ParseLenient("1e" + digits), kMost);
  EXPECT_EQ(ParseLenient(std::string(std::size_t{4} << 20, '0') + "5"), 5);
}

TEST(Rounding, TakesHalvesToTheEvenNeighbour) {
  EXPECT_EQ(ToLong(6.5), 6);
  EXPECT_EQ(ToLong(7.5), 8);
  EXPECT_EQ(ToLong(-2.5), -2);
  EXPECT_EQ(ToLong(-0.5), 0);
  EXPECT_EQ(ToLong(2.5000000000000004), 3);
  EXPECT_EQ(ToLong(0.49999999999999994), 0);
  EXPECT_EQ(RoundHalfEven(4503599627370495.5), 4503599627370496.0);
  EXPECT_EQ(RoundHalfEven(-1e300), -1e300);
  EXPECT_TRUE(std::isnan(RoundHalfEven(std::nan(""))));
}

TEST(Rounding, ClampsToTheRangeOfTheType) {
  EXPECT_EQ(ToLong(1e300), 2147483647);
  EXPECT_EQ(ToLong(2147483647.5), 2147483647);
  EXPECT_EQ(ToLong(-std::numeric_limits<double>::infinity()), -2147483647 - 1);
  EXPECT_EQ(ToLong(std::nan("")), 0);
  EXPECT_EQ(ToInteger(32767.5), 32767);
  EXPECT_EQ(ToInteger(-32769), -32768);
  EXPECT_EQ(ToByte(-1), 0);
  EXPECT_EQ(ToByte(255.5), 255);
}

TEST(GeneralForm, HasTheFewestDigits) {
  EXPECT_EQ(PlainNumber(0.05), "0.05");
  EXPECT_EQ(PlainNumber(-1e-6), "-1E-06");
  EXPECT_EQ(PlainNumber(1e-4), "0.0001");
  EXPECT_EQ(PlainNumber(1.25e-5), "1.25E-05");
  EXPECT_EQ(PlainNumber(123456789012345.0), "123456789012345");
  EXPECT_EQ(PlainNumber(1e14), "100000000000000");
  EXPECT_EQ(PlainNumber(1e15), "1E+15");
  EXPECT_EQ(PlainNumber(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(PlainNumber(-1500), "-1500");
  EXPECT_EQ(PlainNumber(std::int16_t{-5}), "-5");
}

TEST(GeneralForm, HasABlankForTheSignAndNoLeadingZeroInFiles) {
  EXPECT_EQ(SignedNumber(0.05), " .05");
  EXPECT_EQ(SignedNumber(-0.05), "-.05");
  EXPECT_EQ(SignedNumber(0.001), " .001");
  EXPECT_EQ(SignedNumber(2e-5), " 2E-05");
  EXPECT_EQ(SignedNumber(0.28274), " .28274");
  EXPECT_EQ(SignedNumber(0.0), " 0");
  EXPECT_EQ(SignedNumber(-0.0), " 0");
  EXPECT_EQ(SignedNumber(50), " 50");
  EXPECT_EQ(SignedNumber(-1e100), "-1E+100");
}

TEST(GeneralForm, IsAlwaysANumberThatReadsBack) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(ParseStrict(SignedNumber(kInfinity)), kMost);
  EXPECT_EQ(ParseStrict(PlainNumber(-kInfinity)), -kMost);
  EXPECT_EQ(ParseStrict(SignedNumber(std::nan(""))), 0);
  std::mt19937_64 random(2);
  for (int i = 0; i < 100000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    ASSERT_EQ(ParseStrict(PlainNumber(value)), value);
    ASSERT_EQ(ParseStrict(SignedNumber(value)), value);
  }
}

TEST(GeneralForm, CanBeLimitedToFewerDigits) {
  EXPECT_EQ(PlainNumber(0.1 + 0.2, 15), "0.3");
  EXPECT_EQ(PlainNumber(1.0 / 3, 15), "0.333333333333333");
  EXPECT_EQ(PlainNumber(400.0, 15), "400");
  EXPECT_EQ(PlainNumber(999999999999999.9, 15), "1E+15");
  EXPECT_EQ(PlainNumber(-2e-5, 15), "-2E-05");
}

TEST(Lists, PutABlankBeforeEveryValue) {
  EXPECT_EQ(JoinValues(std::vector<double>{0, -5, 0.05, 1e-5}), " 0 -5 .05 1E-05");
  EXPECT_EQ(JoinValues(std::vector<std::int16_t>{-1, -1, 3}), " -1 -1 3");
  EXPECT_EQ(JoinValues(std::vector<std::int32_t>{}), "");
}

TEST(Lists, ReadBackWhatTheyWrote) {
  const std::vector<std::int32_t> longs = {0, -2147483647 - 1, 2147483647, -7};
  EXPECT_EQ(SplitLongs(JoinValues(longs)), longs);
  const std::vector<double> doubles = {-0.2, 1e-300, 0.1 + 0.2, -5};
  EXPECT_EQ(SplitDoubles(JoinValues(doubles)), doubles);
}

TEST(Lists, AreCutAtSingleBlanks) {
  EXPECT_EQ(SplitLongs("  1  2 x "), (std::vector<std::int32_t>{1, 0, 2, 0}));
  EXPECT_EQ(SplitIntegers("0.5 1.5 99999 -99999"),
            (std::vector<std::int16_t>{0, 2, 32767, -32768}));
  EXPECT_EQ(SplitDoubles(""), std::vector<double>{0});
  EXPECT_EQ(SplitDoubles(".05-5"), std::vector<double>{0.05});
  EXPECT_EQ(SplitLongs("1" + std::string(1 << 20, ' ') + "2").size(), (1U << 20) + 1);
}

struct DecimalComma : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

// Under a decimal comma, in the C++ library always and in the C library where such a locale is
// installed.
TEST(Locale, ChangesNothing) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
  for (const char* name : {"C", "de_DE.UTF-8", "fr_FR.UTF-8", "German_Germany.1252"}) {
    if (std::setlocale(LC_ALL, name) == nullptr) continue;
    EXPECT_EQ(ParseLenient("1234.5"), 1234.5);
    EXPECT_EQ(ParseLenient("1,5"), 1);
    EXPECT_EQ(ParseLenient("1" + std::string(30, '0') + ".5"), 1e30);
    EXPECT_EQ(PlainNumber(123456.5), "123456.5");
    EXPECT_EQ(PlainNumber(123456), "123456");
    EXPECT_EQ(Format(123456.5, "0.00"), "123456.50");
    EXPECT_EQ(FormatGeneralDate({2026, 1, 2, 3, 4, 5}), "2026/01/02 03:04:05");
  }
  std::locale::global(before);
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace zento
