#pragma once

#include <string>

#include "host/surface.h"

namespace zento {

// "x, y" of a place in world coordinates with as many digits as the picture resolves; one surface
// unit is `x_unit` wide and `y_unit` high in world coordinates.
std::string PointReadout(Point world, double x_unit, double y_unit);

}  // namespace zento
