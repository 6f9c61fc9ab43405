#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "host/surface.h"

// Fewer strokes for the same picture. Both rest on drawing with the thinnest pen between whole
// pixels: what a dropped vertex or dot would have coloured is coloured by those that stay.

namespace zento {

// Collects the vertices of a line, given in whole pixels, and drops those that leave no trace: of
// consecutive ones in one column or one row, which cover every pixel between their extremes, the
// first, the extremes and the last stay.
class PixelPolyline {
 public:
  // Coordinates are whole numbers.
  void Add(Point at);
  // What is left, ready to be drawn. Add begins a new line afterwards.
  std::span<const Point> Finish();

 private:
  void Extend(double along);
  void FlushRun();
  void Keep(Point at);

  std::vector<Point> kept_;
  bool finished_ = false;

  // The vertices since `start_`, all in its column or row. `start_` itself is kept already.
  enum class Run { kNone, kPoint, kColumn, kRow };
  Run run_ = Run::kNone;
  Point start_;
  double low_ = 0;
  double high_ = 0;
  double last_ = 0;
  bool low_first_ = false;
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
