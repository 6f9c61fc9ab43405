#include "measure/voltage_monitor.h"

#include <cmath>

#include "measure/live_plot.h"

namespace zento {
namespace {

constexpr PlotRange kFirstRange{-0.1, -0.01, 0.1, 0.01};

}  // namespace

VoltageMonitor::VoltageMonitor(GraphView& plot, Colour colour) : plot_(plot), colour_(colour) {
  plot_.SetXFormat("0.00");
  plot_.SetYFormat("0.0e+0");
  Clear();
}

void VoltageMonitor::Clear() {
  ring_.assign(kSlots, {kEmpty, 0});
  next_ = 0;
  range_.Start(kFirstRange);
  Redraw();
}

void VoltageMonitor::Add(double x, double y) {
  if (!std::isfinite(x) || !std::isfinite(y)) return;
  ring_[next_] = {x, y};
  const bool wrapped = ++next_ == kSlots;
  if (wrapped) next_ = 0;
  // A full round draws everything anew too: the plot keeps what was drawn on it, and points that
  // the ring has forgotten must not pile up there night after night.
  if (range_.Extend(x, y) || wrapped) {
    Redraw();
  } else {
    plot_.VPset(x, y, colour_);
  }
}

void VoltageMonitor::Redraw() {
  DrawAxes(plot_, range_.shown(), "/V");
  std::vector<Point> points;
  points.reserve(kSlots);
  for (const auto& [x, y] : ring_) {
    if (x != kEmpty) points.push_back({x, y});
  }
  plot_.Curve(points, colour_);
}

}  // namespace zento
