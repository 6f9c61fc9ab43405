#include "graph/graph_view.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graph/ticks.h"

namespace zento {
namespace {

// The rectangle around both points, with `margin` on every side.
Rect Around(Point a, Point b, double margin) {
  const double left = std::min(a.x, b.x) - margin;
  const double top = std::min(a.y, b.y) - margin;
  return {left, top, std::max(a.x, b.x) + margin + 1 - left, std::max(a.y, b.y) + margin + 1 - top};
}

}  // namespace

GraphView::GraphView(Form& form, std::string name, Size size)
    : Canvas(form, std::move(name), size), map_(ScreenMap()) {}

void GraphView::SetAutoRedraw(bool on) {
  if (on == auto_redraw_) return;
  auto_redraw_ = on;
  if (on) Invalidate();
}

void GraphView::CurPrn(std::int32_t x, std::int32_t y, std::int32_t font_size,
                       const std::string& text) {
  if (font_size > 0) font_size_ = font_size;
  list_.AddText(
      {{static_cast<double>(x), static_cast<double>(y)}, static_cast<double>(font_size_), text});
  if (auto_redraw_) Invalidate();
}

void GraphView::View(double x1, double y1, double x2, double y2) {
  list_.SetWorld({x1, y1, x2, y2});
  map_ = ScreenMap();
}

void GraphView::Axis(double x_step, double y_step, std::int32_t font_size,
                     const std::string& title) {
  if (font_size > 0) font_size_ = font_size;
  const AxisFrame frame{
      list_.world(), x_step, y_step, x_format_, y_format_, title, static_cast<double>(font_size_)};
  constexpr std::int32_t kLabelSize = 10;
  font_size_ = kLabelSize;
  list_.Clear(&frame);
  if (auto_redraw_) Invalidate();
}

void GraphView::Clear() {
  list_.Clear();
  if (auto_redraw_) Invalidate();
}

void GraphView::VLine(double x1, double y1, double x2, double y2, Colour colour) {
  list_.AddLine({x1, y1}, {x2, y2}, colour);
  const WorldMap map = ScreenMap();
  const Point from = map({x1, y1});
  const Point to = map({x2, y2});
  if (!auto_redraw_ || !WithinLineLimit(from) || !WithinLineLimit(to)) return;
  Extend(Around(from, to, 1), [&](Surface& surface) { surface.Line(from, to, colour); });
}

void GraphView::VPset(double x, double y, Colour colour) {
  list_.AddDot({x, y}, colour);
  if (!auto_redraw_) return;
  const Point at = ScreenMap()({x, y});
  if (!(at.x >= 0 && at.y >= 0 && at.x < size().width && at.y < size().height)) return;
  Extend(Around(at, at, 1), [&](Surface& surface) { surface.Dots({&at, 1}, colour); });
}

void GraphView::AddShape(const ListShape& shape, Rect dirty) {
  list_.AddShape(shape);
  if (!auto_redraw_) return;
  const WorldMap map = ScreenMap();
  Extend(dirty, [&](Surface& surface) { DisplayList::PaintShape(surface, map, shape); });
}

void GraphView::VCircle(double x, double y, double radius, Colour colour, std::int16_t fill_style) {
  const Point centre = ScreenMap()({x, y});
  AddShape({ListShape::Kind::kCircle, {x, y}, {}, radius, fill_style, colour},
           Around(centre, centre, radius + 2));
}

void GraphView::VBox(double x1, double y1, double x2, double y2, Colour colour) {
  const WorldMap map = ScreenMap();
  AddShape({ListShape::Kind::kBox, {x1, y1}, {x2, y2}, 0, 0, colour},
           Around(map({x1, y1}), map({x2, y2}), 1));
}

void GraphView::VFill(double x1, double y1, double x2, double y2, Colour colour) {
  const WorldMap map = ScreenMap();
  AddShape({ListShape::Kind::kFill, {x1, y1}, {x2, y2}, 0, 0, colour},
           Around(map({x1, y1}), map({x2, y2}), 1));
}

void GraphView::Curve(std::span<const Point> points, Colour colour, CurveStyle style) {
  if (style == CurveStyle::kLines) {
    list_.AddPolyline(points, colour);
  } else {
    for (const Point& at : points) list_.AddDot(at, colour);
  }
  if (auto_redraw_) Invalidate();
}

void GraphView::Curve(std::span<const double> x, std::span<const double> y, Colour colour,
                      CurveStyle style) {
  const std::size_t count = std::min(x.size(), y.size());
  std::vector<Point> points(count);
  for (std::size_t i = 0; i < count; ++i) points[i] = {x[i], y[i]};
  Curve(points, colour, style);
}

void GraphView::Paint(Surface& surface) {
  list_.Paint(surface, PaintSize(surface.Extent(), size()));
}

void GraphView::PointerMoved(const PointerEvent& event) {
  pointer_inside_ = true;
  pointer_ = event.at;
}

void GraphView::PointerLeft() {
  pointer_inside_ = false;
}

std::string GraphView::Readout() const {
  if (!pointer_inside_) return {};
  return PointReadout(pointer_, list_.world(), size());
}

}  // namespace zento
