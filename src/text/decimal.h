#pragma once

#include <string>

namespace zento {

// A non-negative decimal number d.ddd x 10^exponent as its digits. Zero is the one digit "0" with
// exponent 0; otherwise the first digit is not 0.
struct Decimal {
  std::string digits;
  int exponent = 0;

  bool IsZero() const { return digits == "0"; }
};

// `magnitude` is finite and not negative in all of these.

// The fewest digits that read back to the same double.
Decimal ShortestDecimal(double magnitude);

// Rounded to `digits` (>= 1) significant digits; always that many digits unless it is zero.
// Both roundings start from the exact binary value and take an exact tie away from zero.
Decimal RoundToDigits(double magnitude, int digits);

// Rounded to `decimals` (>= 0) digits behind the point, trailing zeros kept.
Decimal RoundToDecimals(double magnitude, int decimals);

}  // namespace zento
