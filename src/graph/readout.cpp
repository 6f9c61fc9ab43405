#include "graph/readout.h"

#include <algorithm>
#include <cmath>

#include "graph/ticks.h"
#include "text/format.h"

namespace zento {
namespace {

// The pattern follows the whole axis, so that it does not change under the moving pointer.
std::string Coordinate(double at, const WorldAxis& axis, double from, double to) {
  double value = axis.World(at);
  const double unit = std::abs(1 / axis.scale());
  if (!std::isfinite(value) || !(unit > 0) || !std::isfinite(unit)) return "-";
  if (std::abs(value) < unit / 2) value = 0;
  return Format(value, TickPattern(unit, std::max(std::abs(from), std::abs(to))));
}

}  // namespace

std::string PointReadout(Point at, const WorldWindow& window, Size surface) {
  const WorldMap map(window, surface);
  return Coordinate(at.x, map.x, window.x1, window.x2) + ", " +
         Coordinate(at.y, map.y, window.y1, window.y2);
}

}  // namespace zento
