#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The rows of data tables as this program writes them, read without a check for the end of the text
// at every byte: a text that ends in a line feed ends every run of digits by itself. Whatever looks
// different in any way (blanks, other forms of numbers, more digits than a double holds exactly) is
// left to the general reader, which gives the same values.

namespace zento {

// Rows that begin before this may be read plainly; null when none may.
inline const char* PlainEnd(std::string_view text) {
  constexpr std::size_t kLooked =
      4096;  // a text without line feeds is not searched from end to end
  const std::string_view tail = text.substr(text.size() - std::min(text.size(), kLooked));
  const std::size_t feed = tail.rfind('\n');
  return feed == tail.npos ? nullptr : tail.data() + feed + 1;
}

namespace plain {

inline bool IsDigit(char c) {
  return static_cast<unsigned char>(c - '0') < 10;
}

// Powers of ten that a double holds exactly.
inline constexpr int kLargestPower = 22;
inline constexpr double kPower[kLargestPower + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// "-d.ddd" or "-d.ddde-d"; null when it is of another form. The digits fit 53 bits and the power of
// ten is exact, so one operation rounds once and correctly (Clinger 1990).
inline const char* ReadNumber(const char* p, double& value) {
  const bool negative = *p == '-';
  p += negative;
  const char* const first = p;
  std::uint64_t digits = 0;
  for (; IsDigit(*p); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  if (p == first || *p != '.') return nullptr;
  const char* const point = ++p;
  for (; IsDigit(*p); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  constexpr std::ptrdiff_t kMostBytes = 16;  // 15 digits and the point
  if (p - first > kMostBytes) return nullptr;
  std::ptrdiff_t power = point - p;
  if (*p == 'e') {
    const bool below = p[1] == '-';
    p += below || p[1] == '+' ? 2 : 1;
    if (!IsDigit(*p)) return nullptr;
    std::ptrdiff_t exponent = *p++ - '0';
    if (IsDigit(*p)) exponent = exponent * 10 + (*p++ - '0');
    power += below ? -exponent : exponent;
    if (power < -kLargestPower || power > kLargestPower) return nullptr;
  }
  const auto whole = static_cast<double>(digits);
  const double magnitude = power < 0 ? whole / kPower[-power] : whole * kPower[power];
  value = negative ? -magnitude : magnitude;
  return p;
}

}  // namespace plain

// Numbers separated by single tabs, CR LF or LF behind the last; returns the position behind it, or
// null when the row looks different.
template <std::size_t kCount>
const char* ReadPlainRow(const char* p, const char* plain_end, std::array<double, kCount>& row) {
  if (p >= plain_end) return nullptr;
  for (std::size_t column = 0; column < kCount; ++column) {
    if (column > 0 && *p++ != '\t') return nullptr;
    p = plain::ReadNumber(p, row[column]);
    if (p == nullptr) return nullptr;
  }
  if (*p == '\r') ++p;
  return *p == '\n' ? p + 1 : nullptr;
}

}  // namespace zento
