#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Lists of numbers on one line, as the array-valued keys of the files hold them.

namespace zento {

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

}  // namespace zento
