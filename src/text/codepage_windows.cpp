#include <windows.h>

#include "text/codepage.h"

namespace zento {

std::u16string ConvertPairs932(std::span<const std::array<char, 2>> pairs) {
  constexpr UINT kCodePage = 932;
  constexpr wchar_t kDefault = 0x30FB;  // a middle dot: what the system puts where there is nothing
  if (IsValidCodePage(kCodePage) == 0) return {};
  std::u16string units;
  for (const std::array<char, 2>& pair : pairs) {
    wchar_t unit[2] = {};
    const int count = MultiByteToWideChar(kCodePage, MB_ERR_INVALID_CHARS, pair.data(), 2, unit, 2);
    const bool dot = pair == std::array{'\x81', '\x45'};
    const bool none = count != 1 || (unit[0] == kDefault && !dot);
    units += none ? u'\uFFFD' : static_cast<char16_t>(unit[0]);
  }
  return units;
}

}  // namespace zento
