#include "qt/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <cmath>

#include "qt/qt_text.h"
#include "qt/raster_surface.h"

namespace zento {

void QtClipboard::SetText(const std::string& text) {
  QGuiApplication::clipboard()->setText(ToQt(text));
}

std::string QtClipboard::Text() const {
  return FromQt(QGuiApplication::clipboard()->text());
}

void QtClipboard::SetPicture(Size size, const std::function<void(Surface&)>& paint) {
  // As sharp as the screen it was copied from.
  const double ratio = qGuiApp->devicePixelRatio();
  QImage image(static_cast<int>(std::ceil(size.width * ratio)),
               static_cast<int>(std::ceil(size.height * ratio)), QImage::Format_RGB32);
  if (image.isNull()) return;
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::white);
  {
    RasterSurface surface(image);
    paint(surface);
  }
  QGuiApplication::clipboard()->setImage(image);
}

}  // namespace zento
