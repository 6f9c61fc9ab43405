#include "qt/action_bindings.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include "qt/qt_text.h"

namespace zento {
namespace {

constexpr int kArrowWidth = 20;
constexpr int kRepeatDelayMs = 400;
constexpr int kRepeatMs = 90;

}  // namespace

ButtonBinding::ButtonBinding(Button& button, BindingContext& context)
    : ControlBinding(button, context), button_(button), push_(new QPushButton) {
  Name(*push_);
  // Enter presses the button that has the focus.
  push_->setAutoDefault(true);
  push_->setDefault(button.is_default);
  push_->setFocusPolicy(Qt::StrongFocus);
  connect(push_, &QPushButton::clicked, this, [this] { Press(); });
}

void ButtonBinding::Press() {
  Act([this] { return button_.UserClick(); });
}

void ButtonBinding::Show() {
  const QString caption = PlainCaption(button_.caption());
  if (push_->text() != caption) push_->setText(caption);
}

UpDownBinding::UpDownBinding(UpDown& up_down, BindingContext& context)
    : ControlBinding(up_down, context), up_down_(up_down), pair_(new QWidget) {
  Name(*pair_);
  auto* rows = new QVBoxLayout(pair_);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(Arrow(Qt::UpArrow, ".up", +1));
  rows->addWidget(Arrow(Qt::DownArrow, ".down", -1));
  pair_->setFixedHeight(QLineEdit().sizeHint().height());
  pair_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QToolButton* UpDownBinding::Arrow(Qt::ArrowType type, const char* suffix, int direction) {
  auto* arrow = new QToolButton;
  const QString name = ToQt(up_down_.Address()) + QLatin1String(suffix);
  arrow->setObjectName(name);
  arrow->setAccessibleName(name);
  arrow->setArrowType(type);
  arrow->setFocusPolicy(Qt::NoFocus);
  arrow->setFixedWidth(kArrowWidth);
  arrow->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
  arrow->setAutoRepeat(true);
  arrow->setAutoRepeatDelay(kRepeatDelayMs);
  arrow->setAutoRepeatInterval(kRepeatMs);
  connect(arrow, &QToolButton::clicked, this, [this, direction] { Step(direction); });
  return arrow;
}

void UpDownBinding::Step(int direction) {
  Act([this, direction] { return up_down_.UserStep(direction); });
}

}  // namespace zento
