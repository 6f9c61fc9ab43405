#pragma once

#include <QImage>
#include <memory>
#include <optional>

#include "qt/hairline.h"
#include "qt/qt_surface.h"

class QPainter;

namespace zento {

// A surface on a picture in memory (format RGB32), whose device pixel ratio it follows. Hairlines
// and dots go straight into the pixels (see Hairline) and are one device-independent pixel wide, so
// they stay legible on dense screens; everything else is painted by Qt. Nothing else may paint on
// the picture while the surface exists.
class RasterSurface final : public QtSurface {
 public:
  explicit RasterSurface(QImage& image);
  ~RasterSurface() override;

  void Clear(Colour background) override;
  void Line(Point from, Point to, Colour colour, double width = 0) override;
  void Polyline(std::span<const Point> points, Colour colour, double width = 0) override;
  void Dots(std::span<const Point> points, Colour colour) override;
  void Box(Rect rect, Colour colour) override;
  void SetClip(Rect rect) override;
  void ClearClip() override;

 protected:
  QPainter& painter() override;

 private:
  Hairline Thin(Colour colour) const;

  QImage& image_;
  double scale_;
  PixelBuffer pixels_;
  PixelRect clip_;
  std::optional<Rect> clip_rect_;
  // Most increments are a line or two: no painter is set up for them.
  std::unique_ptr<QPainter> painter_;
};

}  // namespace zento
