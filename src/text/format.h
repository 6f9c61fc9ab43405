#pragma once

#include <string>
#include <string_view>

namespace zento {

// Writes a number after a pattern such as "0.0000", "##0.0", "0.0###e+0" or "000E+0":
//
//   0    a digit that is always written
//   #    a digit that is written where the number has one: trailing zeros behind the point are
//        dropped, and so is the point when no digit is left behind it ("0.###" of 5 is "5")
//   .    the decimal point, in every locale
//   e+0  exponent form; the letter keeps its case, "+" writes the exponent's sign always and "-"
//        only when negative, the zeros are the exponent's least digits. The mantissa has as many
//        digits before the point as the pattern has from its first 0 there on, at least one:
//        "00E+0" of 0.05 is "50E-3".
//
// Other text before and after is copied. A number larger than the pattern keeps all its digits.
// Rounding starts from the exact binary value and takes an exact tie away from zero: 0.125 under
// "0.00" is "0.13", while 1.005, whose double lies below, is "1.00". A result of nothing but zeros
// has no minus sign. NaN is "NaN", infinities are "Inf" and "-Inf"; a pattern without any digit
// place gives the general form (PlainNumber).
std::string Format(double value, std::string_view pattern);

// A moment of local civil time, as a wall clock shows it.
struct CalendarTime {
  int year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;    // 1 to 31
  int hour = 0;   // 0 to 23
  int minute = 0;
  int second = 0;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

// "2026/11/22 21:32:39", the same in every locale.
std::string FormatGeneralDate(const CalendarTime& time);

// The two number forms of a track file's data table, for its millions of numbers: no allocation, no
// terminating NUL, return the position behind the last character. Byte for byte what Format writes
// for every finite double. A table holds numbers only, or it could not be read back to its end: NaN
// is written as 0, an infinity as the largest finite double of its sign.

// "0.0000". `out` has room for kLongestFixed4 characters.
inline constexpr int kLongestFixed4 = 1 + 309 + 1 + 4;
char* WriteFixed4(char* out, double value);

// "0.0###e+0". `out` has room for kLongestScientific characters.
inline constexpr int kLongestScientific = 12;  // "-1.2346e-308"
char* WriteScientific(char* out, double value);

// The two number forms of tables on the clipboard, for their hundred thousands of numbers, under
// the same terms: no allocation, no terminating NUL, the position behind the last character, NaN as
// 0 and an infinity as the largest finite double, or a spreadsheet would read text.

// PlainNumber, byte for byte. `out` has room for kLongestPlain characters.
inline constexpr int kLongestPlain = 24;  // "-1.2345678901234567E-308"
char* WritePlain(char* out, double value);

// "0.0000e+0", byte for byte what Format writes for every finite double. `out` has room for
// kLongestScientific4 characters.
inline constexpr int kLongestScientific4 = 12;  // "-1.2346e-308"
char* WriteScientific4(char* out, double value);

}  // namespace zento
