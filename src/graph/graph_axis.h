#pragma once

#include <string>

#include "graph/world.h"
#include "host/surface.h"

namespace zento {

// Grid, tick labels and title of a GraphView.
struct AxisFrame {
  WorldWindow world;
  double x_step = 0;
  double y_step = 0;
  std::string x_format;
  std::string y_format;
  std::string title;
  double title_size = 10;  // points
};

// Light-grey lines over all of `extent` at the ticks, darker ones for the two axes. The x labels
// stand below the world y of 0, or at the bottom edge when the window does not contain it; the y
// labels beside the world x of 0, or beside the left edge; the title at the right end, below the x
// labels. Everything is moved as far as it takes to stay on the surface; labels that would touch
// are thinned out evenly.
void PaintAxis(Surface& surface, Size extent, const AxisFrame& frame);

}  // namespace zento
