#pragma once

#include <QFrame>
#include <QPalette>
#include <QString>
#include <memory>

#include "host/controls.h"
#include "qt/control_binding.h"

class QLineEdit;

namespace zento {

class UpDownBinding;

// One or more lines of text that change often. Unlike QLabel it does not ask for a new layout at
// every change: it only ever asks for more room, so a counting value does not make the window
// tremble. What is wider than the room is cut with an ellipsis and shown whole as the tool tip.
class TextLabel : public QFrame {
  Q_OBJECT
  Q_PROPERTY(QString text READ text WRITE setText)

 public:
  explicit TextLabel(QWidget* parent = nullptr);
  const QString& text() const { return text_; }
  void setText(const QString& text);  // NOLINT(readability-identifier-naming): a Qt property
  // The hint that stands before the text when that is cut.
  void SetTip(const QString& tip);

  QSize sizeHint() const override { return wanted_; }
  QSize minimumSizeHint() const override { return wanted_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Grow();
  void ShowTip();
  QString text_;
  QString tip_;
  QSize wanted_;
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
  QWidget& widget() override;
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

std::unique_ptr<ControlBinding> Bind(Label& label, BindingContext& context);
// A box of several lines. What the program changes is edited into the shown text where it differs,
// so that a person's undo, scroll position and colours stay.
std::unique_ptr<ControlBinding> BindMemo(TextBox& box, BindingContext& context);

}  // namespace zento
