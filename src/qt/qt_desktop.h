#pragma once

#include <QPointer>
#include <map>

#include "host/desktop.h"
#include "qt/form_window.h"

namespace zento {

// One window for each form that has been shown.
class QtDesktop : public DesktopView {
 public:
  ~QtDesktop() override;
  void FormShown(Form& form) override;
  void FormHidden(Form& form) override;
  void FormUnloaded(Form& form) override;
  // Null while the form has not been shown.
  FormWindow* WindowOf(const Form& form) const;

 private:
  std::map<const Form*, QPointer<FormWindow>> windows_;
};

}  // namespace zento
