#include "cli/script_words.h"

#include <charconv>
#include <cmath>
#include <utility>

#include "text/number.h"

namespace zento {
namespace {

constexpr std::string_view kBlanks = " \t";

}  // namespace

std::string_view TakeWord(std::string_view& rest) {
  const std::size_t begin = std::min(rest.find_first_not_of(kBlanks), rest.size());
  const std::size_t end = std::min(rest.find_first_of(kBlanks, begin), rest.size());
  const std::string_view word = rest.substr(begin, end - begin);
  rest.remove_prefix(end);
  return word;
}

std::string_view RestAsText(std::string_view rest) {
  if (!rest.empty()) rest.remove_prefix(1);
  return rest;
}

std::optional<int> ParseIndex(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<ControlAddress> ParseControlAddress(std::string_view text) {
  const std::size_t dot = text.find('.');
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == text.size()) return std::nullopt;
  ControlAddress address{std::string(text.substr(0, dot)), {}, -1};
  std::string_view control = text.substr(dot + 1);
  if (control.back() == ')') {
    const std::size_t open = control.find('(');
    if (open == std::string_view::npos) return std::nullopt;
    const auto index = ParseIndex(control.substr(open + 1, control.size() - open - 2));
    if (!index || *index < 0) return std::nullopt;
    address.index = *index;
    control = control.substr(0, open);
  }
  address.control = control;
  return address;
}

std::optional<std::int64_t> ParseDuration(std::string_view text) {
  constexpr std::pair<std::string_view, double> kUnits[] = {
      {"ms", 1e3}, {"s", 1e6}, {"min", 60e6}, {"h", 3600e6}};
  double unit = 1e6;
  for (const auto& [suffix, micros] : kUnits) {
    if (!text.ends_with(suffix)) continue;
    text.remove_suffix(suffix.size());
    unit = micros;
    break;
  }
  const auto number = ParseStrict(text);
  constexpr double kLongest = 1000.0 * 366 * 86400e6;
  if (!number || *number < 0 || *number * unit > kLongest) return std::nullopt;
  return std::llround(*number * unit);
}

}  // namespace zento
