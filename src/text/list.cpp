#include "text/list.h"

#include "text/number.h"

namespace zento {
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

}  // namespace zento
