#include "qt/basic_bindings.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <string>

#include "qt/qt_text.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr int kArrowWidth = 20;
constexpr int kRepeatDelayMs = 400;
constexpr int kRepeatMs = 90;
constexpr int kVisibleItems = 20;

class CheckBinding final : public ControlBinding {
 public:
  CheckBinding(CheckBox& box, BindingContext& context)
      : ControlBinding(box, context), box_(box), check_(new QCheckBox) {
    Name(*check_);
    // The widget has toggled itself by then; Show puts it to what the control makes of the click.
    connect(check_, &QCheckBox::clicked, this,
            [this] { Act([this] { return box_.UserClick(); }); });
  }
  QWidget& widget() override { return *check_; }

 protected:
  void Show() override {
    const QString caption = PlainCaption(box_.caption());
    if (check_->text() != caption) check_->setText(caption);
    // Only the program sets the third state, so only then does the widget have one.
    const bool partial = box_.value() == 2;
    check_->setTristate(partial);
    check_->setCheckState(partial             ? Qt::PartiallyChecked
                          : box_.value() == 1 ? Qt::Checked
                                              : Qt::Unchecked);
  }

 private:
  CheckBox& box_;
  QCheckBox* check_;
};

class OptionBinding final : public ControlBinding {
 public:
  OptionBinding(OptionGroup& group, BindingContext& context)
      : ControlBinding(group, context),
        group_(group),
        box_(new QWidget),
        exclusive_(new QButtonGroup(box_)) {
    Name(*box_);
    auto* rows = new QVBoxLayout(box_);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(4);
    for (const std::string& caption : group.items()) {
      const int index = static_cast<int>(radios_.size());
      auto* radio = new QRadioButton(PlainCaption(caption));
      Name(*radio, QStringLiteral("(%1)").arg(index));
      exclusive_->addButton(radio, index);
      rows->addWidget(radio);
      radios_.push_back(radio);
      connect(radio, &QRadioButton::clicked, this,
              [this, index] { Act([this, index] { return group_.UserChoose(index); }); });
    }
    box_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  }
  QWidget& widget() override { return *box_; }
  std::vector<QWidget*> TabStops() override { return {radios_.begin(), radios_.end()}; }
  void GiveFocus() override {
    if (radios_.empty()) return;
    const int chosen = group_.selected();
    radios_[static_cast<std::size_t>(chosen < 0 ? 0 : chosen)]->setFocus(Qt::OtherFocusReason);
  }

 protected:
  void Show() override {
    const int chosen = group_.selected();
    // An exclusive group cannot have nothing chosen.
    exclusive_->setExclusive(chosen >= 0);
    for (std::size_t i = 0; i < radios_.size(); ++i) {
      radios_[i]->setChecked(static_cast<int>(i) == chosen);
    }
  }

 private:
  OptionGroup& group_;
  QWidget* box_;
  QButtonGroup* exclusive_;
  std::vector<QRadioButton*> radios_;
};

// Scrolling a window must not change a setting that happens to lie under the pointer.
class CalmComboBox : public QComboBox {
 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

class ComboBinding final : public ControlBinding {
 public:
  ComboBinding(ComboBox& combo, BindingContext& context)
      : ControlBinding(combo, context), combo_(combo), list_(new CalmComboBox) {
    Name(*list_);
    list_->setMaxVisibleItems(kVisibleItems);
    connect(list_, &QComboBox::activated, this,
            [this](int index) { Act([this, index] { return combo_.UserChoose(index); }); });
  }
  QWidget& widget() override { return *list_; }

 protected:
  void Show() override {
    const QSignalBlocker quiet(list_);
    if (shown_ != combo_.items()) {
      shown_ = combo_.items();
      list_->clear();
      for (const std::string& item : shown_) list_->addItem(ToQt(item));
    }
    if (list_->currentIndex() != combo_.selected()) list_->setCurrentIndex(combo_.selected());
  }

 private:
  ComboBox& combo_;
  QComboBox* list_;
  std::vector<std::string> shown_;
};

class ProgressBinding final : public ControlBinding {
 public:
  ProgressBinding(ProgressBar& bar, BindingContext& context)
      : ControlBinding(bar, context), bar_(bar), shown_(new QProgressBar) {
    Name(*shown_);
  }
  QWidget& widget() override { return *shown_; }
  std::vector<QWidget*> TabStops() override { return {}; }

 protected:
  void Show() override {
    // A toolkit bar of range 0 means "busy"; an empty range means nothing done here.
    shown_->setRange(0, bar_.maximum() > 0 ? bar_.maximum() : 1);
    shown_->setValue(bar_.position());
  }

 private:
  ProgressBar& bar_;
  QProgressBar* shown_;
};

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

QWidget& ButtonBinding::widget() {
  return *push_;
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

QWidget* UpDownBinding::Arrow(Qt::ArrowType type, const char* suffix, int direction) {
  auto* arrow = new QToolButton;
  Name(*arrow, QLatin1String(suffix));
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

std::unique_ptr<ControlBinding> Bind(CheckBox& box, BindingContext& context) {
  return std::make_unique<CheckBinding>(box, context);
}
std::unique_ptr<ControlBinding> Bind(OptionGroup& group, BindingContext& context) {
  return std::make_unique<OptionBinding>(group, context);
}
std::unique_ptr<ControlBinding> Bind(ComboBox& combo, BindingContext& context) {
  return std::make_unique<ComboBinding>(combo, context);
}
std::unique_ptr<ControlBinding> Bind(ProgressBar& bar, BindingContext& context) {
  return std::make_unique<ProgressBinding>(bar, context);
}

}  // namespace zento
