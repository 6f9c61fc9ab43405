#pragma once

#include <cstdint>

#include "host/surface.h"

namespace zento {

// Lines inside a circle: 2 horizontal, 3 vertical, 4 falling and 5 rising diagonals, 6 both
// straight ones, 7 both diagonal ones. Any other style draws nothing.
void DrawHatch(Surface& surface, Point centre, double radius, Colour colour, std::int16_t style);

}  // namespace zento
