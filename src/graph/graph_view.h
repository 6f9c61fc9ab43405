#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "graph/display_list.h"
#include "graph/world.h"
#include "host/canvas.h"

namespace zento {

// A drawing surface with world coordinates, axes and grid: set a world window with View, draw the
// frame with Axis, then add points, lines and shapes. Everything drawn since the last Axis is kept
// in world coordinates, so the picture fills its place at any size; each addition is shown at once
// and costs the same however much is there already.
class GraphView : public Canvas {
 public:
  GraphView(Form& form, std::string name, Size size = {480, 320});

  // Patterns of the tick labels. A label that its pattern would round to another value than its
  // tick's is left out.
  void SetXFormat(std::string format) { x_format_ = std::move(format); }
  void SetYFormat(std::string format) { y_format_ = std::move(format); }
  const std::string& XFormat() const { return x_format_; }
  const std::string& YFormat() const { return y_format_; }

  // While off, what is drawn is kept but shown only at the next repaint; switching it on shows it.
  void SetAutoRedraw(bool on);
  bool AutoRedraw() const { return auto_redraw_; }

  // Text at a surface position, its top left corner there. `font_size` in points.
  void CurPrn(std::int32_t x, std::int32_t y, std::int32_t font_size, const std::string& text);

  // The world window of everything drawn from now on. What was drawn before stays where it is.
  void View(double x1, double y1, double x2, double y2);
  const WorldWindow& world() const { return list_.world(); }

  // Removes everything and draws grid, tick labels and, at the right end of the x axis, the title.
  // A step of 0 or without a value draws no grid in its direction; a step that would put lines or
  // labels on top of each other is coarsened. A font size of 0 or less keeps the current one for
  // the title; labels are 10 points.
  void Axis(double x_step, double y_step, std::int32_t font_size, const std::string& title);
  // Removes everything, axes included.
  void Clear();

  // Surface coordinates for the size at the last View; a later resize does not change them.
  float VtoWX(double x) const { return map_.x(x); }
  float VtoWY(double y) const { return map_.y(y); }

  // A line with an end further than 32767 from the surface's origin is not drawn.
  void VLine(double x1, double y1, double x2, double y2, Colour colour);
  void VPset(double x, double y, Colour colour);
  // `radius` in surface units. Fill styles: 0 solid, 1 none, 2 horizontal, 3 vertical, 4 and 5
  // diagonal, 6 and 7 crossed lines.
  void VCircle(double x, double y, double radius, Colour colour, std::int16_t fill_style = 0);
  void VBox(double x1, double y1, double x2, double y2, Colour colour);
  void VFill(double x1, double y1, double x2, double y2, Colour colour);

  // A whole curve at once, by what VPset or VLine between neighbours would draw.
  void Curve(std::span<const Point> points, Colour colour, CurveStyle style = CurveStyle::kDots);
  // As many points as the shorter column has.
  void Curve(std::span<const double> x, std::span<const double> y, Colour colour,
             CurveStyle style = CurveStyle::kDots);

  void Paint(Surface& surface) override;
  // The pointer's place in world coordinates.
  std::string Readout() const override;
  void PointerMoved(const PointerEvent& event) override;
  void PointerLeft() override;

  // What is shown.
  const DisplayList& list() const { return list_; }
  // How many points and shapes are kept.
  std::size_t ItemCount() const { return list_.size(); }

 private:
  // Keeps the shape and shows it; it lies inside `dirty`.
  void AddShape(const ListShape& shape, Rect dirty);
  WorldMap ScreenMap() const { return {list_.world(), size()}; }

  DisplayList list_;
  WorldMap map_;  // of the last View
  std::string x_format_ = "0.0";
  std::string y_format_ = "0.0e+0";
  std::int32_t font_size_ = 10;
  bool auto_redraw_ = true;
  bool pointer_inside_ = false;
  Point pointer_;
};

}  // namespace zento
