#include "qt/control_binding.h"

#include <QWidget>

#include "host/canvas.h"
#include "qt/basic_bindings.h"
#include "qt/canvas_widget.h"
#include "qt/qt_text.h"
#include "qt/table_bindings.h"
#include "qt/text_bindings.h"

namespace zento {

void ControlBinding::AttachLabel(QWidget& label) {
  label_ = &label;
}

void ControlBinding::GiveFocus() {
  widget().setFocus(Qt::OtherFocusReason);
}

void ControlBinding::Name(QWidget& widget, const QString& suffix) const {
  const QString address = ToQt(control_.Address()) + suffix;
  widget.setObjectName(address);
  widget.setAccessibleName(address);
}

void ControlBinding::Refresh() {
  if (gone_) return;
  QWidget& shown = widget();
  const QString tip = ToQt(control_.tip());
  if (shown.toolTip() != tip) {
    shown.setToolTip(tip);
    shown.setAccessibleDescription(tip);
  }
  if (shown.isHidden() == control_.visible()) shown.setVisible(control_.visible());
  if (label_ != nullptr && label_->isHidden() == control_.visible()) {
    label_->setVisible(control_.visible());
  }
  if (shown.isEnabled() != control_.enabled()) shown.setEnabled(control_.enabled());
  Show();
}

std::unique_ptr<ControlBinding> MakeBinding(Control& control, BindingContext& context) {
  switch (control.Kind()) {
    case ControlKind::kLabel:
      return Bind(dynamic_cast<Label&>(control), context);
    case ControlKind::kTextBox: {
      auto& box = dynamic_cast<TextBox&>(control);
      if (box.multiline) return BindMemo(box, context);
      return std::make_unique<LineBinding>(box, context);
    }
    case ControlKind::kButton:
      return std::make_unique<ButtonBinding>(dynamic_cast<Button&>(control), context);
    case ControlKind::kOptionGroup:
      return Bind(dynamic_cast<OptionGroup&>(control), context);
    case ControlKind::kCheckBox:
      return Bind(dynamic_cast<CheckBox&>(control), context);
    case ControlKind::kComboBox:
      return Bind(dynamic_cast<ComboBox&>(control), context);
    case ControlKind::kUpDown:
      return std::make_unique<UpDownBinding>(dynamic_cast<UpDown&>(control), context);
    case ControlKind::kGrid:
      if (auto* edit = dynamic_cast<EditGrid*>(&control)) {
        return std::make_unique<EditGridBinding>(*edit, context);
      }
      return Bind(dynamic_cast<Grid&>(control), context);
    case ControlKind::kListBox:
      return Bind(dynamic_cast<ListBox&>(control), context);
    case ControlKind::kCanvas:
      return Bind(dynamic_cast<Canvas&>(control), context);
    case ControlKind::kProgressBar:
      return Bind(dynamic_cast<ProgressBar&>(control), context);
    case ControlKind::kMenuItem:
    case ControlKind::kTimer:
      break;
  }
  return nullptr;
}

}  // namespace zento
