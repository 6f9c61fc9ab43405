#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "graph/world.h"
#include "host/surface.h"

namespace zento {

// The places of an axis's ticks: whole multiples of the step.
struct Ticks {
  double step = 0;   // signed, towards the end of the axis
  double index = 0;  // the first tick is index * step
  int count = 0;

  // Exactly 0 where rounding has left less than 1e-15.
  double Value(int i) const;
};

// Ticks from the largest multiple of `step` not above `from` up to `to`; with a positive step they
// run down when the first lies beyond `to`. When there would be more than `most`, the step is
// multiplied by 2, 5, 10, 20, ... until there are not. No ticks at all with a step of 0, a negative
// step that leads away from `to`, or anything that is not finite.
Ticks MakeTicks(double from, double to, double step, int most);

// The smallest of 1, 2, 5, 10, 20, 50, ... that is not below `ratio`.
double RoundUp125(double ratio);

// A pattern that shows multiples of `step` up to `largest` in magnitude exactly.
std::string TickPattern(double step, double largest);

// The label of each tick under the pattern. Where the pattern rounds a tick to another value, its
// label is empty; when that leaves fewer than two labels, all are written under a pattern that fits
// the step instead.
std::vector<std::string> TickLabels(const Ticks& ticks, std::string_view pattern);

// "x, y" of a place on a surface that shows the window, in world coordinates, with the digits that
// one surface unit resolves.
std::string PointReadout(Point at, const WorldWindow& window, Size surface);

}  // namespace zento
