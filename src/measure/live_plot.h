#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "graph/graph_form.h"
#include "graph/graph_view.h"
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

// What a measurement window shows while it is idle: the last 4001 pairs of averaged readings, one
// value against another, on a plot that grows to hold them. The units are the caller's.
class VoltageMonitor {
 public:
  static constexpr std::size_t kSlots = 4001;
  // Marks an empty slot in its first value.
  static constexpr double kEmpty = -9999.0;

  // The plot outlives the monitor, and nothing else draws on it.
  VoltageMonitor(GraphView& plot, Colour colour);

  // Empties the ring, goes back to the first range, and shows the empty axes.
  void Clear();
  // Keeps the pair in the ring in place of the oldest one, and draws it. Values that are not finite
  // are left out.
  void Add(double x, double y) { Add(x, y, colour_); }
  // The same in another colour, where several electrodes share the monitor. A pair keeps its
  // colour when the plot is drawn anew.
  void Add(double x, double y, Colour colour);
  // Goes back to the first range; the pairs stay, those outside it unseen until it grows again.
  void ResetRange();
  void Redraw();

  const std::array<double, 2>& Slot(std::size_t index) const { return ring_[index]; }
  std::size_t WriteIndex() const { return next_; }
  const PlotRange& Range() const { return range_.data(); }

 private:
  GraphView& plot_;
  Colour colour_;
  std::vector<std::array<double, 2>> ring_;
  std::vector<Colour> colours_;  // of the slots
  std::size_t next_ = 0;
  LiveRange range_;
};

}  // namespace zento
