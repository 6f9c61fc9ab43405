#include "qt/text_bindings.h"

#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <algorithm>
#include <utility>

#include "qt/basic_bindings.h"
#include "qt/qt_text.h"
#include "text/status.h"

namespace zento {
namespace {

// Of a label, in average characters. A text longer than this does not widen the window.
constexpr int kWidest = 44;

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

class LabelBinding final : public ControlBinding {
 public:
  LabelBinding(Label& label, BindingContext& context)
      : ControlBinding(label, context), label_(label), shown_(new TextLabel) {
    Name(*shown_);
  }
  QWidget& widget() override { return *shown_; }
  std::vector<QWidget*> TabStops() override { return {}; }

 protected:
  void Show() override {
    shown_->SetTip(ToQt(label_.tip()));
    shown_->setText(ToQt(label_.text()));
  }

 private:
  Label& label_;
  TextLabel* shown_;
};

}  // namespace

TextLabel::TextLabel(QWidget* parent) : QFrame(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  Grow();
}

void TextLabel::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  Grow();
  ShowTip();
  update();
}

void TextLabel::SetTip(const QString& tip) {
  tip_ = tip;
  ShowTip();
}

void TextLabel::Grow() {
  const QFontMetrics metrics(font());
  const QSize text = metrics.size(0, text_);
  const QSize now(std::min(text.width() + 2, metrics.averageCharWidth() * kWidest),
                  std::max(text.height(), metrics.height()));
  const QSize wanted = wanted_.expandedTo(now);
  if (wanted == wanted_) return;
  wanted_ = wanted;
  updateGeometry();
}

void TextLabel::ShowTip() {
  const bool cut = QFontMetrics(font()).size(0, text_).width() > width();
  setToolTip(!cut ? tip_ : tip_.isEmpty() ? text_ : tip_ + QLatin1Char('\n') + text_);
}

void TextLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QFontMetrics metrics(font());
  QStringList lines = text_.split(QLatin1Char('\n'));
  for (QString& line : lines) line = metrics.elidedText(line, Qt::ElideRight, width());
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        lines.join(QLatin1Char('\n')), foregroundRole());
}

void TextLabel::resizeEvent(QResizeEvent*) {
  ShowTip();
}

void TextLabel::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::FontChange) Grow();
}

std::unique_ptr<ControlBinding> Bind(Label& label, BindingContext& context) {
  return std::make_unique<LabelBinding>(label, context);
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

QWidget& LineBinding::widget() {
  return *edit_;
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
      // A box that handles Enter itself keeps it; else what was typed counts and the window's
      // default button is pressed.
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
