#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

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
  void SetStepper(UpDownBinding& stepper) { stepper_ = &stepper; }

 protected:
  void Show() override;
  bool KeyPressed(int key, char32_t character) override;

 private:
  QLineEdit* edit_;
  QPointer<UpDownBinding> stepper_;
};

class MemoBinding final : public TextBinding {
 public:
  MemoBinding(TextBox& box, BindingContext& context);
  QWidget& widget() override { return *edit_; }
  bool Tall() const override { return true; }

 protected:
  void Show() override;

 private:
  QPlainTextEdit* edit_;
};

}  // namespace zento
