#include "measure/live_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/tables.h"

namespace zento {
namespace {

constexpr int kFontSize = 10;
constexpr PlotRange kFirstMonitorRange{-0.1, -0.01, 0.1, 0.01};

// Gives an empty stretch some width: a tenth of where it lies, or a tenth.
void Widen(double& from, double& to) {
  if (to > from) return;
  const double width = from == 0 ? 0.1 : std::abs(from) / 10;
  from -= width;
  to += width;
}

PlotRange Sorted(const PlotRange& range) {
  return {std::min(range.x1, range.x2), std::min(range.y1, range.y2), std::max(range.x1, range.x2),
          std::max(range.y1, range.y2)};
}

}  // namespace

void DrawAxes(GraphView& plot, PlotRange range, const std::string& title) {
  Widen(range.x1, range.x2);
  Widen(range.y1, range.y2);
  plot.View(range.x1, range.y2, range.x2, range.y1);
  plot.Axis(TickStep(range.x1, range.x2), TickStep(range.y1, range.y2), kFontSize, title);
}

void LivePlot::Begin(const std::string& title, const PlotRange& range, const AxisLook& look) {
  title_ = title;
  range_.Start(Sorted(range));
  desktop_.Show(window_);
  Redraw(look);
}

bool LivePlot::Include(double x, double y) {
  const bool grown = range_.Extend(x, y);
  return grown || Window() != drawn_on_;
}

void LivePlot::Redraw(const AxisLook& look) {
  Graph* window = Window();
  drawn_on_ = window;
  if (window == nullptr) return;
  window->SetTitle(title_);
  window->SetXFormat(look.x_format);
  window->SetYFormat(look.y_format);
  DrawAxes(window->Picture1, range_.shown(), look.unit);
}

void LivePlot::Curve(std::span<const double> x, std::span<const double> y, Colour colour) {
  if (Graph* window = Window()) window->Picture1.Curve(x, y, colour);
}

void LivePlot::Point(double x, double y, Colour colour) {
  if (Graph* window = Window()) window->Picture1.VPset(x, y, colour);
}

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
  range_.Start(kFirstMonitorRange);
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
