#pragma once

#include <cstdint>
#include <string>

namespace zento {

// A non-negative decimal number d.ddd x 10^exponent as its digits. The first digit is not 0 unless
// the number is 0, which has exponent 0.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

// Files, edit fields and tables hold numbers only: an infinity becomes the largest finite double of
// its sign, NaN 0.
double MadeFinite(double value);

// The decimal exponents that the general form writes without an exponent.
inline constexpr int kLeastPlain = -4;
inline constexpr int kMostPlain = 14;

// `magnitude` is finite and not negative in all of these.

// The fewest digits that read back to the same double.
Decimal ShortestDecimal(double magnitude);

// The roundings start from the exact binary value and take an exact tie away from zero.

// Rounded to `digits` (>= 1) significant digits, exactly that many.
Decimal RoundToDigits(double magnitude, int digits);

// Rounded to `decimals` (>= 0) digits behind the point: the digits of the fixed form without the
// point, the last `decimals` of them behind it and at least one before.
std::string RoundToDecimals(double magnitude, int decimals);

// digits x 10^exponent; the digits may end in zeros.
struct ShortestDigits {
  std::uint64_t digits = 0;
  int exponent = 0;
};

// The range of ShortestDigitsOf: what is measured, and much more.
inline constexpr double kLeastShortest = 1e-36;
inline constexpr double kBeyondShortest = 9007199254740992;  // 2^53

// The fewest digits that read back to the same double and, of those, the nearest to it: what
// std::to_chars finds, in a third of the time. kLeastShortest <= `magnitude` < kBeyondShortest.
ShortestDigits ShortestDigitsOf(double magnitude);

}  // namespace zento
