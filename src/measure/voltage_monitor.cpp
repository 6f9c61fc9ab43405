#include "measure/voltage_monitor.h"

#include <algorithm>
#include <cmath>
#include <utility>

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
  colours_.assign(kSlots, colour_);
  next_ = 0;
  ResetRange();
}

void VoltageMonitor::ResetRange() {
  range_.Start(kFirstRange);
  Redraw();
}

void VoltageMonitor::Add(double x, double y, Colour colour) {
  if (!std::isfinite(x) || !std::isfinite(y)) return;
  ring_[next_] = {x, y};
  colours_[next_] = colour;
  const bool wrapped = ++next_ == kSlots;
  if (wrapped) next_ = 0;
  // A full round draws everything anew too: the plot keeps what was drawn on it, and points that
  // the ring has forgotten must not pile up there night after night.
  if (range_.Extend(x, y) || wrapped) {
    Redraw();
  } else {
    plot_.VPset(x, y, colour);
  }
}

void VoltageMonitor::Redraw() {
  DrawAxes(plot_, range_.shown(), "/V");
  std::vector<std::pair<Colour, std::vector<Point>>> traces;
  for (std::size_t i = 0; i < kSlots; ++i) {
    const auto& [x, y] = ring_[i];
    if (x == kEmpty) continue;
    auto trace = std::find_if(traces.begin(), traces.end(),
                              [&](const auto& t) { return t.first == colours_[i]; });
    if (trace == traces.end()) trace = traces.insert(trace, {colours_[i], {}});
    trace->second.push_back({x, y});
  }
  for (const auto& [colour, points] : traces) plot_.Curve(points, colour);
}

}  // namespace zento
