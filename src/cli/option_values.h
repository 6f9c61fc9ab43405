#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zento {

// The values of command-line options, as typed.

// A whole number without anything around it.
std::optional<std::int32_t> ParseWhole(std::string_view text);

// "0,2-5": numbers and stretches of numbers from 0 to `highest`, in ascending order and each once.
std::optional<std::vector<int>> ParseNumberList(std::string_view text, int highest);

// "10:250", "10:", ":250" or ":".
struct IndexRange {
  std::optional<std::int32_t> first, last;
};
std::optional<IndexRange> ParseIndexRange(std::string_view text);

// "3=VALUE" is meant for track 3, "VALUE" for all.
struct TrackValue {
  std::optional<int> track;
  std::string value;
};
TrackValue SplitTrackValue(const std::string& text);

}  // namespace zento
