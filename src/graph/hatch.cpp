#include "graph/hatch.h"

#include <cmath>
#include <numbers>

namespace zento {
namespace {

constexpr double kSpacing = 4;
constexpr double kMostRadius = 4000;  // bounds the number of lines

// Chords in the direction (dx, dy), a unit vector.
void Chords(Surface& surface, Point centre, double radius, Colour colour, Point direction) {
  for (double off = -std::floor(radius / kSpacing) * kSpacing; off < radius; off += kSpacing) {
    const double half = std::sqrt(std::max(0.0, radius * radius - off * off));
    if (half < 1) continue;
    const Point middle{centre.x - off * direction.y, centre.y + off * direction.x};
    const Point from{std::round(middle.x - half * direction.x),
                     std::round(middle.y - half * direction.y)};
    const Point to{std::round(middle.x + half * direction.x),
                   std::round(middle.y + half * direction.y)};
    surface.Line(from, to, colour);
  }
}

}  // namespace

void DrawHatch(Surface& surface, Point centre, double radius, Colour colour, std::int16_t style) {
  if (style < 2 || style > 7 || !(radius > 1) || radius > kMostRadius) return;
  constexpr double kDiagonal = 1 / std::numbers::sqrt2;
  const auto chords = [&](Point direction) { Chords(surface, centre, radius, colour, direction); };
  if (style == 2 || style == 6) chords({1, 0});
  if (style == 3 || style == 6) chords({0, 1});
  if (style == 4 || style == 7) chords({kDiagonal, kDiagonal});
  if (style == 5 || style == 7) chords({kDiagonal, -kDiagonal});
}

}  // namespace zento
