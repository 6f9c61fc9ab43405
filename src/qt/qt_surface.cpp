#include "qt/qt_surface.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <algorithm>
#include <cmath>

#include "qt/qt_text.h"

namespace zento {
namespace {

QPointF ToQt(Point point) {
  return {point.x, point.y};
}
QRectF ToQt(Rect rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

}  // namespace

QFont SurfaceFont(const TextStyle& style) {
  QFont font;
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(style.size * 96.0 / 72.0))));
  font.setBold(style.bold);
  return font;
}

void QtSurface::Pen(Colour colour, double width) {
  QPainter& to = painter();
  if (width <= 0) width = thinnest_;
  QPen pen(zento::ToQt(colour), width);
  if (width > 0) {
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(Qt::RoundCap);
  }
  to.setRenderHint(QPainter::Antialiasing, width > 0);
  to.setPen(pen);
  to.setBrush(Qt::NoBrush);
}

void QtSurface::Clear(Colour background) {
  painter().fillRect(QRectF(0, 0, extent_.width, extent_.height), zento::ToQt(background));
}

void QtSurface::Line(Point from, Point to, Colour colour, double width) {
  Pen(colour, width);
  painter().drawLine(ToQt(from), ToQt(to));
}

void QtSurface::Polyline(std::span<const Point> points, Colour colour, double width) {
  if (points.size() < 2) return;
  Pen(colour, width);
  QPolygonF polygon;
  polygon.reserve(static_cast<qsizetype>(points.size()));
  for (const Point& point : points) polygon.append(ToQt(point));
  painter().drawPolyline(polygon);
}

void QtSurface::Dots(std::span<const Point> points, Colour colour) {
  // A filled unit square rather than a point: vector formats draw points as nothing.
  painter().setRenderHint(QPainter::Antialiasing, false);
  for (const Point& point : points) {
    painter().fillRect(QRectF(std::floor(point.x), std::floor(point.y), 1, 1), zento::ToQt(colour));
  }
}

void QtSurface::Circle(Point centre, double radius, Colour outline, const Colour* fill) {
  Pen(outline, 1);
  if (fill != nullptr) painter().setBrush(zento::ToQt(*fill));
  painter().drawEllipse(ToQt(centre), radius, radius);
}

void QtSurface::Box(Rect rect, Colour colour) {
  Pen(colour, 0);
  painter().drawRect(ToQt(rect));
}

void QtSurface::FillBox(Rect rect, Colour colour) {
  painter().setRenderHint(QPainter::Antialiasing, false);
  painter().fillRect(ToQt(rect), zento::ToQt(colour));
}

void QtSurface::Text(Point at, std::string_view text, const TextStyle& style) {
  const QString line = zento::ToQt(text);
  const QFont font = SurfaceFont(style);
  const QFontMetricsF metrics(font);
  double x = 0;
  if (style.horizontal == HorizontalAnchor::kCentre) x = -metrics.horizontalAdvance(line) / 2;
  if (style.horizontal == HorizontalAnchor::kRight) x = -metrics.horizontalAdvance(line);
  double baseline = metrics.ascent();
  if (style.vertical == VerticalAnchor::kMiddle) baseline -= metrics.height() / 2;
  if (style.vertical == VerticalAnchor::kBottom) baseline -= metrics.height();

  QPainter& to = painter();
  to.setRenderHint(QPainter::TextAntialiasing, true);
  to.setFont(font);
  to.setPen(zento::ToQt(style.colour));
  if (!style.upwards) {
    to.drawText(QPointF(at.x + x, at.y + baseline), line);
    return;
  }
  const QTransform before = to.transform();
  to.translate(at.x, at.y);
  to.rotate(-90);
  to.drawText(QPointF(x, baseline), line);
  to.setTransform(before);
}

Size QtSurface::Measure(std::string_view text, const TextStyle& style) const {
  const QFontMetricsF metrics(SurfaceFont(style));
  const Size size{metrics.horizontalAdvance(zento::ToQt(text)), metrics.height()};
  return style.upwards ? Size{size.height, size.width} : size;
}

void QtSurface::SetClip(Rect rect) {
  painter().setClipRect(ToQt(rect));
}

void QtSurface::ClearClip() {
  painter().setClipping(false);
}

}  // namespace zento
