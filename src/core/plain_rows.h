#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// The rows of data tables as this program writes them, read without a check for the end of the text
// at every byte: a text that ends in a line feed ends every run of digits by itself. Whatever looks
// different in any way (blanks, other forms of numbers, more digits than a double holds exactly) is
// left to the general reader, which gives the same values.

namespace zento {

// Rows that begin before this may be read plainly; null when none may. Eight bytes behind it can
// still be read.
inline const char* PlainEnd(std::string_view text) {
  if constexpr (std::endian::native != std::endian::little) return nullptr;
  constexpr std::size_t kReadAhead = 8;
  constexpr std::size_t kLooked =
      4096;  // a text without line feeds is not searched from end to end
  text.remove_suffix(std::min(text.size(), kReadAhead));
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

inline constexpr int kMostFraction = 8;
inline constexpr std::uint64_t kWholePower[kMostFraction + 1] = {
    1, 10, 100, 1'000, 10'000, 100'000, 1'000'000, 10'000'000, 100'000'000};

// How many of the eight bytes, of which the first is the lowest, are digits before another byte
// comes. `eight` has "0" subtracted from each byte by exclusive or.
inline int CountDigits(std::uint64_t eight) {
  // A byte above 9 sets its highest bit, by itself or by the sum; sums do not reach the next byte
  // before the first of them.
  const std::uint64_t others = ((eight + 0x7676767676767676u) | eight) & 0x8080808080808080u;
  return std::countr_zero(others) / 8;
}

// The number that eight digits form: pairs, then fours, then all, each step in all places at once.
inline std::uint64_t JoinDigits(std::uint64_t eight) {
  eight = (eight * 10 + (eight >> 8)) & 0x00FF00FF00FF00FFu;
  eight = (eight * 100 + (eight >> 16)) & 0x0000FFFF0000FFFFu;
  return (eight * 10000 + (eight >> 32)) & 0xFFFFFFFFu;
}

// One to eight digits behind the point, all at once. Their count; 0 when it is another one.
inline int ReadFraction(const char* p, std::uint64_t& digits) {
  std::uint64_t eight = 0;
  std::memcpy(&eight, p, sizeof eight);
  eight ^= 0x3030303030303030u;
  const int count = CountDigits(eight);
  if (count == 0) return 0;
  digits = JoinDigits(eight << (64 - 8 * count));
  return count == kMostFraction && IsDigit(p[kMostFraction]) ? 0 : count;
}

// "-d.ddd" or "-d.ddde-d"; null when it is of another form. The digits fit 53 bits and the power of
// ten is exact, so one operation rounds once and correctly (Clinger 1990).
inline const char* ReadNumber(const char* p, double& value) {
  const bool negative = *p == '-';
  p += negative;
  const char* const first = p;
  std::uint64_t digits = 0;
  for (; IsDigit(*p); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  constexpr std::ptrdiff_t kMostWhole = 7;  // 15 digits with the fraction
  if (p == first || p - first > kMostWhole || *p != '.') return nullptr;
  std::uint64_t fraction = 0;
  const int count = ReadFraction(++p, fraction);
  if (count == 0) return nullptr;
  std::ptrdiff_t power = 0;
  // Most numbers have four. Guessing that lets the next number begin before this one's end is
  // known.
  if (count == 4) {
    digits = digits * 10000 + fraction;
    p += 4;
    power = -4;
  } else {
    digits = digits * kWholePower[count] + fraction;
    p += count;
    power = -count;
  }
  if (*p == 'e') {
    const bool below = p[1] == '-';
    // As this program writes it, so that the length does not wait for the byte.
    if (!below && p[1] != '+') return nullptr;
    p += 2;
    if (!IsDigit(*p)) return nullptr;
    std::ptrdiff_t exponent = *p++ - '0';
    if (IsDigit(*p)) exponent = exponent * 10 + (*p++ - '0');
    power += below ? -exponent : exponent;
    if (power < -kLargestPower || power > kLargestPower) return nullptr;
  }
  const auto whole = static_cast<double>(static_cast<std::int64_t>(digits));
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
