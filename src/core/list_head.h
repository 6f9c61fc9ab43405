#pragma once

#include <cstddef>
#include <string_view>

namespace zento {

// The part of a list's line that holds its first `count` values. Files keep lists of 21, and a line
// of megabytes must not become millions of numbers first.
inline std::string_view ListHead(std::string_view text, int count) {
  std::size_t at = text.find_first_not_of(" \t");
  for (; count > 0 && at != text.npos; --count) at = text.find(' ', at + 1);
  return text.substr(0, at);
}

}  // namespace zento
