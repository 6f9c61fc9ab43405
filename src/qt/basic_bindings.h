#pragma once

#include <memory>
#include <vector>

#include "host/controls.h"
#include "qt/control_binding.h"

class QPushButton;

namespace zento {

// The controls that one widget shows, or a few side by side: buttons, arrows, boxes to check and to
// choose from, the progress bar.

class ButtonBinding final : public ControlBinding {
 public:
  ButtonBinding(Button& button, BindingContext& context);
  QWidget& widget() override;
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
  QWidget* Arrow(Qt::ArrowType type, const char* suffix, int direction);
  UpDown& up_down_;
  QWidget* pair_;
};

std::unique_ptr<ControlBinding> Bind(CheckBox& box, BindingContext& context);
// One radio button an option, named "OpnCVMeas(0)" and so on.
std::unique_ptr<ControlBinding> Bind(OptionGroup& group, BindingContext& context);
std::unique_ptr<ControlBinding> Bind(ComboBox& combo, BindingContext& context);
std::unique_ptr<ControlBinding> Bind(ProgressBar& bar, BindingContext& context);

}  // namespace zento
