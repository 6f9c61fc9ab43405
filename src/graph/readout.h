#pragma once

#include <string>

#include "graph/world.h"
#include "host/surface.h"

namespace zento {

// "x, y" of a place on a surface that shows the window, in world coordinates, with the digits that
// one surface unit resolves.
std::string PointReadout(Point at, const WorldWindow& window, Size surface);

}  // namespace zento
