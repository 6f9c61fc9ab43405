#include "measure/live_plot.h"

#include <algorithm>
#include <vector>

#include "core/tables.h"

namespace zento {
namespace {

constexpr int kFontSize = 10;

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

void LivePlot::Curve(std::span<const AcquiredPoint> points, std::size_t y, Colour colour) {
  Graph* window = Window();
  if (window == nullptr) return;
  std::vector<zento::Point> places(points.size());
  std::transform(points.begin(), points.end(), places.begin(), [y](const AcquiredPoint& p) {
    return zento::Point{p[0], p[y]};
  });
  window->Picture1.Curve(places, colour);
}

void LivePlot::Curve(std::span<const double> x, std::span<const double> y, Colour colour) {
  if (Graph* window = Window()) window->Picture1.Curve(x, y, colour);
}

void LivePlot::Point(double x, double y, Colour colour) {
  if (Graph* window = Window()) window->Picture1.VPset(x, y, colour);
}

}  // namespace zento
