#include "qt/canvas_export.h"

#include <QBuffer>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>

#include "host/canvas.h"
#include "host/form.h"
#include "qt/qt_surface.h"
#include "qt/qt_text.h"
#include "qt/raster_surface.h"

namespace zento {
namespace {

constexpr double kPixelsPerInch = 96;
constexpr double kPointsPerInch = 72;
// Width of the thinnest line in vector pictures: about a quarter of a millimetre on paper.
constexpr double kVectorLine = 0.9;

QSize Whole(Size size) {
  return {std::max(1, static_cast<int>(std::lround(size.width))),
          std::max(1, static_cast<int>(std::lround(size.height)))};
}

QByteArray Bytes(const QBuffer& buffer) {
  return buffer.data();
}

void PaintScaled(Canvas& canvas, Size size, QPainter& painter, double scale) {
  painter.scale(scale, scale);
  QtSurface surface(painter, size, kVectorLine);
  canvas.Paint(surface);
}

}  // namespace

QByteArray CanvasAsPng(Canvas& canvas, Size size, double pixel_ratio) {
  QImage image(Whole({size.width * pixel_ratio, size.height * pixel_ratio}), QImage::Format_RGB32);
  image.setDevicePixelRatio(pixel_ratio);
  image.fill(Qt::white);
  {
    RasterSurface surface(image);
    canvas.Paint(surface);
  }
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return Bytes(buffer);
}

QByteArray CanvasAsSvg(Canvas& canvas, Size size) {
  QBuffer buffer;
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setResolution(static_cast<int>(kPixelsPerInch));
  generator.setSize(Whole(size));
  generator.setViewBox(QRect(QPoint(0, 0), Whole(size)));
  generator.setTitle(ToQt(canvas.form().caption()));
  {
    QPainter painter(&generator);
    PaintScaled(canvas, size, painter, 1);
  }
  return Bytes(buffer);
}

QByteArray CanvasAsPdf(Canvas& canvas, Size size) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    constexpr int kResolution = 1200;
    writer.setResolution(kResolution);
    writer.setTitle(ToQt(canvas.form().caption()));
    const double points = kPointsPerInch / kPixelsPerInch;
    writer.setPageLayout(QPageLayout(QPageSize(QSizeF(size.width * points, size.height * points),
                                               QPageSize::Point, QString(), QPageSize::ExactMatch),
                                     QPageLayout::Portrait, QMarginsF()));
    QPainter painter(&writer);
    PaintScaled(canvas, size, painter, kResolution / kPixelsPerInch);
  }
  return Bytes(buffer);
}

void PrintCanvas(Canvas& canvas, Size size, QPrinter& printer) {
  QPainter painter;
  if (!painter.begin(&printer)) return;
  const QRectF page = printer.pageRect(QPrinter::DevicePixel);
  PaintScaled(canvas, size, painter,
              std::min(page.width() / size.width, page.height() / size.height));
}

}  // namespace zento
