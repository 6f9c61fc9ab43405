#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <vector>

#include "host/controls.h"
#include "qt/control_binding.h"

class QButtonGroup;

namespace zento {

class CheckBinding final : public ControlBinding {
 public:
  CheckBinding(CheckBox& box, BindingContext& context);
  QWidget& widget() override { return *check_; }

 protected:
  void Show() override;

 private:
  CheckBox& box_;
  QCheckBox* check_;
};

// One radio button an option, named "OpnCVMeas(0)" and so on.
class OptionBinding final : public ControlBinding {
 public:
  OptionBinding(OptionGroup& group, BindingContext& context);
  QWidget& widget() override { return *box_; }
  std::vector<QWidget*> TabStops() override;
  void GiveFocus() override;

 protected:
  void Show() override;

 private:
  OptionGroup& group_;
  QWidget* box_;
  QButtonGroup* exclusive_;
  std::vector<QRadioButton*> radios_;
};

class ComboBinding final : public ControlBinding {
 public:
  ComboBinding(ComboBox& combo, BindingContext& context);
  QWidget& widget() override { return *list_; }

 protected:
  void Show() override;

 private:
  ComboBox& combo_;
  QComboBox* list_;
  std::vector<std::string> shown_;
};

}  // namespace zento
