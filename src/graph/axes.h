#pragma once

#include <string>

#include "graph/world.h"
#include "host/surface.h"

namespace zento {

// The two looks of axes: through the picture, as a GraphView draws them, and around a plot area, as
// a PreviewPlot does.

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
