#include "text/decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

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

// R. Giulietti, "The Schubfach way to render doubles" (2020). In the range served here the powers
// of ten fit into 128 bits, so that all scaling is exact and needs none of the paper's estimates.

__extension__ using Wide = unsigned __int128;

constexpr int kMantissaBits = 52;
constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
constexpr int kExponentBias = 1075;  // of the mantissa read as an integer

// 10^n = high:low x 2^(bits - 128), exactly, with the highest bit set.
struct Power {
  std::uint64_t high;
  std::uint64_t low;
  int bits;
};

constexpr int kMostPower = 55;  // 5^55 < 2^128

constexpr std::array<Power, kMostPower + 1> MakePowers() {
  std::array<Power, kMostPower + 1> powers{};
  Wide five = 1;
  for (std::size_t n = 0; n < powers.size(); ++n) {
    const auto top = static_cast<std::uint64_t>(five >> 64);
    const int room =
        top != 0 ? std::countl_zero(top) : 64 + std::countl_zero(static_cast<std::uint64_t>(five));
    const Wide shifted = five << room;
    powers[n] = {static_cast<std::uint64_t>(shifted >> 64), static_cast<std::uint64_t>(shifted),
                 static_cast<int>(n) - room + 128};
    five *= 5;
  }
  return powers;
}
constexpr std::array<Power, kMostPower + 1> kPowers = MakePowers();

// floor(power x number / 2^128) with the last bit set where something was cut off. That one is
// never needed otherwise, as two bits stand behind the point.
std::uint64_t ScaledToOdd(const Power& power, std::uint64_t number) {
  const Wide low = static_cast<Wide>(power.low) * number;
  const Wide high = static_cast<Wide>(power.high) * number + static_cast<std::uint64_t>(low >> 64);
  const std::uint64_t cut = static_cast<std::uint64_t>(high) | static_cast<std::uint64_t>(low);
  return static_cast<std::uint64_t>(high >> 64) | static_cast<std::uint64_t>(cut != 0);
}

}  // namespace

double MadeFinite(double value) {
  if (std::isnan(value)) return 0;
  constexpr double kMost = std::numeric_limits<double>::max();
  return std::clamp(value, -kMost, kMost);
}

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

ShortestDigits ShortestDigitsOf(double magnitude) {
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const std::uint64_t fraction = bits & (kHiddenBit - 1);
  // magnitude = mantissa x 2^binary
  const std::uint64_t mantissa = fraction | kHiddenBit;
  const int binary = static_cast<int>(bits >> kMantissaBits) - kExponentBias;
  // Below a power of two the doubles lie half as far apart.
  const bool uneven = fraction == 0;
  // floor(log10) of the distance of two doubles that read back to this one.
  const int exponent = (binary * 1262611 - (uneven ? 524031 : 0)) >> 22;
  const Power& power = kPowers[static_cast<std::size_t>(-exponent)];
  const int shift = binary + power.bits;

  // Four times the value, and the ends of the interval that reads back to it, in units of
  // 10^exponent. An end belongs to the interval when the mantissa is even.
  const std::uint64_t odd = mantissa & 1U;
  const std::uint64_t four = mantissa << 2U;
  const std::uint64_t value = ScaledToOdd(power, four << shift);
  const std::uint64_t lower = ScaledToOdd(power, (four - (uneven ? 1 : 2)) << shift) + odd;
  const std::uint64_t upper = ScaledToOdd(power, (four + 2) << shift) - odd;

  const std::uint64_t below = value >> 2U;
  const std::uint64_t tens = below / 10 * 10;
  const bool tens_read_back = lower <= tens << 2U;
  if (tens_read_back != ((tens + 10) << 2U <= upper)) {
    return {tens / 10 + (tens_read_back ? 0 : 1), exponent + 1};
  }
  const bool below_reads_back = lower <= below << 2U;
  if (below_reads_back != ((below + 1) << 2U <= upper)) {
    return {below + (below_reads_back ? 0 : 1), exponent};
  }
  const std::uint64_t half = (below << 2U) + 2;
  const bool up = value > half || (value == half && (below & 1U) != 0);
  return {below + (up ? 1 : 0), exponent};
}

}  // namespace zento
