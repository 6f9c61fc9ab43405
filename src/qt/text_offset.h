#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace zento {

// Places in a text: the program counts UTF-8 bytes, the toolkit UTF-16 units.

// How many units a character takes whose first byte is `lead`; 0 for the bytes that follow it.
inline int UnitsOf(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if ((byte & 0xC0) == 0x80) return 0;
  return byte >= 0xF0 ? 2 : 1;
}

inline int UnitsBefore(std::string_view text, std::size_t bytes) {
  int units = 0;
  for (const char byte : text.substr(0, std::min(bytes, text.size()))) units += UnitsOf(byte);
  return units;
}

inline std::size_t BytesBefore(std::string_view text, int units) {
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    const int next = UnitsOf(text[i]);
    if (next > 0 && units <= 0) break;
    units -= next;
  }
  return i;
}

}  // namespace zento
