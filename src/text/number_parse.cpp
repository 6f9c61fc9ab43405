#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>

#include "text/number.h"

namespace zento {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "the exact short path needs plain double arithmetic");

// Powers of ten that a double holds exactly.
constexpr double kExactPower[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargestExactPower = 22;
constexpr std::uint64_t kLargestExactInteger = std::uint64_t{1} << 53;
constexpr int kMostDigits = 19;  // that fit 64 bits whatever they are
constexpr int kExponentLimit = 100000;

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
unsigned DigitOf(char c) {
  return static_cast<unsigned char>(c) - static_cast<unsigned>('0');
}

std::string_view SkipBlanks(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  return text.substr(i);
}

// What the scan of a number has found: its extent and, while it fits, its digits as an integer.
struct Scan {
  const char* digits = nullptr;  // behind the sign
  const char* end = nullptr;     // behind the number
  std::uint64_t mantissa = 0;
  std::ptrdiff_t significant = 0;  // digits from the first non-zero one on
  std::ptrdiff_t decimals = 0;     // digits behind the point
  int exponent = 0;                // the written one, clamped to +-kExponentLimit
  bool found = false;
};

// Adds a run of digits; the mantissa wraps around unnoticed beyond kMostDigits significant ones.
const char* TakeDigits(const char* p, const char* last, Scan& scan) {
  if (scan.mantissa == 0 && scan.significant == 0) {
    while (p != last && *p == '0') ++p;
  }
  const char* const start = p;
  for (; p != last && DigitOf(*p) < 10; ++p) scan.mantissa = scan.mantissa * 10 + DigitOf(*p);
  scan.significant += p - start;
  return p;
}

// `p` stands behind an "e"; leaves the scan as it is when no digit follows.
void TakeExponent(const char* p, const char* last, Scan& scan) {
  bool negative = false;
  if (p != last && (*p == '-' || *p == '+')) negative = *p++ == '-';
  if (p == last || DigitOf(*p) >= 10) return;
  int exponent = 0;
  for (; p != last && DigitOf(*p) < 10; ++p) {
    if (exponent < kExponentLimit) exponent = exponent * 10 + static_cast<int>(DigitOf(*p));
  }
  scan.exponent = negative ? -exponent : exponent;
  scan.end = p;
}

Scan ScanNumber(const char* p, const char* last) {
  Scan scan;
  scan.digits = p;
  const char* const whole_end = TakeDigits(p, last, scan);
  scan.found = whole_end != p;
  scan.end = whole_end;
  if (whole_end != last && *whole_end == '.') {
    scan.end = TakeDigits(whole_end + 1, last, scan);
    scan.decimals = scan.end - (whole_end + 1);
    scan.found = scan.found || scan.decimals > 0;
  }
  if (scan.found && scan.end != last && (*scan.end == 'e' || *scan.end == 'E')) {
    TakeExponent(scan.end + 1, last, scan);
  }
  return scan;
}

// The long way, for many digits or large exponents.
double Convert(const Scan& scan) {
  double value = 0;
  const auto result = std::from_chars(scan.digits, scan.end, value);
  if (result.ec == std::errc()) return value;
  // Out of range: the decimal exponent of the first significant digit tells which way.
  const std::ptrdiff_t magnitude = scan.significant - scan.decimals + scan.exponent;
  return scan.significant != 0 && magnitude > 0 ? std::numeric_limits<double>::max() : 0.0;
}

double Magnitude(const Scan& scan) {
  const std::ptrdiff_t power = scan.exponent - scan.decimals;
  if (scan.significant <= kMostDigits && scan.mantissa <= kLargestExactInteger &&
      power >= -kLargestExactPower && power <= kLargestExactPower) {
    // Both operands are exact, so the one operation rounds once and correctly (Clinger 1990).
    const auto mantissa = static_cast<double>(scan.mantissa);
    return power < 0 ? mantissa / kExactPower[-power] : mantissa * kExactPower[power];
  }
  return Convert(scan);
}

}  // namespace

const char* ParseNumber(const char* first, const char* last, double& value) {
  const char* p = first;
  bool negative = false;
  if (p != last && (*p == '-' || *p == '+')) negative = *p++ == '-';
  const Scan scan = ScanNumber(p, last);
  if (!scan.found) return first;
  const double magnitude = Magnitude(scan);
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

}  // namespace zento
