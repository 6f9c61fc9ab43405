#pragma once

#include <QLineEdit>
#include <QPalette>

#include "host/controls.h"
#include "qt/control_binding.h"
#include "qt/text_label.h"

namespace zento {

class UpDownBinding;

class LabelBinding final : public ControlBinding {
 public:
  LabelBinding(Label& label, BindingContext& context);
  QWidget& widget() override { return *shown_; }
  std::vector<QWidget*> TabStops() override { return {}; }

 protected:
  void Show() override;

 private:
  Label& label_;
  TextLabel* shown_;
};

// What both kinds of text boxes share: when a person leaves one, and which keys it is told of.
class TextBinding : public ControlBinding {
 public:
  TextBinding(TextBox& box, BindingContext& context) : ControlBinding(box, context), box_(box) {}
  void Commit() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void Typed(const QString& text);
  TextBox& box() const { return box_; }
  // True: the key goes no further.
  virtual bool KeyPressed(int key, char32_t character);
  bool SendKey(KeyCode code, char32_t character = 0);
  // A box that cannot be typed in does not look as if it could.
  template <typename Edit>
  void ShowReadOnly(Edit& edit) const {
    if (edit.isReadOnly() == box_.read_only) return;
    edit.setReadOnly(box_.read_only);
    QPalette palette;
    if (box_.read_only) palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    edit.setPalette(palette);
  }

 private:
  void Leave();
  TextBox& box_;
  bool edited_ = false;  // typed in since the box was last left
  bool left_ = false;    // left without the focus having moved, and nothing typed since
};

class LineBinding final : public TextBinding {
 public:
  LineBinding(TextBox& box, BindingContext& context);
  QWidget& widget() override { return *edit_; }
  void GiveFocus() override;
  // The arrow keys step it.
  void SetStepper(UpDownBinding& stepper);

 protected:
  void Show() override;
  bool KeyPressed(int key, char32_t character) override;

 private:
  QLineEdit* edit_;
  QPointer<UpDownBinding> stepper_;
};

}  // namespace zento
