#include "graph/text_width.h"

#include <cstddef>
#include <cstdint>

namespace zento {
namespace {

// Hundredths of the font's size, for U+0020 to U+007E: the wider of the two families that most
// machines show for "sans-serif", so that labels rather stand too far apart than too close.
constexpr unsigned char kWidths[] = {
    32,  40, 46, 84, 64, 95, 78, 28, 39, 39, 50, 84, 32, 36, 32, 34,  //  !"#$%&'()*+,-./
    64,  64, 64, 64, 64, 64, 64, 64, 64, 64, 34, 34, 84, 84, 84, 56,  // 0-9:;<=>?
    100, 69, 69, 70, 77, 64, 58, 78, 76, 30, 50, 66, 56, 87, 75, 79,  // @A-O
    61,  79, 70, 64, 62, 74, 69, 99, 69, 62, 69, 39, 34, 39, 84, 50,  // P-Z[\]^_
    50,  62, 64, 55, 64, 62, 36, 64, 64, 28, 28, 58, 28, 98, 64, 62,  // `a-o
    64,  64, 42, 53, 40, 64, 60, 82, 60, 60, 53, 64, 34, 64, 84,      // p-z{|}~
};
static_assert(sizeof kWidths == 0x7F - 0x20);

constexpr double kOther = 0.65;  // letters beyond ASCII
constexpr double kWide = 1.0;    // ideographs, kana, full-width forms
constexpr std::uint32_t kFirstWide = 0x2E80;
constexpr std::uint32_t kHalfKanaFirst = 0xFF61;
constexpr std::uint32_t kHalfKanaLast = 0xFFDC;

bool Continues(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The code point that starts at `at`; meant for valid UTF-8, harmless for anything else.
std::uint32_t CodePoint(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80) return lead;
  std::uint32_t point = lead & (lead >= 0xF0 ? 0x07U : lead >= 0xE0 ? 0x0FU : 0x1FU);
  for (std::size_t i = at + 1; i < text.size() && Continues(text[i]); ++i) {
    point = point << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  return point;
}

double Width(std::uint32_t point) {
  if (point >= 0x20 && point < 0x7F) return kWidths[point - 0x20] / 100.0;
  if (point >= kHalfKanaFirst && point <= kHalfKanaLast) return kWide / 2;
  return point >= kFirstWide ? kWide : kOther;
}

}  // namespace

double EstimateTextWidth(std::string_view text, bool bold) {
  double width = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!Continues(text[i])) width += Width(CodePoint(text, i));
  }
  constexpr double kBold = 1.1;
  return bold ? width * kBold : width;
}

}  // namespace zento
