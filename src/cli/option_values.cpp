#include "cli/option_values.h"

#include <charconv>
#include <set>

namespace zento {

std::optional<std::int32_t> ParseWhole(std::string_view text) {
  std::int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<std::vector<int>> ParseNumberList(std::string_view text, int highest) {
  std::set<int> numbers;
  while (true) {
    const std::size_t comma = text.find(',');
    const std::string_view piece = text.substr(0, comma);
    const std::size_t dash = piece.find('-');
    const auto first = ParseWhole(piece.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : ParseWhole(piece.substr(dash + 1));
    if (!first || !last || *first < 0 || *last > highest || *first > *last) return std::nullopt;
    for (int number = *first; number <= *last; ++number) numbers.insert(number);
    if (comma == std::string_view::npos) break;
    text.remove_prefix(comma + 1);
  }
  return std::vector<int>(numbers.begin(), numbers.end());
}

std::optional<IndexRange> ParseIndexRange(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  IndexRange range;
  const auto take = [](std::string_view piece, std::optional<std::int32_t>& index) {
    if (piece.empty()) return true;
    index = ParseWhole(piece);
    return index && *index >= 0;
  };
  if (!take(text.substr(0, colon), range.first) || !take(text.substr(colon + 1), range.last)) {
    return std::nullopt;
  }
  return range;
}

TrackValue SplitTrackValue(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) return {std::nullopt, text};
  return {ParseWhole(std::string_view(text).substr(0, equals)).value_or(-1),
          text.substr(equals + 1)};
}

}  // namespace zento
