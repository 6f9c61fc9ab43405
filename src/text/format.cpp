#include "text/format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "text/decimal.h"
#include "text/number.h"

namespace zento {
namespace {

// A run of digit places, "0" and "#".
struct Places {
  std::size_t from = 0;
  std::size_t to = 0;

  bool empty() const { return from == to; }
};

Places TakePlaces(std::string_view pattern, std::size_t from) {
  std::size_t to = from;
  while (to < pattern.size() && (pattern[to] == '0' || pattern[to] == '#')) ++to;
  return {from, to};
}

// Digits that are always written before the point: from the first "0" on.
int LeastWhole(std::string_view pattern, Places places) {
  while (!places.empty() && pattern[places.from] != '0') ++places.from;
  return static_cast<int>(places.to - places.from);
}

// Digits that are always written behind the point: to the last "0".
int LeastDecimals(std::string_view pattern, Places places) {
  while (!places.empty() && pattern[places.to - 1] != '0') --places.to;
  return static_cast<int>(places.to - places.from);
}

// A pattern taken apart. The texts point into the pattern.
struct Pattern {
  std::string_view before;
  std::string_view behind;
  bool has_places = false;
  int least_whole = 0;
  int least_decimals = 0;
  int most_decimals = 0;
  char exponent_letter = 0;  // 0: no exponent form
  bool exponent_plus = false;
  int least_exponent = 1;
};

// Reads "e+0" at `at`; returns the position behind it, or `at` when it is something else.
std::size_t TakeExponent(std::string_view text, std::size_t at, Pattern& pattern) {
  if (at >= text.size() || (text[at] != 'e' && text[at] != 'E')) return at;
  std::size_t p = at + 1;
  const bool plus = p < text.size() && text[p] == '+';
  if (plus || (p < text.size() && text[p] == '-')) ++p;
  const Places places = TakePlaces(text, p);
  if (places.empty()) return at;
  pattern.exponent_letter = text[at];
  pattern.exponent_plus = plus;
  pattern.least_exponent = std::max(1, LeastDecimals(text, places));
  return places.to;
}

Pattern TakeApart(std::string_view text) {
  Pattern pattern;
  const std::size_t start = std::min(text.find_first_of("0#."), text.size());
  const Places whole = TakePlaces(text, start);
  std::size_t at = whole.to;
  Places decimals;
  if (at < text.size() && text[at] == '.') {
    decimals = TakePlaces(text, at + 1);
    at = decimals.to;
  }
  pattern.before = text.substr(0, start);
  pattern.has_places = !whole.empty() || !decimals.empty();
  pattern.least_whole = LeastWhole(text, whole);
  pattern.least_decimals = LeastDecimals(text, decimals);
  pattern.most_decimals = static_cast<int>(decimals.to - decimals.from);
  pattern.behind = text.substr(TakeExponent(text, at, pattern));
  return pattern;
}

// Writes the digits with the point behind the first `whole` of them, zeros filled up and dropped as
// the pattern wants.
void WriteDigits(std::string& out, std::string digits, std::size_t whole, const Pattern& pattern) {
  const auto least_whole = static_cast<std::size_t>(pattern.least_whole);
  const auto least_decimals = static_cast<std::size_t>(pattern.least_decimals);
  while (digits.size() > whole + least_decimals && digits.back() == '0') digits.pop_back();
  if (whole < least_whole) out.append(least_whole - whole, '0');
  out.append(digits, 0, whole);
  if (digits.size() > whole) out.append(".").append(digits, whole);
}

void WriteFixed(std::string& out, double magnitude, const Pattern& pattern) {
  std::string digits = RoundToDecimals(magnitude, pattern.most_decimals);
  std::size_t whole = digits.size() - static_cast<std::size_t>(pattern.most_decimals);
  if (digits.front() == '0') {  // only the pattern asks for a zero there
    digits.erase(0, 1);
    --whole;
  }
  const std::size_t start = out.size();
  WriteDigits(out, std::move(digits), whole, pattern);
  if (out.size() == start) out += '0';
}

void WriteExponentForm(std::string& out, double magnitude, const Pattern& pattern) {
  const int whole = std::max(1, pattern.least_whole);
  Decimal decimal = RoundToDigits(magnitude, whole + pattern.most_decimals);
  const int exponent = magnitude == 0 ? 0 : decimal.exponent - (whole - 1);
  WriteDigits(out, std::move(decimal.digits), static_cast<std::size_t>(whole), pattern);
  out += pattern.exponent_letter;
  if (exponent < 0) {
    out += '-';
  } else if (pattern.exponent_plus) {
    out += '+';
  }
  const std::string digits = std::to_string(std::abs(exponent));
  const auto least = static_cast<std::size_t>(pattern.least_exponent);
  if (digits.size() < least) out.append(least - digits.size(), '0');
  out += digits;
}

}  // namespace

std::string Format(double value, std::string_view pattern) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Inf" : "Inf";
  const Pattern parts = TakeApart(pattern);
  if (!parts.has_places) return PlainNumber(value);
  std::string out(parts.before);
  if (parts.exponent_letter != 0) {
    WriteExponentForm(out, std::fabs(value), parts);
  } else {
    WriteFixed(out, std::fabs(value), parts);
  }
  const bool shows_value = out.find_first_of("123456789", parts.before.size()) != std::string::npos;
  if (value < 0 && shows_value) out.insert(out.begin(), '-');
  return out.append(parts.behind);
}

namespace {

void AppendPadded(std::string& out, int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  if (digits.size() < width) out.append(width - digits.size(), '0');
  out += digits;
}

}  // namespace

std::string FormatGeneralDate(const CalendarTime& time) {
  std::string out;
  AppendPadded(out, time.year, 4);
  const std::array<std::pair<char, int>, 5> rest = {{{'/', time.month},
                                                     {'/', time.day},
                                                     {' ', time.hour},
                                                     {':', time.minute},
                                                     {':', time.second}}};
  for (const auto& [separator, number] : rest) {
    out += separator;
    AppendPadded(out, number, 2);
  }
  return out;
}

}  // namespace zento
