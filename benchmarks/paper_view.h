#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <span>
#include <string_view>

#include "host/form.h"
#include "host/surface.h"

namespace zento {

// Draws nowhere, so that the drawing of a point is counted up to the toolkit's door.
class Paper : public Surface {
 public:
  Size Extent() const override { return {480, 320}; }
  void Clear(Colour) override {}
  void Line(Point, Point, Colour, double) override {}
  void Polyline(std::span<const Point> points, Colour, double) override { Touch(points); }
  void Dots(std::span<const Point> points, Colour) override { Touch(points); }
  void Circle(Point, double, Colour, const Colour*) override {}
  void Box(Rect, Colour) override {}
  void FillBox(Rect, Colour) override {}
  void Text(Point, std::string_view, const TextStyle&) override {}
  Size Measure(std::string_view text, const TextStyle& style) const override {
    return {0.6 * style.size * static_cast<double>(text.size()), style.size};
  }
  void SetClip(Rect) override {}
  void ClearClip() override {}

 private:
  static void Touch(std::span<const Point> points) {
    for (const Point& point : points) benchmark::DoNotOptimize(point.x + point.y);
  }
};

// What shows a form on paper.
class PaperView : public FormView {
 public:
  void ControlChanged(Control&) override {}
  void CanvasInvalid(Canvas&) override {}
  void CanvasOverlayInvalid(Canvas&) override {}
  void CanvasExtended(Canvas&, Rect, const std::function<void(Surface&)>& paint) override {
    paint(paper_);
  }
  void CaptionChanged(Form&) override {}
  void FocusRequested(Control&) override {}
  void GeometryRequested(Form&) override {}

 private:
  Paper paper_;
};

}  // namespace zento
