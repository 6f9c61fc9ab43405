#pragma once

#include <QPushButton>
#include <QToolButton>

#include "host/controls.h"
#include "qt/control_binding.h"

namespace zento {

class ButtonBinding final : public ControlBinding {
 public:
  ButtonBinding(Button& button, BindingContext& context);
  QWidget& widget() override { return *push_; }
  // As a click, without moving the focus.
  void Press();

 protected:
  void Show() override;

 private:
  Button& button_;
  QPushButton* push_;
};

// Two arrows, one above the other.
class UpDownBinding final : public ControlBinding {
 public:
  UpDownBinding(UpDown& up_down, BindingContext& context);
  QWidget& widget() override { return *pair_; }
  // The arrow keys of the box beside it do the same.
  std::vector<QWidget*> TabStops() override { return {}; }
  void Step(int direction);

 protected:
  void Show() override {}

 private:
  QToolButton* Arrow(Qt::ArrowType type, const char* suffix, int direction);
  UpDown& up_down_;
  QWidget* pair_;
};

}  // namespace zento
