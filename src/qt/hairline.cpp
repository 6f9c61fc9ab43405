#include "qt/hairline.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zento {
namespace {

// Far enough out for any screen, near enough that products of two spans fit 64 bits.
constexpr double kFar = 268'435'456.0;

}  // namespace

PixelRect PixelRect::Intersected(PixelRect other) const {
  return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
          std::min(bottom, other.bottom)};
}

Hairline::Hairline(PixelBuffer target, PixelRect clip, double scale, int thickness,
                   std::uint32_t colour)
    : target_(target),
      clip_(clip.Intersected({0, 0, target.width, target.height})),
      scale_(scale),
      thickness_(thickness),
      colour_(colour) {}

bool Hairline::ToPixel(Point point, Pixel& pixel) const {
  if (std::isnan(point.x) || std::isnan(point.y)) return false;
  pixel.x = static_cast<std::int64_t>(std::floor(std::clamp(point.x * scale_, -kFar, kFar)));
  pixel.y = static_cast<std::int64_t>(std::floor(std::clamp(point.y * scale_, -kFar, kFar)));
  return true;
}

void Hairline::Fill(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
  left = std::max<std::int64_t>(left, clip_.left);
  top = std::max<std::int64_t>(top, clip_.top);
  right = std::min<std::int64_t>(right, clip_.right);
  bottom = std::min<std::int64_t>(bottom, clip_.bottom);
  if (left >= right) return;
  std::uint32_t* row = target_.pixels + top * target_.stride + left;
  const std::int64_t width = right - left;
  for (std::int64_t y = top; y < bottom; ++y, row += target_.stride) {
    for (std::int64_t x = 0; x < width; ++x) row[x] = colour_;
  }
}

void Hairline::Line(Point from, Point to) {
  Pixel a{};
  Pixel b{};
  if (ToPixel(from, a) && ToPixel(to, b)) Segment(a, b);
}

// Segments between points of one pixel column are vertical: together they colour the column from
// its lowest to its highest point, which one span does for all of them when the column is left. The
// slanting segment to the next column starts at the last point as it would have anyway.
void Hairline::Polyline(std::span<const Point> points) {
  bool joined = false;  // `last` is the end of the curve so far
  Pixel last{};
  std::int64_t lowest = 0;  // of the points in the pixel column of `last`
  std::int64_t highest = 0;
  const auto finish_column = [&] {
    if (joined && highest > lowest) Segment({last.x, lowest}, {last.x, highest});
  };
  for (const Point& point : points) {
    Pixel pixel{};
    if (!ToPixel(point, pixel)) {
      finish_column();
      joined = false;
      continue;
    }
    if (joined && pixel.x == last.x) {
      lowest = std::min(lowest, pixel.y);
      highest = std::max(highest, pixel.y);
    } else {
      finish_column();
      if (joined) Segment(last, pixel);
      lowest = highest = pixel.y;
    }
    last = pixel;
    joined = true;
  }
  finish_column();
}

void Hairline::Dots(std::span<const Point> points) {
  for (const Point& point : points) {
    Pixel pixel{};
    if (ToPixel(point, pixel)) Dab(pixel.x, pixel.y);
  }
}

void Hairline::Segment(Pixel from, Pixel to) {
  const auto [left, right] = std::minmax(from.x, to.x);
  const auto [top, bottom] = std::minmax(from.y, to.y);
  if (right + thickness_ <= clip_.left || left >= clip_.right) return;
  if (bottom + thickness_ <= clip_.top || top >= clip_.bottom) return;
  const bool inside = thickness_ == 1 && left >= clip_.left && right < clip_.right &&
                      top >= clip_.top && bottom < clip_.bottom;
  if (left == right || top == bottom) {
    Fill(left, top, right + thickness_, bottom + thickness_);
  } else if (right - left >= bottom - top) {
    inside ? WideInside(from, to) : Wide(from, to);
  } else {
    inside ? HighInside(from, to) : High(from, to);
  }
}

// As Wide and High, for one pixel wide lines that no clip cuts: nearly all there are. `rest` starts
// at half a pixel (dx of 2 dx), so that the step to the next row falls on the middle between two
// rows; the ends are sorted first, so that halves are rounded the same way from either of them.
void Hairline::WideInside(Pixel from, Pixel to) {
  if (from.x > to.x) std::swap(from, to);
  const std::int64_t dx = to.x - from.x;
  const std::int64_t dy = std::abs(to.y - from.y);
  const std::ptrdiff_t step = to.y > from.y ? target_.stride : -target_.stride;
  std::uint32_t* at = target_.pixels + from.y * target_.stride + from.x;
  std::int64_t rest = dx;
  for (std::int64_t left = dx; left >= 0; --left, ++at) {
    *at = colour_;
    rest += 2 * dy;
    if (rest >= 2 * dx) {
      rest -= 2 * dx;
      at += step;
    }
  }
}

void Hairline::HighInside(Pixel from, Pixel to) {
  if (from.y > to.y) std::swap(from, to);
  const std::int64_t dx = std::abs(to.x - from.x);
  const std::int64_t dy = to.y - from.y;
  const std::ptrdiff_t step = to.x > from.x ? 1 : -1;
  std::uint32_t* at = target_.pixels + from.y * target_.stride + from.x;
  std::int64_t rest = dy;
  for (std::int64_t left = dy; left >= 0; --left, at += target_.stride) {
    *at = colour_;
    rest += 2 * dx;
    if (rest >= 2 * dy) {
      rest -= 2 * dy;
      at += step;
    }
  }
}

// The row at column x is from.y + floor((2 dy (x - from.x) + dx) / (2 dx)) (Bresenham, 1965): the
// running remainder starts at the first column inside the clip with the value it would have had
// there, so a clipped line sets the same pixels as the whole one. Within kFar the products fit 64
// bits: 2 x 2^29 x 2^29 < 2^63.
void Hairline::Wide(Pixel from, Pixel to) {
  if (from.x > to.x) std::swap(from, to);
  const std::int64_t dx = to.x - from.x;
  const std::int64_t dy = std::abs(to.y - from.y);
  const std::int64_t step = to.y > from.y ? 1 : -1;
  const std::int64_t first = std::max<std::int64_t>(from.x, clip_.left - thickness_ + 1);
  const std::int64_t last = std::min<std::int64_t>(to.x, clip_.right - 1);
  const std::int64_t ahead = 2 * dy * (first - from.x) + dx;
  std::int64_t y = from.y + step * (ahead / (2 * dx));
  std::int64_t rest = ahead % (2 * dx);
  for (std::int64_t x = first; x <= last; ++x) {
    Dab(x, y);
    rest += 2 * dy;
    if (rest >= 2 * dx) {
      rest -= 2 * dx;
      y += step;
    }
  }
}

void Hairline::High(Pixel from, Pixel to) {
  if (from.y > to.y) std::swap(from, to);
  const std::int64_t dx = std::abs(to.x - from.x);
  const std::int64_t dy = to.y - from.y;
  const std::int64_t step = to.x > from.x ? 1 : -1;
  const std::int64_t first = std::max<std::int64_t>(from.y, clip_.top - thickness_ + 1);
  const std::int64_t last = std::min<std::int64_t>(to.y, clip_.bottom - 1);
  const std::int64_t ahead = 2 * dx * (first - from.y) + dy;
  std::int64_t x = from.x + step * (ahead / (2 * dy));
  std::int64_t rest = ahead % (2 * dy);
  for (std::int64_t y = first; y <= last; ++y) {
    Dab(x, y);
    rest += 2 * dx;
    if (rest >= 2 * dy) {
      rest -= 2 * dy;
      x += step;
    }
  }
}

}  // namespace zento
