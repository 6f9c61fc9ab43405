#include "qt/raster_surface.h"

#include <QPainter>
#include <QRectF>
#include <algorithm>
#include <cmath>
#include <limits>

namespace zento {
namespace {

constexpr PixelRect kEverywhere{0, 0, std::numeric_limits<int>::max(),
                                std::numeric_limits<int>::max()};

Size LogicalSize(const QImage& image) {
  return {image.width() / image.devicePixelRatio(), image.height() / image.devicePixelRatio()};
}

int Device(double value) {
  return static_cast<int>(std::clamp(value, -1e9, 1e9));
}

}  // namespace

RasterSurface::RasterSurface(QImage& image)
    : QtSurface(LogicalSize(image)),
      image_(image),
      scale_(image.devicePixelRatio()),
      pixels_{reinterpret_cast<std::uint32_t*>(image.bits()), image.width(), image.height(),
              static_cast<std::ptrdiff_t>(image.bytesPerLine() / 4)},
      clip_(kEverywhere) {}

RasterSurface::~RasterSurface() = default;

QPainter& RasterSurface::painter() {
  if (!painter_) {
    painter_ = std::make_unique<QPainter>(&image_);
    if (clip_rect_) QtSurface::SetClip(*clip_rect_);
  }
  return *painter_;
}

Hairline RasterSurface::Thin(Colour colour) const {
  const int thickness = std::max(1, static_cast<int>(std::lround(scale_)));
  return {pixels_, clip_, scale_, thickness, zento::ToQt(colour).rgb()};
}

void RasterSurface::Clear(Colour background) {
  if (clip_rect_) {
    FillBox(*clip_rect_, background);
    return;
  }
  for (int y = 0; y < pixels_.height; ++y) {
    std::uint32_t* row = pixels_.pixels + y * pixels_.stride;
    std::fill(row, row + pixels_.width, zento::ToQt(background).rgb());
  }
}

void RasterSurface::Line(Point from, Point to, Colour colour, double width) {
  if (width > 0) return QtSurface::Line(from, to, colour, width);
  Thin(colour).Line(from, to);
}

void RasterSurface::Polyline(std::span<const Point> points, Colour colour, double width) {
  if (width > 0) return QtSurface::Polyline(points, colour, width);
  Thin(colour).Polyline(points);
}

void RasterSurface::Dots(std::span<const Point> points, Colour colour) {
  Thin(colour).Dots(points);
}

void RasterSurface::Box(Rect rect, Colour colour) {
  const double right = rect.x + rect.width;
  const double bottom = rect.y + rect.height;
  const Point corners[] = {
      {rect.x, rect.y}, {right, rect.y}, {right, bottom}, {rect.x, bottom}, {rect.x, rect.y}};
  Thin(colour).Polyline(corners);
}

void RasterSurface::SetClip(Rect rect) {
  clip_rect_ = rect;
  clip_ = {Device(std::floor(rect.x * scale_)), Device(std::floor(rect.y * scale_)),
           Device(std::ceil((rect.x + rect.width) * scale_)),
           Device(std::ceil((rect.y + rect.height) * scale_))};
  if (painter_) QtSurface::SetClip(rect);
}

void RasterSurface::ClearClip() {
  clip_rect_.reset();
  clip_ = kEverywhere;
  if (painter_) QtSurface::ClearClip();
}

}  // namespace zento
