#pragma once

#include <span>
#include <vector>

#include "graph/world.h"
#include "host/surface.h"

namespace zento {

// One curve of a plot, in world coordinates.
struct PlotSeries {
  enum class Kind { kPolyline, kDots, kMarks };
  Kind kind = Kind::kPolyline;
  Colour colour;
  std::vector<Point> points;
};

// Draws the curves with `window` filling `area`, and nothing outside it. A point without a finite
// place interrupts its line.
void PaintPlotSeries(Surface& surface, const Rect& area, const WorldWindow& window,
                     std::span<const PlotSeries> series);

}  // namespace zento
