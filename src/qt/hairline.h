#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/surface.h"

namespace zento {

// A picture of 32-bit pixels in memory; `stride` counts pixels from one row to the next.
struct PixelBuffer {
  std::uint32_t* pixels = nullptr;
  int width = 0;
  int height = 0;
  std::ptrdiff_t stride = 0;
};

// Half open: left and top belong to it, right and bottom do not.
struct PixelRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  PixelRect Intersected(PixelRect other) const;
};

// Draws the thinnest lines pixel by pixel, without antialiasing. A point falls into the pixel that
// holds it (coordinates times `scale`, rounded down). What a line sets depends on its two end
// pixels only, not on its direction, on the clip or on how a curve was cut into pieces: a curve
// drawn point by point as it is measured equals the same curve drawn at once, pixel for pixel.
// That is also what allows Polyline to merge all points of one pixel column into one span.
//
// Lines are Bresenham lines of `thickness` x `thickness` pixels.
class Hairline {
 public:
  Hairline(PixelBuffer target, PixelRect clip, double scale, int thickness, std::uint32_t colour);

  void Line(Point from, Point to);
  // Points that are not numbers break the curve.
  void Polyline(std::span<const Point> points);
  void Dots(std::span<const Point> points);

 private:
  struct Pixel {
    std::int64_t x;
    std::int64_t y;
  };
  bool ToPixel(Point point, Pixel& pixel) const;
  void Segment(Pixel from, Pixel to);
  void Wide(Pixel from, Pixel to);  // at least as wide as high
  void High(Pixel from, Pixel to);
  void WideInside(Pixel from, Pixel to);
  void HighInside(Pixel from, Pixel to);
  void Fill(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom);
  void Dab(std::int64_t x, std::int64_t y) { Fill(x, y, x + thickness_, y + thickness_); }

  PixelBuffer target_;
  PixelRect clip_;
  double scale_;
  int thickness_;
  std::uint32_t colour_;
};

}  // namespace zento
