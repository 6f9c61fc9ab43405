#include "text/number.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>

#include "text/decimal.h"

namespace zento {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "the exact short path needs plain double arithmetic");

// Powers of ten that a double holds exactly.
constexpr double kExactPower[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargestExactPower = 22;
constexpr std::uint64_t kLargestExactInteger = std::uint64_t{1} << 53;
constexpr std::ptrdiff_t kMostDigits = 19;  // that fit 64 bits whatever they are
constexpr int kExponentLimit = 100000;

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
unsigned DigitOf(char c) {
  return static_cast<unsigned char>(c) - static_cast<unsigned>('0');
}
bool IsDigit(char c) {
  return DigitOf(c) < 10;
}

std::string_view SkipBlanks(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  return text.substr(i);
}

// Appends a run of digits to `mantissa`, which wraps around unnoticed beyond kMostDigits of them.
// One at a time: the runs are short, and a predicted branch is as fast here as eight digits in a
// word.
inline const char* TakeDigits(const char* p, const char* last, std::uint64_t& mantissa) {
  for (; p != last && IsDigit(*p); ++p) mantissa = mantissa * 10 + DigitOf(*p);
  return p;
}

// What the scan of a number has found: its extent and, while they fit, its digits as an integer.
struct Scan {
  const char* end = nullptr;  // behind the number; null when there is none
  std::uint64_t mantissa = 0;
  std::ptrdiff_t digits = 0;    // all of them, leading zeros included
  std::ptrdiff_t decimals = 0;  // those behind the point
  int exponent = 0;             // the written one, limited to about kExponentLimit
};

// `p` stands behind an "e"; leaves the scan as it is when no digit follows.
inline void TakeExponent(const char* p, const char* last, Scan& scan) {
  bool negative = false;
  if (p != last && (*p == '-' || *p == '+')) negative = *p++ == '-';
  if (p == last || !IsDigit(*p)) return;
  int exponent = 0;
  do {
    if (exponent < kExponentLimit) exponent = exponent * 10 + static_cast<int>(DigitOf(*p));
    ++p;
  } while (p != last && IsDigit(*p));
  scan.exponent = negative ? -exponent : exponent;
  scan.end = p;
}

// `p` stands behind the sign.
inline Scan ScanNumber(const char* p, const char* last) {
  Scan scan;
  const char* end = TakeDigits(p, last, scan.mantissa);
  scan.digits = end - p;
  if (end != last && *end == '.') {
    const char* const point = end;
    end = TakeDigits(point + 1, last, scan.mantissa);
    scan.decimals = end - point - 1;
    scan.digits += scan.decimals;
  }
  if (scan.digits == 0) return scan;
  scan.end = end;
  if (end != last && (*end == 'e' || *end == 'E')) TakeExponent(end + 1, last, scan);
  return scan;
}

// The long way, for many digits or large exponents.
double Convert(const char* first, const Scan& scan) {
  double value = 0;
  const auto result = std::from_chars(first, scan.end, value);
  if (result.ec == std::errc()) return value;
  // Out of range: the place of the first digit that is not 0 tells which way.
  std::ptrdiff_t leading = 0;
  for (const char* p = first; p != scan.end && (*p == '0' || *p == '.'); ++p) leading += *p == '0';
  const std::ptrdiff_t magnitude = scan.digits - leading - scan.decimals + scan.exponent;
  return magnitude > 0 ? std::numeric_limits<double>::max() : 0.0;
}

inline double Magnitude(const char* first, const Scan& scan) {
  const std::ptrdiff_t power = scan.exponent - scan.decimals;
  if (scan.digits <= kMostDigits && scan.mantissa <= kLargestExactInteger &&
      power >= -kLargestExactPower && power <= kLargestExactPower) {
    // Both operands are exact, so the one operation rounds once and correctly (Clinger 1990).
    const auto mantissa = static_cast<double>(static_cast<std::int64_t>(scan.mantissa));
    return power < 0 ? mantissa / kExactPower[-power] : mantissa * kExactPower[power];
  }
  return Convert(first, scan);
}

}  // namespace

const char* ParseNumber(const char* first, const char* last, double& value) {
  const char* p = first;
  bool negative = false;
  if (p != last && (*p == '-' || *p == '+')) negative = *p++ == '-';
  const Scan scan = ScanNumber(p, last);
  if (scan.end == nullptr) return first;
  const double magnitude = Magnitude(p, scan);
  value = negative ? -magnitude : magnitude;
  return scan.end;
}

double ParseLenient(std::string_view text) {
  text = SkipBlanks(text);
  double value = 0;
  ParseNumber(text.data(), text.data() + text.size(), value);
  return value;
}

std::optional<double> ParseStrict(std::string_view text) {
  text = SkipBlanks(text);
  double value = 0;
  const char* const last = text.data() + text.size();
  const char* p = ParseNumber(text.data(), last, value);
  if (p == text.data()) return std::nullopt;
  while (p != last && IsBlank(*p)) ++p;
  if (p != last) return std::nullopt;
  return value;
}

double RoundHalfEven(double value) {
  if (!(std::fabs(value) < 4503599627370496.0)) return value;  // 2^52: whole already, or NaN
  // Written out because std::nearbyint follows the thread's rounding mode.
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest < 0.5) return std::copysign(below, value);
  if (rest > 0.5) return std::copysign(below + 1, value);
  return std::copysign(std::fmod(below, 2.0) == 0 ? below : below + 1, value);
}

namespace {

template <typename Int>
Int ToRange(double value) {
  const double rounded = RoundHalfEven(value);
  if (std::isnan(rounded)) return 0;
  constexpr double kLeast = std::numeric_limits<Int>::min();
  constexpr double kMost = std::numeric_limits<Int>::max();
  if (rounded <= kLeast) return std::numeric_limits<Int>::min();
  if (rounded >= kMost) return std::numeric_limits<Int>::max();
  return static_cast<Int>(rounded);
}

}  // namespace

std::int32_t ToLong(double value) {
  return ToRange<std::int32_t>(value);
}
std::int16_t ToInteger(double value) {
  return ToRange<std::int16_t>(value);
}
std::uint8_t ToByte(double value) {
  return ToRange<std::uint8_t>(value);
}

// Writing.

namespace {

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

// Lists.

namespace {

template <typename T>
std::string Join(std::span<const T> values) {
  std::string line;
  for (const T value : values) {
    if (value < 0) line += ' ';
    line += SignedNumber(value);
  }
  return line;
}

template <typename T, typename Convert>
std::vector<T> Split(std::string_view text, Convert convert) {
  const std::size_t first = text.find_first_not_of(' ');
  text = first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
  std::vector<T> values;
  for (;;) {
    const std::size_t blank = text.find(' ');
    values.push_back(convert(ParseLenient(text.substr(0, blank))));
    if (blank == text.npos) return values;
    text.remove_prefix(blank + 1);
  }
}

}  // namespace

std::string JoinValues(std::span<const std::int16_t> values) {
  return Join(values);
}
std::string JoinValues(std::span<const std::int32_t> values) {
  return Join(values);
}
std::string JoinValues(std::span<const double> values) {
  return Join(values);
}

std::vector<std::int16_t> SplitIntegers(std::string_view text) {
  return Split<std::int16_t>(text, ToInteger);
}

std::vector<std::int32_t> SplitLongs(std::string_view text) {
  return Split<std::int32_t>(text, ToLong);
}

std::vector<double> SplitDoubles(std::string_view text) {
  return Split<double>(text, [](double value) { return value; });
}

std::string_view ListHead(std::string_view text, int count) {
  std::size_t at = text.find_first_not_of(" \t");
  for (; count > 0 && at != text.npos; --count) at = text.find(' ', at + 1);
  return text.substr(0, at);
}

}  // namespace zento
