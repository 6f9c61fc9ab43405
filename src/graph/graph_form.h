#pragma once

#include <cstdint>
#include <string>

#include "graph/graph_view.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// A window with one picture and, below it, the button that copies it: "Graph1" is the live plot of
// the measurements, "Graph2" their second one; analysis windows make further ones under names of
// their own. All drawing operations are those of GraphView.
//
// Closing the window hides it with its picture; Desktop::Show brings it back. It goes when whoever
// made it unloads it, at the latest with the main window.
//
// Positions and sizes are device-independent pixels. The first of the two position values is the
// left edge, the second the top edge.
class Graph : public Form {
 public:
  Graph(Host& host, std::string name);

  GraphView Picture1{*this, "Picture1"};
  Button CptoClipBtn{*this, "CptoClipBtn", "Copy to Clipboard"};

  // The height of the strip below the picture, which window heights include.
  static constexpr int kButtonStrip = 26;

  // The picture's size; the window is higher by the button strip. Switches automatic redraw on.
  // A width or height that is not positive leaves the size as it is.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void SetPosition(std::int16_t left, std::int16_t top);
  void SetTitle(const std::string& text) { SetCaption(text); }
  void SetXFormat(const std::string& format) { Picture1.SetXFormat(format); }
  void SetYFormat(const std::string& format) { Picture1.SetYFormat(format); }
  void SetAutoRedraw(bool on) { Picture1.SetAutoRedraw(on); }
  void CurPrn(std::int32_t x, std::int32_t y, std::int32_t font_size, const std::string& text) {
    Picture1.CurPrn(x, y, font_size, text);
  }
  void View(double x1, double y1, double x2, double y2) { Picture1.View(x1, y1, x2, y2); }
  void Axis(double x_step, double y_step, std::int32_t font_size, const std::string& title) {
    Picture1.Axis(x_step, y_step, font_size, title);
  }
  float VtoWX(double x) const { return Picture1.VtoWX(x); }
  float VtoWY(double y) const { return Picture1.VtoWY(y); }
  void VLine(double x1, double y1, double x2, double y2, Colour colour) {
    Picture1.VLine(x1, y1, x2, y2, colour);
  }
  void VPset(double x, double y, Colour colour) { Picture1.VPset(x, y, colour); }
  void VCircle(double x, double y, double radius, Colour colour, std::int16_t fill_style = 0) {
    Picture1.VCircle(x, y, radius, colour, fill_style);
  }
  void VBox(double x1, double y1, double x2, double y2, Colour colour) {
    Picture1.VBox(x1, y1, x2, y2, colour);
  }
  void VFill(double x1, double y1, double x2, double y2, Colour colour) {
    Picture1.VFill(x1, y1, x2, y2, colour);
  }
  void Curve(std::span<const Point> points, Colour colour, CurveStyle style = CurveStyle::kDots) {
    Picture1.Curve(points, colour, style);
  }
  void Curve(std::span<const double> x, std::span<const double> y, Colour colour,
             CurveStyle style = CurveStyle::kDots) {
    Picture1.Curve(x, y, colour, style);
  }

  // The window's width.
  std::int32_t getPictureX() const;
  void getPosition(std::int16_t& left, std::int16_t& top) const;
  // As SetSize takes them: the height is without the button strip.
  void getSize(std::int16_t& width, std::int16_t& height) const;

  LayoutNode Layout() override;
  void CloseRequested() override;

 private:
  void CopyPicture();
  // The window's inner size; before anything was asked for, the picture's with the strip.
  Size WindowSize() const;
};

}  // namespace zento
