#include "graph/preview_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graph/axes.h"
#include "graph/ticks.h"

namespace zento {
namespace {

constexpr double kWheelFactor = 0.8;  // per step away from the person
constexpr double kLeastBand = 4;      // surface units; less is a click
constexpr double kMostWheelSteps = 20;

// A range that can be drawn: finite and with an extent.
void Widen(double& from, double& to) {
  if (!std::isfinite(from) || !std::isfinite(to) || !std::isfinite(to - from)) {
    from = 0;
    to = 1;
  }
  if (from != to) return;
  const double half = from == 0 ? 1 : std::abs(from) / 2;
  from -= half;
  to += half;
}

// Whether an axis may go from `from` to `to`: fine enough for double arithmetic to resolve, and not
// beyond all sense against the whole.
bool Zoomable(double from, double to, double whole_from, double whole_to) {
  const double span = std::abs(to - from);
  const double whole = std::abs(whole_to - whole_from);
  const double far = std::max(std::abs(from), std::abs(to));
  return std::isfinite(span) && span > 1e-11 * far && span > 1e-9 * whole && span < 1e3 * whole;
}

// `from` to `to` shrunk by `factor` about `fixed`.
void Shrink(double& from, double& to, double fixed, double factor) {
  from = fixed + (from - fixed) * factor;
  to = fixed + (to - fixed) * factor;
}

bool Inside(const Rect& rect, Point at) {
  return at.x >= rect.x && at.x <= rect.x + rect.width && at.y >= rect.y &&
         at.y <= rect.y + rect.height;
}

}  // namespace

void PreviewPlot::SetFormats(const std::string& x_format, const std::string& y_format) {
  x_format_ = x_format;
  y_format_ = y_format;
  Invalidate();
}

void PreviewPlot::SetRange(double x1, double y1, double x2, double y2) {
  Widen(x1, x2);
  Widen(y1, y2);
  const WorldWindow asked{x1, y2, x2, y1};
  if (asked == whole_) return;
  whole_ = asked;
  ResetZoom();
}

void PreviewPlot::SetSteps(double dx, double dy) {
  x_step_ = dx;
  y_step_ = dy;
  Invalidate();
}

void PreviewPlot::SetAxisTitles(const std::string& x_title, const std::string& y_title) {
  x_title_ = x_title;
  y_title_ = y_title;
  Invalidate();
}

void PreviewPlot::Clear() {
  series_.clear();
  Invalidate();
}

PlotSeries& PreviewPlot::Open(PlotSeries::Kind kind, Colour colour) {
  if (series_.empty() || series_.back().kind != kind || series_.back().colour != colour) {
    series_.push_back({kind, colour, {}});
  }
  Invalidate();
  return series_.back();
}

void PreviewPlot::Line(double x1, double y1, double x2, double y2, Colour colour) {
  std::vector<Point>& points = Open(PlotSeries::Kind::kPolyline, colour).points;
  if (points.empty() || points.back() != Point{x1, y1}) {
    if (!points.empty()) {
      series_.push_back({PlotSeries::Kind::kPolyline, colour, {{x1, y1}, {x2, y2}}});
      return;
    }
    points.push_back({x1, y1});
  }
  points.push_back({x2, y2});
}

void PreviewPlot::Polyline(std::span<const Point> points, Colour colour) {
  series_.push_back({PlotSeries::Kind::kPolyline, colour, {points.begin(), points.end()}});
  Invalidate();
}

void PreviewPlot::Polyline(std::span<const double> x, std::span<const double> y, Colour colour) {
  series_.push_back({PlotSeries::Kind::kPolyline, colour, {}});
  Append(x, y);
}

void PreviewPlot::Append(std::span<const double> x, std::span<const double> y) {
  std::vector<Point>& points = series_.back().points;
  const std::size_t count = std::min(x.size(), y.size());
  points.reserve(points.size() + count);
  for (std::size_t i = 0; i < count; ++i) points.push_back({x[i], y[i]});
  Invalidate();
}

void PreviewPlot::Dot(double x, double y, Colour colour) {
  Open(PlotSeries::Kind::kDots, colour).points.push_back({x, y});
}

void PreviewPlot::Dots(std::span<const Point> points, Colour colour) {
  std::vector<Point>& kept = Open(PlotSeries::Kind::kDots, colour).points;
  kept.insert(kept.end(), points.begin(), points.end());
}

void PreviewPlot::Dots(std::span<const double> x, std::span<const double> y, Colour colour) {
  Open(PlotSeries::Kind::kDots, colour);
  Append(x, y);
}

void PreviewPlot::Mark(double x, double y, Colour colour) {
  Open(PlotSeries::Kind::kMarks, colour).points.push_back({x, y});
}

void PreviewPlot::ResetZoom() {
  ShowWindow(whole_);
}

void PreviewPlot::ShowWindow(const WorldWindow& window) {
  shown_ = window;
  Invalidate();
}

void PreviewPlot::Paint(Surface& surface) {
  PlotFrame frame;
  frame.window = shown_;
  frame.x_format = x_format_;
  frame.y_format = y_format_;
  frame.x_title = x_title_;
  frame.y_title = y_title_;
  frame.fit_formats = Zoomed();
  if (!Zoomed()) {
    frame.x_step = x_step_;
    frame.y_step = y_step_;
  }
  const Size extent = PaintSize(surface.Extent(), size());
  const Rect area = PaintPlotFrame(surface, extent, frame);
  if (extent == size()) area_ = area;
  PaintPlotSeries(surface, area, shown_, series_);
  PaintPlotBorder(surface, area);
}

Rect PreviewPlot::PlotArea() const {
  if (area_.width > 0 && area_.x + area_.width <= size().width &&
      area_.y + area_.height <= size().height) {
    return area_;
  }
  return {0, 0, size().width, size().height};
}

Point PreviewPlot::WorldAt(Point at) const {
  const Rect area = PlotArea();
  const WorldMap map(shown_, {area.width, area.height});
  return {map.x.World(at.x - area.x), map.y.World(at.y - area.y)};
}

Rect PreviewPlot::Band() const {
  const Rect area = PlotArea();
  const double right = std::clamp(pointer_.x, area.x, area.x + area.width);
  const double bottom = std::clamp(pointer_.y, area.y, area.y + area.height);
  return {std::min(pressed_.x, right), std::min(pressed_.y, bottom), std::abs(right - pressed_.x),
          std::abs(bottom - pressed_.y)};
}

void PreviewPlot::PaintOverlay(Surface& surface) {
  constexpr Colour kBand{96, 96, 96};
  if (drag_ == Drag::kBand) surface.Box(Band(), kBand);
}

void PreviewPlot::PointerPressed(const PointerEvent& event) {
  pointer_ = event.at;
  if (drag_ != Drag::kNone || !Inside(PlotArea(), event.at)) return;
  if (event.button == PointerButton::kMiddle ||
      (event.button == PointerButton::kLeft && event.shift)) {
    drag_ = Drag::kPan;
  } else if (event.button == PointerButton::kLeft) {
    drag_ = Drag::kBand;
  }
  pressed_ = event.at;
  pressed_window_ = shown_;
}

void PreviewPlot::PointerMoved(const PointerEvent& event) {
  pointer_inside_ = true;
  pointer_ = event.at;
  if (drag_ == Drag::kBand) InvalidateOverlay();
  if (drag_ != Drag::kPan) return;
  const Rect area = PlotArea();
  const WorldMap map(pressed_window_, {area.width, area.height});
  const double dx = (pointer_.x - pressed_.x) / map.x.scale();
  const double dy = (pointer_.y - pressed_.y) / map.y.scale();
  WorldWindow moved = pressed_window_;
  moved.x1 -= dx;
  moved.x2 -= dx;
  moved.y1 -= dy;
  moved.y2 -= dy;
  ShowIfSensible(moved);
}

void PreviewPlot::PointerReleased(const PointerEvent& event) {
  pointer_ = event.at;
  const Drag was = std::exchange(drag_, Drag::kNone);
  if (was != Drag::kBand) return;
  InvalidateOverlay();
  const Rect band = Band();
  const Point first = WorldAt({band.x, band.y});
  const Point second = WorldAt({band.x + band.width, band.y + band.height});
  // A band along one axis zooms that axis alone.
  WorldWindow wanted = shown_;
  if (band.width >= kLeastBand) {
    wanted.x1 = first.x;
    wanted.x2 = second.x;
  }
  if (band.height >= kLeastBand) {
    wanted.y1 = first.y;
    wanted.y2 = second.y;
  }
  if (wanted != shown_) ShowIfSensible(wanted);
}

void PreviewPlot::PointerLeft() {
  pointer_inside_ = false;
}

void PreviewPlot::DoubleClicked(const PointerEvent& event) {
  if (event.button != PointerButton::kLeft && event.button != PointerButton::kNone) return;
  drag_ = Drag::kNone;
  InvalidateOverlay();
  ResetZoom();
}

void PreviewPlot::WheelTurned(const PointerEvent& event, double steps) {
  if (!std::isfinite(steps) || drag_ != Drag::kNone) return;
  const double factor =
      std::pow(kWheelFactor, std::clamp(steps, -kMostWheelSteps, kMostWheelSteps));
  const Rect area = PlotArea();
  const Point fixed = WorldAt(event.at);
  const bool beside_x = event.at.y > area.y + area.height;  // over the labels of the x axis
  const bool beside_y = event.at.x < area.x;
  WorldWindow wanted = shown_;
  if (!beside_y || beside_x) Shrink(wanted.x1, wanted.x2, fixed.x, factor);
  if (!beside_x || beside_y) Shrink(wanted.y1, wanted.y2, fixed.y, factor);
  ShowIfSensible(wanted);
}

void PreviewPlot::ShowIfSensible(const WorldWindow& window) {
  if (Zoomable(window.x1, window.x2, whole_.x1, whole_.x2) &&
      Zoomable(window.y1, window.y2, whole_.y1, whole_.y2)) {
    ShowWindow(window);
  }
}

std::string PreviewPlot::Readout() const {
  const Rect area = PlotArea();
  if (!pointer_inside_ || !Inside(area, pointer_)) return {};
  return PointReadout({pointer_.x - area.x, pointer_.y - area.y}, shown_,
                      {area.width, area.height});
}

}  // namespace zento
