#include "text/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zento {
namespace {

// No double has more significant decimal digits than this, so these are all of them.
constexpr int kAllDigits = 767;
// Nor more decimals, nor more digits before the point.
constexpr int kAllDecimals = 1074;
constexpr int kMostWholeDigits = 309;
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
  std::array<char, kAllDigits + 16> text;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                    std::chars_format::scientific, digits - 1);
  return FromScientific(text.data(), result.ptr);
}

// All digits of the fixed form with so many decimals, without the point.
std::string ExpandFixed(double magnitude, int decimals) {
  std::array<char, kMostWholeDigits + 1 + kAllDecimals> text;
  const char* const first = text.data();
  const char* const last = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                         std::chars_format::fixed, decimals)
                               .ptr;
  const char* const point = std::find(first, last, '.');
  std::string digits(first, point);
  if (point != last) digits.append(point + 1, last);
  return digits;
}

// Whether what stands behind the first `keep` digits is a five and nothing but zeros. The digits
// are themselves rounded, so the true number may then lie on either side of the half.
bool LooksLikeTie(const std::string& digits, std::size_t keep) {
  return digits[keep] == '5' && digits.find_first_not_of('0', keep + 1) == std::string::npos;
}

// Cuts to the first `keep` digits; a dropped first digit of 5 or more counts up. True when that
// gave a number with one more digit, 10...0.
bool Cut(std::string& digits, std::size_t keep) {
  const bool up = digits[keep] >= '5';
  digits.resize(keep);
  if (!up) return false;
  std::size_t i = keep;
  while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
  if (i > 0) {
    ++digits[i - 1];
    return false;
  }
  digits.insert(digits.begin(), '1');
  return true;
}

}  // namespace

Decimal ShortestDecimal(double magnitude) {
  std::array<char, 32> text;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                    std::chars_format::scientific);
  return FromScientific(text.data(), result.ptr);
}

Decimal RoundToDigits(double magnitude, int digits) {
  const auto wanted = static_cast<std::size_t>(digits);
  Decimal decimal;
  if (digits >= kAllDigits) {
    decimal = Expand(magnitude, kAllDigits);
    decimal.digits.resize(wanted, '0');
    return decimal;
  }
  decimal = Expand(magnitude, std::min(digits + kGuardDigits, kAllDigits));
  if (LooksLikeTie(decimal.digits, wanted)) decimal = Expand(magnitude, kAllDigits);
  if (Cut(decimal.digits, wanted)) {
    decimal.digits.pop_back();
    ++decimal.exponent;
  }
  return decimal;
}

std::string RoundToDecimals(double magnitude, int decimals) {
  const auto wanted = static_cast<std::size_t>(decimals);
  if (decimals >= kAllDecimals) {
    std::string digits = ExpandFixed(magnitude, kAllDecimals);
    return digits.append(wanted - kAllDecimals, '0');
  }
  int taken = std::min(decimals + kGuardDigits, kAllDecimals);
  std::string digits = ExpandFixed(magnitude, taken);
  const auto keep = [&] { return digits.size() - static_cast<std::size_t>(taken) + wanted; };
  if (LooksLikeTie(digits, keep())) {
    taken = kAllDecimals;
    digits = ExpandFixed(magnitude, taken);
  }
  Cut(digits, keep());
  return digits;
}

}  // namespace zento
