#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "host/surface.h"

namespace zento {

// The rectangle of data coordinates that fills a surface: (x1, y1) is its top left corner, (x2, y2)
// its bottom right one. Pass the larger y as y1 for values that grow upwards.
struct WorldWindow {
  double x1 = 0;
  double y1 = 1;
  double x2 = 1;
  double y2 = 0;
  friend bool operator==(const WorldWindow&, const WorldWindow&) = default;
};

// Maps one axis of a world window to whole surface coordinates: scale * world + offset, held within
// +-2.1e9 and rounded down.
class WorldAxis {
 public:
  WorldAxis() = default;
  // `extent` is the surface's width or height.
  WorldAxis(double from, double to, double extent)
      : scale_(extent / (to - from)), offset_(-from * scale_) {}

  // What has no place, such as NaN or anything in a window without width, comes out as -2.1e9.
  float operator()(double world) const {
    const double at = scale_ * world + offset_;
    if (!(at >= -kLimit)) return static_cast<float>(-kLimit);
    return static_cast<float>(Floor(std::min(at, kLimit)));
  }
  // Without limits and rounding.
  double Exact(double world) const { return scale_ * world + offset_; }
  double World(double surface) const { return (surface - offset_) / scale_; }

  double scale() const { return scale_; }
  double offset() const { return offset_; }

 private:
  static constexpr double kLimit = 2.1e9;
  // Within the limit a conversion does it, which the compiler need not call a function for.
  static std::int64_t Floor(double value) {
    const auto towards_zero = static_cast<std::int64_t>(value);
    return towards_zero - (static_cast<double>(towards_zero) > value ? 1 : 0);
  }
  double scale_ = 1;
  double offset_ = 0;
};

struct WorldMap {
  WorldAxis x;
  WorldAxis y;

  WorldMap() = default;
  WorldMap(const WorldWindow& world, Size surface)
      : x(world.x1, world.x2, surface.width), y(world.y1, world.y2, surface.height) {}
  Point operator()(Point world) const { return {x(world.x), y(world.y)}; }
};

// Lines are drawn between surface coordinates of this size and no further.
inline constexpr double kLineLimit = 32767;
inline bool WithinLineLimit(Point at) {
  return std::abs(at.x) <= kLineLimit && std::abs(at.y) <= kLineLimit;
}

// The size for which a canvas is to be painted. A surface that shows it on the screen may be larger
// by a fraction of a unit, since its own pixels need not fit: what is painted there and what is
// added to it later must still agree.
inline Size PaintSize(Size surface, Size screen) {
  const bool shown =
      std::abs(surface.width - screen.width) < 1 && std::abs(surface.height - screen.height) < 1;
  return shown ? screen : surface;
}

}  // namespace zento
