#pragma once

#include <QColor>
#include <QFont>

#include "host/surface.h"

class QPaintDevice;
class QPainter;

namespace zento {

inline QColor ToQt(Colour colour) {
  return QColor(colour.red, colour.green, colour.blue);
}

// The font of a text style in surface units, the same on every device: a point is 96/72 of a
// surface unit, so a picture looks alike on the screen, on paper and in a file.
QFont SurfaceFont(const TextStyle& style);

// Draws through a QPainter, whose coordinates are the surface's. Width 0 is drawn `thinnest` wide:
// on a screen 0, a cosmetic hairline without antialiasing; on paper, where one dot of the printer
// is next to nothing, a real width. Wider lines are antialiased. The painter outlives the surface
// and keeps its state except for pen, brush, font and clip.
class QtSurface : public Surface {
 public:
  QtSurface(QPainter& painter, Size extent, double thinnest = 0)
      : painter_(&painter), extent_(extent), thinnest_(thinnest) {}

  Size Extent() const override { return extent_; }
  void Clear(Colour background) override;
  void Line(Point from, Point to, Colour colour, double width = 0) override;
  void Polyline(std::span<const Point> points, Colour colour, double width = 0) override;
  void Dots(std::span<const Point> points, Colour colour) override;
  void Circle(Point centre, double radius, Colour outline, const Colour* fill = nullptr) override;
  void Box(Rect rect, Colour colour) override;
  void FillBox(Rect rect, Colour colour) override;
  void Text(Point at, std::string_view text, const TextStyle& style) override;
  Size Measure(std::string_view text, const TextStyle& style) const override;
  void SetClip(Rect rect) override;
  void ClearClip() override;

 protected:
  explicit QtSurface(Size extent) : extent_(extent) {}
  // The painter, made when it is first needed.
  virtual QPainter& painter() { return *painter_; }

 private:
  void Pen(Colour colour, double width);

  QPainter* painter_ = nullptr;
  Size extent_;
  double thinnest_ = 0;
};

}  // namespace zento
