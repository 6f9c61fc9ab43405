#include <iconv.h>

#include "text/codepage.h"

namespace zento {

std::u16string ConvertPairs932(std::span<const std::array<char, 2>> pairs) {
  const iconv_t converter = iconv_open("UTF-16LE", "CP932");
  // The converter is a module of the C library's; a stripped system may lack it.
  if (converter == reinterpret_cast<iconv_t>(-1)) return {};
  std::u16string units;
  for (std::array<char, 2> pair : pairs) {
    std::array<unsigned char, 4> unit{};
    char* from = pair.data();
    char* to = reinterpret_cast<char*>(unit.data());
    std::size_t left = pair.size(), room = unit.size();
    const bool whole = iconv(converter, &from, &left, &to, &room) == 0 && left == 0 && room == 2;
    units += whole ? static_cast<char16_t>(unit[0] | unit[1] << 8) : u'\uFFFD';
    iconv(converter, nullptr, nullptr, nullptr, nullptr);  // forgets what a bad pair left behind
  }
  iconv_close(converter);
  return units;
}

}  // namespace zento
