#include "graph/readout.h"

#include <cmath>

#include "graph/ticks.h"
#include "text/format.h"

namespace zento {
namespace {

std::string Coordinate(double value, double unit) {
  if (!std::isfinite(value) || !(unit > 0) || !std::isfinite(unit)) return "-";
  return Format(value, TickPattern(unit, std::abs(value)));
}

}  // namespace

std::string PointReadout(Point world, double x_unit, double y_unit) {
  return Coordinate(world.x, x_unit) + ", " + Coordinate(world.y, y_unit);
}

}  // namespace zento
