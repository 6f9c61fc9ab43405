#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "host/surface.h"

// Fewer strokes for the same picture, so that a plot's cost follows the pixels it has and not the
// points. Both rest on drawing with the thinnest pen between whole pixels: what a dropped vertex or
// dot would have coloured is coloured by those that stay.

namespace zento {

// Collects the vertices of a line, given in whole pixels, and drops those that leave no trace.
// Consecutive vertices in one column are joined by vertical strokes, which together colour exactly
// the pixels from the lowest to the highest of them, in whatever order they come: the extremes do
// for all. The first and the last stay as well, since the slanting strokes from the column before
// and to the column after end there, and another end would lead them over other pixels.
class PixelPolyline {
 public:
  // Coordinates are whole numbers.
  void Add(Point at) {
    if (at.x == column_) {
      low_ = std::min(low_, at.y);
      high_ = std::max(high_, at.y);
      last_ = at.y;
      return;
    }
    FlushColumn();
    column_ = at.x;
    first_ = low_ = high_ = last_ = at.y;
  }
  // What is left, ready to be drawn. Add begins a new line afterwards.
  std::span<const Point> Finish();

 private:
  void FlushColumn() {
    if (finished_) {
      kept_.clear();
      finished_ = false;
    }
    if (!(column_ == column_)) return;
    kept_.push_back({column_, first_});
    if (low_ != high_) FlushExtremes();
  }
  void FlushExtremes();

  static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  std::vector<Point> kept_;
  bool finished_ = false;
  double column_ = kNone;  // of the vertices that are not in `kept_` yet
  double first_ = 0;
  double low_ = 0;
  double high_ = 0;
  double last_ = 0;
};

// `points` as PixelPolyline leaves them.
std::vector<Point> DecimatePolyline(std::span<const Point> points);

// Collects dots in whole pixels of a surface and draws each pixel once, in the colour that came
// last. Dots outside the surface are dropped. What is still collected is drawn at the end.
class PixelDots {
 public:
  explicit PixelDots(Surface& surface);
  ~PixelDots() { Draw(); }
  PixelDots(const PixelDots&) = delete;
  PixelDots& operator=(const PixelDots&) = delete;

  void Add(Point at, Colour colour);
  void Draw();

 private:
  std::uint8_t IndexOf(Colour colour);
  void DrawColour(std::uint8_t index);

  Surface& surface_;
  std::size_t width_ = 0;
  std::size_t height_ = 0;
  std::vector<std::uint8_t> owner_;      // palette index + 1 of each pixel, 0 = none
  std::vector<std::uint32_t> occupied_;  // pixels in the order in which they were first met
  std::vector<Colour> palette_;
  std::vector<Point> points_;
};

}  // namespace zento
