#include "qt/qt_desktop.h"

namespace zento {

QtDesktop::~QtDesktop() {
  for (auto& [form, window] : windows_) delete window.data();
}

void QtDesktop::FormShown(Form& form) {
  QPointer<FormWindow>& window = windows_[&form];
  if (window == nullptr) window = new FormWindow(form);
  window->Reveal();
}

void QtDesktop::FormHidden(Form& form) {
  if (FormWindow* window = WindowOf(form)) window->hide();
}

void QtDesktop::FormUnloaded(Form& form) {
  const auto found = windows_.find(&form);
  if (found == windows_.end()) return;
  // Perhaps from within a signal of one of the window's own widgets.
  const QPointer<FormWindow> window = found->second;
  windows_.erase(found);
  if (window == nullptr) return;
  window->Detach();
  window->deleteLater();
}

FormWindow* QtDesktop::WindowOf(const Form& form) const {
  const auto found = windows_.find(&form);
  return found == windows_.end() ? nullptr : found->second.data();
}

}  // namespace zento
