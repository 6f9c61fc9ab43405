#include "qt/file_drop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <filesystem>
#include <utility>
#include <vector>

#include "host/file_target.h"
#include "qt/qt_text.h"

namespace zento {
namespace {

std::vector<std::filesystem::path> LocalFiles(const QMimeData* data) {
  std::vector<std::filesystem::path> files;
  if (data == nullptr || !data->hasUrls()) return files;
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile()) files.push_back(PathFromQt(url.toLocalFile()));
  }
  return files;
}

}  // namespace

FileDrop::FileDrop(QWidget& window, std::function<FileTarget*()> target,
                   std::function<void()> before)
    : QObject(&window), target_(std::move(target)), before_(std::move(before)) {
  window.setAcceptDrops(true);
  window.installEventFilter(this);
  for (QWidget* widget : window.findChildren<QWidget*>()) widget->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) {
    return QObject::eventFilter(watched, event);
  }
  auto* drop = static_cast<QDropEvent*>(event);  // drags are drops too
  const std::vector<std::filesystem::path> files = LocalFiles(drop->mimeData());
  if (files.empty() || target_() == nullptr) return QObject::eventFilter(watched, event);
  // The files are read, whatever the file manager would rather have done with them.
  drop->setDropAction(Qt::CopyAction);
  drop->accept();
  if (type == QEvent::Drop) {
    before_();
    if (FileTarget* target = target_()) target->FilesDropped(files);
  }
  return true;
}

}  // namespace zento
