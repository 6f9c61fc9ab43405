#pragma once

#include "host/surface.h"

namespace zento {

// Hue on a circle of 192 (0 red, 64 blue, 128 green), lightness and saturation 0 to 32.
Colour HLSToRGB(int hue, int lightness, int saturation);

// Ten colours each that tell tracks and channels apart; other indices wrap around.
inline constexpr int kTrackColours = 10;
Colour TrackColor(int index);      // saturated
Colour TrackPaleColor(int index);  // pale

// The classic sixteen.
inline constexpr Colour kBlack{0, 0, 0}, kBlue{0, 0, 128}, kGreen{0, 128, 0}, kCyan{0, 128, 128};
inline constexpr Colour kRed{128, 0, 0}, kMagenta{128, 0, 128}, kBrown{128, 128, 0};
inline constexpr Colour kLightGrey{192, 192, 192}, kGrey{128, 128, 128}, kLightBlue{0, 0, 255};
inline constexpr Colour kLightGreen{0, 255, 0}, kLightCyan{0, 255, 255}, kLightRed{255, 0, 0};
inline constexpr Colour kLightMagenta{255, 0, 255}, kYellow{255, 255, 0}, kWhite{255, 255, 255};

}  // namespace zento
