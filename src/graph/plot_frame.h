#pragma once

#include <string>

#include "graph/world.h"
#include "host/surface.h"

namespace zento {

// Everything around the curves of a plot.
struct PlotFrame {
  WorldWindow window;
  double x_step = 0;  // 0 = chosen for the window
  double y_step = 0;
  std::string x_format;
  std::string y_format;
  bool fit_formats = false;  // where a format rounds a tick, a finer one takes its place
  std::string x_title;       // empty = none
  std::string y_title;
};

// Clears the surface, draws grid, labels and titles for `extent`, and returns what they leave for
// the curves, in whole surface units.
Rect PaintPlotFrame(Surface& surface, Size extent, const PlotFrame& frame);

// The line around the plot area; drawn last, so that no curve covers it.
void PaintPlotBorder(Surface& surface, const Rect& area);

}  // namespace zento
