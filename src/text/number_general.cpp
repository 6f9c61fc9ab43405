#include <algorithm>
#include <cmath>
#include <limits>

#include "text/decimal.h"
#include "text/number.h"

namespace zento {
namespace {

// Decimal exponents that are written without an exponent.
constexpr int kLeastPlain = -4;
constexpr int kMostPlain = 14;

// Files and edit fields hold numbers only.
double MadeFinite(double value) {
  if (std::isnan(value)) return 0;
  constexpr double kMost = std::numeric_limits<double>::max();
  return std::clamp(value, -kMost, kMost);
}

std::string ExponentForm(const Decimal& decimal) {
  std::string text = decimal.digits.substr(0, 1);
  if (decimal.digits.size() > 1) text.append(".").append(decimal.digits, 1);
  const std::string exponent = std::to_string(std::abs(decimal.exponent));
  text += decimal.exponent < 0 ? "E-" : "E+";
  if (exponent.size() < 2) text += '0';
  return text + exponent;
}

// Without a sign and without a zero before the point.
std::string GeneralForm(const Decimal& decimal) {
  const int exponent = decimal.exponent;
  if (exponent < kLeastPlain || exponent > kMostPlain) return ExponentForm(decimal);
  std::string text = decimal.digits;
  if (exponent < 0) {
    text.insert(0, static_cast<std::size_t>(-exponent - 1), '0');
    return "." + text;
  }
  const auto whole = static_cast<std::size_t>(exponent) + 1;
  if (text.size() <= whole) {
    text.append(whole - text.size(), '0');
  } else {
    text.insert(whole, 1, '.');
  }
  return text;
}

std::string WithZeroAndSign(std::string text, bool negative) {
  if (text.front() == '.') text.insert(text.begin(), '0');
  if (negative && text != "0") text.insert(text.begin(), '-');
  return text;
}

}  // namespace

std::string PlainNumber(double value) {
  value = MadeFinite(value);
  return WithZeroAndSign(GeneralForm(ShortestDecimal(std::fabs(value))), value < 0);
}

std::string PlainNumber(double value, int digits) {
  value = MadeFinite(value);
  Decimal decimal = ShortestDecimal(std::fabs(value));
  digits = std::clamp(digits, 1, 17);
  if (static_cast<int>(decimal.digits.size()) > digits) {
    decimal = RoundToDigits(std::fabs(value), digits);
    decimal.digits.resize(decimal.digits.find_last_not_of('0') + 1);
  }
  return WithZeroAndSign(GeneralForm(decimal), value < 0);
}

std::string SignedNumber(double value) {
  value = MadeFinite(value);
  const char* const sign = value < 0 ? "-" : " ";
  return sign + GeneralForm(ShortestDecimal(std::fabs(value)));
}

}  // namespace zento
