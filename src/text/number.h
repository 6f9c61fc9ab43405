#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Numbers as users type them and files hold them. Nothing here looks at the locale: the decimal
// point is "." and there are no digit groups.
//
// A decimal number is an optional sign, digits with at most one "." among, before or after them,
// and an optional exponent ("e" or "E", an optional sign, at least one digit). An "e" that no digit
// follows is not part of the number, and neither are the letter "d", blanks between the digits,
// "inf" or "nan". Values are the double nearest to the decimal text (halves to even). A number too
// large for a double is taken as the largest finite double of its sign, one too small as zero of
// its sign.

namespace zento {

// Reads the longest decimal number that starts exactly at `first`, sets `value` and returns the
// position behind it; without a number there, returns `first` and leaves `value` as it was. Time is
// linear in the bytes of the number. Wherever std::from_chars gives a value for the same bytes,
// this is that value to the last bit.
const char* ParseNumber(const char* first, const char* last, double& value);

// The lenient rule for typed text: blanks and tabs in front are skipped, the longest prefix that
// forms a number counts, whatever follows is ignored, and no number at all is 0.
double ParseLenient(std::string_view text);

// The strict rule for data: the whole text is one number, blanks and tabs around it allowed.
std::optional<double> ParseStrict(std::string_view text);

// To the nearest whole number, halves to the even one; infinities and NaN stay what they are.
double RoundHalfEven(double value);

// To the nearest integer, halves to the even one, clamped to the type's range; NaN is 0.
std::int32_t ToLong(double value);
std::int16_t ToInteger(double value);
std::uint8_t ToByte(double value);

// General form: the fewest digits that read back to the same double ("0.05", "-1E-06", "1E+15").
// From 0.0001 to below 1E+15 it has no exponent; otherwise one digit before the point and an
// exponent with its sign and at least two digits. Always a number that can be read back: negative
// zero is written as 0, an infinity as the largest finite double of its sign, NaN as 0.
std::string PlainNumber(double value);
std::string PlainNumber(float) = delete;  // 0.1f has other shortest digits than 0.1
template <typename Int>
requires std::integral<Int> std::string PlainNumber(Int value);

// The same with at most `digits` (1 to 17) significant digits: PlainNumber(0.1 + 0.2, 15) is "0.3".
std::string PlainNumber(double value, int digits);

// General form for text files: no zero before the point, and a blank where a negative number has
// its sign (" .05", "-.05", " 2E-05", " 0").
std::string SignedNumber(double value);
std::string SignedNumber(float) = delete;
template <typename Int>
requires std::integral<Int> std::string SignedNumber(Int value);

template <typename Int>
requires std::integral<Int> std::string PlainNumber(Int value) {
  return std::to_string(value);
}

template <typename Int>
requires std::integral<Int> std::string SignedNumber(Int value) {
  return value < 0 ? std::to_string(value) : " " + std::to_string(value);
}

// Lists of numbers on one line, as the array-valued keys of the files hold them.

// Every value in the general form of text files with one blank before it, negative or not, so that
// the line reads back value for value: " 0 -5 .05".
std::string JoinValues(std::span<const std::int16_t> values);
std::string JoinValues(std::span<const std::int32_t> values);
std::string JoinValues(std::span<const double> values);

// The reverse. Blanks around the text are trimmed, then it is cut at every single blank: two blanks
// in a row have an empty piece between them. Each piece is read leniently (an empty or non-numeric
// one is 0), integers are rounded to nearest, halves to even, and clamped to their range. There are
// as many elements as pieces, so an empty text gives one 0.
std::vector<std::int16_t> SplitIntegers(std::string_view text);
std::vector<std::int32_t> SplitLongs(std::string_view text);
std::vector<double> SplitDoubles(std::string_view text);

// The part of a list's line that holds its first `count` values. Files keep lists of 21, and a line
// of megabytes must not become millions of numbers first.
std::string_view ListHead(std::string_view text, int count);

}  // namespace zento
