#include "qt/canvas_menu.h"

#include <QAction>
#include <QBuffer>
#include <QImage>
#include <QMenu>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <string_view>

#include "graph/svg_surface.h"
#include "host/canvas.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "host/host.h"
#include "host/services.h"
#include "qt/canvas_widget.h"
#include "qt/qt_surface.h"
#include "qt/qt_text.h"
#include "qt/raster_surface.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr double kPixelsPerInch = 96;
constexpr double kPointsPerInch = 72;
// Width of the thinnest line on paper: about a quarter of a millimetre.
constexpr double kPaperLine = 0.9;
// Small pictures would look coarse in a document.
constexpr double kLeastPixelRatio = 2;

void Copy(Canvas& canvas) {
  canvas.form().host().clipboard.SetPicture(canvas.size(),
                                            [&](Surface& surface) { canvas.Paint(surface); });
}

QByteArray Encode(Canvas& canvas, std::string_view extension, double pixel_ratio) {
  if (extension == "svg") return QByteArray::fromStdString(CanvasAsSvg(canvas));
  if (extension == "pdf") return CanvasAsPdf(canvas, canvas.size());
  return CanvasAsPng(canvas, canvas.size(), std::max(pixel_ratio, kLeastPixelRatio));
}

void Save(CanvasWidget& widget, const char* extension, const char* description) {
  Canvas& canvas = *widget.canvas();
  FileQuestion question;
  question.save = true;
  question.title = "Save the picture";
  question.description = description;
  question.pattern = std::string("*.") + extension;
  question.suggested = canvas.form().caption() + "." + extension;
  canvas.form().host().dialogs.AskFile(
      question, [shown = QPointer<CanvasWidget>(&widget),
                 extension](const std::optional<std::filesystem::path>& path) {
        if (!path || shown == nullptr || shown->canvas() == nullptr) return;
        Canvas& saved = *shown->canvas();
        const QByteArray bytes = Encode(saved, extension, shown->devicePixelRatio());
        Host& host = saved.form().host();
        const Status written = host.files.Replace(
            *path, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        if (!written.ok()) host.dialogs.Message(written.why());
      });
}

void Print(CanvasWidget& widget) {
  auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
  printer->setPageOrientation(QPageLayout::Landscape);
  auto* dialog = new QPrintDialog(printer.get(), &widget);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QDialog::accepted, &widget, [&widget, printer] {
    if (Canvas* canvas = widget.canvas()) PrintCanvas(*canvas, canvas->size(), *printer);
  });
  // The printer must outlive the dialog, also when it is cancelled.
  QObject::connect(dialog, &QObject::destroyed, dialog->parent(), [printer] {});
  dialog->open();
}

void PaintScaled(Canvas& canvas, Size size, QPainter& painter, double scale) {
  painter.scale(scale, scale);
  QtSurface surface(painter, size, kPaperLine);
  canvas.Paint(surface);
}

}  // namespace

void ShowCanvasMenu(CanvasWidget& widget, const QPoint& at) {
  auto* menu = new QMenu(&widget);
  menu->setObjectName(widget.objectName() + QLatin1String(".menu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [&](const char* text, auto action) {
    QObject::connect(menu->addAction(QLatin1String(text)), &QAction::triggered, &widget,
                     [&widget, action] {
                       if (widget.canvas() != nullptr) action();
                     });
  };
  add("&Copy picture", [&widget] { Copy(*widget.canvas()); });
  menu->addSeparator();
  add("Save as P&NG...", [&widget] { Save(widget, "png", "PNG pictures"); });
  add("Save as &SVG...", [&widget] { Save(widget, "svg", "SVG pictures"); });
  add("Save as P&DF...", [&widget] { Save(widget, "pdf", "PDF documents"); });
  menu->addSeparator();
  add("&Print...", [&widget] { Print(widget); });
  menu->popup(at);
}

QByteArray CanvasAsPng(Canvas& canvas, Size size, double pixel_ratio) {
  const auto pixels = [pixel_ratio](double length) {
    return std::max(1, static_cast<int>(std::lround(length * pixel_ratio)));
  };
  QImage image(pixels(size.width), pixels(size.height), QImage::Format_RGB32);
  image.setDevicePixelRatio(pixel_ratio);
  image.fill(Qt::white);
  {
    RasterSurface surface(image);
    canvas.Paint(surface);
  }
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return buffer.data();
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
  return buffer.data();
}

void PrintCanvas(Canvas& canvas, Size size, QPrinter& printer) {
  QPainter painter;
  if (!painter.begin(&printer)) return;
  const QRectF page = printer.pageRect(QPrinter::DevicePixel);
  PaintScaled(canvas, size, painter,
              std::min(page.width() / size.width, page.height() / size.height));
}

}  // namespace zento
