#include "text/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zento {
namespace {

// No double has more significant decimal digits than this, so these are all of them.
constexpr int kAllDigits = 767;
// Digits looked at behind the last one kept before the exact expansion is asked for.
constexpr int kGuardDigits = 20;

// Splits "d.ddde+xx".
Decimal FromScientific(const char* first, const char* last) {
  Decimal decimal;
  const char* const e = std::find(first, last, 'e');
  decimal.digits.assign(1, *first);
  if (e - first > 2) decimal.digits.append(first + 2, e);
  const char* exponent = e + 1;
  if (*exponent == '+') ++exponent;
  std::from_chars(exponent, last, decimal.exponent);
  return decimal;
}

Decimal Expand(double magnitude, int digits) {
  std::array<char, kAllDigits + 16> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                    std::chars_format::scientific, digits - 1);
  return FromScientific(text.data(), result.ptr);
}

// Adds one to the last digit; true when the number grew by a digit, which is then dropped again.
void RoundUp(Decimal& decimal) {
  std::size_t i = decimal.digits.size();
  while (i > 0 && decimal.digits[i - 1] == '9') decimal.digits[--i] = '0';
  if (i > 0) {
    ++decimal.digits[i - 1];
  } else {
    decimal.digits.insert(decimal.digits.begin(), '1');
    decimal.digits.pop_back();
    ++decimal.exponent;
  }
}

// Cuts `decimal` to `digits` digits, a dropped first digit of 5 or more counting up.
void Cut(Decimal& decimal, int digits) {
  const auto keep = static_cast<std::size_t>(digits);
  const bool up = decimal.digits[keep] >= '5';
  decimal.digits.resize(keep);
  if (up) RoundUp(decimal);
}

// Whether what stands behind `keep` digits is a five and nothing but zeros. The expansion is itself
// rounded, so the true number may then lie on either side of the half.
bool LooksLikeTie(const Decimal& decimal, int keep) {
  const std::string& digits = decimal.digits;
  const auto at = static_cast<std::size_t>(keep);
  return digits[at] == '5' && digits.find_first_not_of('0', at + 1) == std::string::npos;
}

}  // namespace

Decimal ShortestDecimal(double magnitude) {
  std::array<char, 32> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                    std::chars_format::scientific);
  return FromScientific(text.data(), result.ptr);
}

Decimal RoundToDigits(double magnitude, int digits) {
  if (magnitude == 0) return {"0", 0};
  if (digits >= kAllDigits) {
    Decimal all = Expand(magnitude, kAllDigits);
    all.digits.resize(static_cast<std::size_t>(digits), '0');
    return all;
  }
  Decimal decimal = Expand(magnitude, std::min(digits + kGuardDigits, kAllDigits));
  if (LooksLikeTie(decimal, digits)) decimal = Expand(magnitude, kAllDigits);
  Cut(decimal, digits);
  return decimal;
}

Decimal RoundToDecimals(double magnitude, int decimals) {
  if (magnitude == 0) return {"0", 0};
  const int exponent = Expand(magnitude, kGuardDigits).exponent;
  const int digits = exponent + 1 + decimals;
  if (digits > 0) {
    Decimal rounded = RoundToDigits(magnitude, digits);
    // A carry into a new first digit must not cost the last decimal.
    const int wanted = rounded.exponent + 1 + decimals;
    rounded.digits.resize(static_cast<std::size_t>(wanted), '0');
    return rounded;
  }
  // Below the last decimal: one unit of it from half of it on, else nothing.
  const Decimal all = Expand(magnitude, kAllDigits);
  if (all.exponent == -decimals - 1 && all.digits[0] >= '5') return {"1", -decimals};
  return {"0", 0};
}

}  // namespace zento
