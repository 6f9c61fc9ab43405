#include "core/palette.h"

#include <algorithm>
#include <cstdint>

#include "text/number.h"

namespace zento {
namespace {

constexpr int kHueCycle = 192;

int Wrapped(int value, int cycle) {
  return ((value % cycle) + cycle) % cycle;
}

int Channel(int x, int m1, int m2) {
  const int hue = Wrapped(x, kHueCycle);
  double level = m1;
  if (hue < 32) {
    level = m1 + (m2 - m1) * hue / 32.0;
  } else if (hue < 96) {
    level = m2;
  } else if (hue < 128) {
    level = m1 + (m2 - m1) * (128 - hue) / 32.0;
  }
  return ToLong(level);
}

std::uint8_t Component(int level) {
  return static_cast<std::uint8_t>(std::clamp(level * 8, 0, 255));
}

}  // namespace

Colour HLSToRGB(int hue, int lightness, int saturation) {
  if (saturation == 0) {
    const std::uint8_t grey = Component(lightness);
    return {grey, grey, grey};
  }
  const double upper = lightness <= 16 ? lightness * (saturation + 32) / 32.0
                                       : lightness + saturation - lightness * saturation / 32.0;
  const int m2 = ToLong(upper);
  const int m1 = 2 * lightness - m2;
  return {Component(Channel(hue + 64, m1, m2)), Component(Channel(hue - 64, m1, m2)),
          Component(Channel(hue, m1, m2))};
}

Colour TrackColor(int index) {
  return HLSToRGB(48 + 18 * Wrapped(index, kTrackColours), 16, 31);
}

Colour TrackPaleColor(int index) {
  return HLSToRGB(48 + 18 * Wrapped(index, kTrackColours), 24, 20);
}

}  // namespace zento
