#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "core/workstation.h"
#include "graph/graph_form.h"
#include "graph/plot_range.h"
#include "host/desktop.h"

namespace zento {

// Empties the plot and draws axes for the range, y growing upwards, with a grid that fits it and
// `title` at the right end of the x axis. A range without width or height gets some.
void DrawAxes(GraphView& plot, PlotRange range, const std::string& title);

// How a curve's axes are labelled.
struct AxisLook {
  std::string x_format;
  std::string y_format;
  std::string unit;
};

// The graph window on which a run draws its curve while it records. The person may close it and
// open it again at any moment: what is drawn meanwhile comes back with the next full drawing.
class LivePlot {
 public:
  // `window` is the name of a Graph form.
  LivePlot(Desktop& desktop, std::string window) : desktop_(desktop), window_(std::move(window)) {}

  // Shows the window with empty axes. The range's corners may come in any order.
  void Begin(const std::string& title, const PlotRange& range, const AxisLook& look);
  // Enlarges the range to hold the point. True: the axes on the screen do not fit any more, draw
  // everything anew.
  bool Include(double x, double y);
  // Draws the axes anew, with the range in a margin of 10 %; then draw the curves.
  void Redraw(const AxisLook& look);
  // Column `y` against column 0.
  void Curve(std::span<const AcquiredPoint> points, std::size_t y, Colour colour);
  // As many points as the shorter of the two has.
  void Curve(std::span<const double> x, std::span<const double> y, Colour colour);
  void Point(double x, double y, Colour colour);

  // Holds all points so far, without margin.
  const PlotRange& Range() const { return range_.data(); }

 private:
  Graph* Window() const { return desktop_.FindAs<Graph>(window_); }

  Desktop& desktop_;
  std::string window_;
  std::string title_;
  LiveRange range_;
  const Graph* drawn_on_ = nullptr;  // only compared
};

}  // namespace zento
