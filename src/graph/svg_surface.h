#pragma once

#include <string>
#include <string_view>

#include "host/surface.h"

namespace zento {

class Canvas;

// Writes what is drawn as an SVG 1.1 document, one surface unit a pixel of 1/96 inch. A point with
// whole coordinates is the middle of its pixel, so that lines come out as on a screen. Coordinates
// are written with at most two decimals; texts stand in the reader's own sans-serif font, of which
// the size is estimated. What is not a finite number is not drawn.
class SvgSurface : public Surface {
 public:
  // A size below 1 counts as 1.
  explicit SvgSurface(Size extent);

  // The document drawn so far, UTF-8 with a declaration.
  std::string Document() const;

  Size Extent() const override { return extent_; }
  // Forgets what was drawn before.
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

 private:
  void Stroke(Colour colour, double width);
  void AddRect(Rect rect);

  Size extent_;
  std::string body_;
  Colour background_{255, 255, 255};
  int clips_ = 0;
  bool clipped_ = false;
};

// The picture that a canvas shows, at its size on the screen, as a document.
std::string CanvasAsSvg(Canvas& canvas);

// The estimated width of a line of UTF-8 in a common sans-serif font, in units of the font's size.
double EstimateTextWidth(std::string_view text, bool bold);

}  // namespace zento
