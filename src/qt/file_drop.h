#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace zento {

class FileTarget;

// Hands files that a person drops anywhere on a window to a form that takes them, also over boxes
// that would take their names as text. Only files of this machine count; other drags go on to the
// widgets.
class FileDrop : public QObject {
 public:
  // `before` runs first, as before any action of the window. Watches `window` and what it holds
  // now; `target` is asked who takes them, null once the form has gone.
  FileDrop(QWidget& window, std::function<FileTarget*()> target, std::function<void()> before);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<FileTarget*()> target_;
  std::function<void()> before_;
};

}  // namespace zento
