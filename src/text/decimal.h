#pragma once

#include <string>

namespace zento {

// A non-negative decimal number d.ddd x 10^exponent as its digits. The first digit is not 0 unless
// the number is 0, which has exponent 0.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

// `magnitude` is finite and not negative in all of these.

// The fewest digits that read back to the same double.
Decimal ShortestDecimal(double magnitude);

// The roundings start from the exact binary value and take an exact tie away from zero.

// Rounded to `digits` (>= 1) significant digits, exactly that many.
Decimal RoundToDigits(double magnitude, int digits);

// Rounded to `decimals` (>= 0) digits behind the point: the digits of the fixed form without the
// point, the last `decimals` of them behind it and at least one before.
std::string RoundToDecimals(double magnitude, int decimals);

}  // namespace zento
