#include "qt/text_bindings.h"

#include <QEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QSignalBlocker>

#include "qt/action_bindings.h"
#include "qt/qt_text.h"

namespace zento {
namespace {

// Opening a menu or going to another program is not leaving the box; going to another window of
// this program is.
bool IsLeave(const QFocusEvent& event) {
  switch (event.reason()) {
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
      return false;
    case Qt::ActiveWindowFocusReason:
      return QGuiApplication::focusWindow() != nullptr;
    default:
      return true;
  }
}

}  // namespace

LabelBinding::LabelBinding(Label& label, BindingContext& context)
    : ControlBinding(label, context), label_(label), shown_(new TextLabel) {
  Name(*shown_);
}

void LabelBinding::Show() {
  shown_->SetTip(ToQt(label_.tip()));
  shown_->setText(ToQt(label_.text()));
}

void TextBinding::Typed(const QString& text) {
  if (gone()) return;
  edited_ = true;
  left_ = false;
  static_cast<void>(box_.UserType(FromQt(text)));
  Refresh();
}

void TextBinding::Leave() {
  if (gone()) return;
  edited_ = false;
  box_.UserLeave();
  Refresh();
}

void TextBinding::Commit() {
  if (gone() || !edited_) return;
  left_ = true;
  Leave();
}

bool TextBinding::eventFilter(QObject* watched, QEvent* event) {
  if (!gone() && event->type() == QEvent::FocusOut && IsLeave(*static_cast<QFocusEvent*>(event))) {
    if (!std::exchange(left_, false)) Leave();
  }
  if (!gone() && event->type() == QEvent::KeyPress) {
    const auto& press = *static_cast<QKeyEvent*>(event);
    const QString text = press.text();
    if (KeyPressed(press.key(), text.isEmpty() ? 0 : text.at(0).unicode())) return true;
  }
  return QObject::eventFilter(watched, event);
}

bool TextBinding::SendKey(KeyCode code, char32_t character) {
  if (!box_.on_key) return false;
  static_cast<void>(box_.UserKey({code, character}));
  if (!gone()) Refresh();
  return true;
}

// The text box handles the key as well, except for those that have no meaning in it.
bool TextBinding::KeyPressed(int key, char32_t) {
  switch (key) {
    case Qt::Key_Delete:
      SendKey(KeyCode::kDelete);
      return gone();
    case Qt::Key_Backspace:
      SendKey(KeyCode::kBackspace);
      return gone();
    case Qt::Key_Escape:
      SendKey(KeyCode::kEscape);
      return gone();
    default:
      return false;
  }
}

LineBinding::LineBinding(TextBox& box, BindingContext& context)
    : TextBinding(box, context), edit_(new QLineEdit) {
  Name(*edit_);
  edit_->installEventFilter(this);
  connect(edit_, &QLineEdit::textEdited, this, [this](const QString& text) { Typed(text); });
}

void LineBinding::SetStepper(UpDownBinding& stepper) {
  stepper_ = &stepper;
}

void LineBinding::GiveFocus() {
  edit_->setFocus(Qt::OtherFocusReason);
  edit_->selectAll();
}

void LineBinding::Show() {
  ShowReadOnly(*edit_);
  const QString text = ToQt(box().text());
  if (edit_->text() == text) return;
  const int cursor = edit_->cursorPosition();
  edit_->setText(text);
  edit_->setCursorPosition(edit_->hasFocus() ? cursor : 0);
}

bool LineBinding::KeyPressed(int key, char32_t character) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // A box that handles Enter itself keeps it; else it accepts the entry and presses the
      // window's default button.
      if (SendKey(KeyCode::kEnter)) return true;
      Commit();
      return gone();
    case Qt::Key_Up:
      if (stepper_ == nullptr) return SendKey(KeyCode::kUp);
      stepper_->Step(+1);
      return true;
    case Qt::Key_Down:
      if (stepper_ == nullptr) return SendKey(KeyCode::kDown);
      stepper_->Step(-1);
      return true;
    default:
      return TextBinding::KeyPressed(key, character);
  }
}

}  // namespace zento
