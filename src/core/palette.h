#pragma once

#include "host/colour.h"

namespace zento {

// Hue on a circle of 192 (0 red, 64 blue, 128 green), lightness and saturation 0 to 32.
Colour HLSToRGB(int hue, int lightness, int saturation);

// Ten colours each that tell tracks and channels apart; other indices wrap around.
inline constexpr int kTrackColours = 10;
Colour TrackColor(int index);      // saturated
Colour TrackPaleColor(int index);  // pale

// The classic palette of 16 colours (9 light blue, 12 light red); other indices wrap around.
Colour QBColor(int index);

}  // namespace zento
