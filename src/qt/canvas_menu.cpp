#include "qt/canvas_menu.h"

#include <QAction>
#include <QByteArray>
#include <QMenu>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <memory>
#include <string_view>

#include "host/host.h"
#include "qt/canvas_export.h"
#include "qt/canvas_widget.h"
#include "qt/qt_text.h"

namespace zento {
namespace {

// Small pictures would look coarse in a document.
constexpr double kLeastPixelRatio = 2;

void Copy(Canvas& canvas) {
  canvas.form().host().clipboard.SetPicture(canvas.size(),
                                            [&](Surface& surface) { canvas.Paint(surface); });
}

QByteArray Encode(Canvas& canvas, std::string_view extension, double pixel_ratio) {
  if (extension == "svg") return CanvasAsSvg(canvas, canvas.size());
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

}  // namespace zento
