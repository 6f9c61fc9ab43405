#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "graph/series_painter.h"
#include "graph/world.h"
#include "host/canvas.h"

namespace zento {

// A plot of finished data: axes with labels and titles around the plot area, curves inside. The
// data are kept in world coordinates; a person zooms with the wheel about the pointer or by
// dragging a rubber band, pans by dragging with the middle button or with Shift held, and goes back
// to the whole with a double click.
class PreviewPlot : public Canvas {
 public:
  PreviewPlot(Form& form, std::string name, Size size = {480, 320})
      : Canvas(form, std::move(name), size) {}

  // Patterns of the tick labels. Where a pattern cannot tell the ticks apart, as after zooming in,
  // a finer one takes its place.
  void SetFormats(const std::string& x_format, const std::string& y_format);
  // The world range of the whole picture; y grows upwards when y1 < y2. A range without width or
  // height is widened around its value. The zoom stays when the range is the one set before, so
  // that drawing the same track again does not move what a person looks at.
  void SetRange(double x1, double y1, double x2, double y2);
  // Grid steps while not zoomed; 0 = chosen for the range, which is also done while zoomed.
  void SetSteps(double dx, double dy);
  // Empty = none.
  void SetAxisTitles(const std::string& x_title, const std::string& y_title);

  // Removes the curves; range, steps and titles stay.
  void Clear();
  // A line that begins where the last one of the same colour ended continues it.
  void Line(double x1, double y1, double x2, double y2, Colour colour);
  void Polyline(std::span<const Point> points, Colour colour);
  // As many points as the shorter column has.
  void Polyline(std::span<const double> x, std::span<const double> y, Colour colour);
  void Dot(double x, double y, Colour colour);
  void Dots(std::span<const Point> points, Colour colour);
  void Dots(std::span<const double> x, std::span<const double> y, Colour colour);
  // A small filled circle that stands out among dots.
  void Mark(double x, double y, Colour colour);

  void ResetZoom();
  bool Zoomed() const { return shown_ != whole_; }
  // What the plot area shows: (x1, y1) its top left, (x2, y2) its bottom right.
  const WorldWindow& shown() const { return shown_; }
  void ShowWindow(const WorldWindow& window);
  // Where the curves stood when the picture was last painted at its size on the screen; everything
  // before that.
  Rect PlotArea() const;

  void Paint(Surface& surface) override;
  void PaintOverlay(Surface& surface) override;
  void PointerPressed(const PointerEvent& event) override;
  void PointerMoved(const PointerEvent& event) override;
  void PointerReleased(const PointerEvent& event) override;
  void PointerLeft() override;
  void DoubleClicked(const PointerEvent& event) override;
  void WheelTurned(const PointerEvent& event, double steps) override;
  std::string Readout() const override;

 private:
  enum class Drag { kNone, kBand, kPan };

  // The last series if it is of this kind and colour, else a new one.
  PlotSeries& Open(PlotSeries::Kind kind, Colour colour);
  // Adds to the last series.
  void Append(std::span<const double> x, std::span<const double> y);
  Point WorldAt(Point at) const;
  Rect Band() const;
  // Shows the window unless arithmetic could not resolve it.
  void ShowIfSensible(const WorldWindow& window);

  std::string x_format_ = "0.0";
  std::string y_format_ = "0.0e+0";
  std::string x_title_;
  std::string y_title_;
  double x_step_ = 0;
  double y_step_ = 0;
  WorldWindow whole_;
  WorldWindow shown_;
  std::vector<PlotSeries> series_;

  // Where the plot area was when the picture was last painted at the screen's size.
  Rect area_{0, 0, 0, 0};
  Drag drag_ = Drag::kNone;
  Point pressed_;
  WorldWindow pressed_window_;
  bool pointer_inside_ = false;
  Point pointer_;
};

}  // namespace zento
