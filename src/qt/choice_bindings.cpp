#include "qt/choice_bindings.h"

#include <QButtonGroup>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "qt/qt_text.h"

namespace zento {
namespace {

// Scrolling a window must not change a setting that happens to lie under the pointer.
class CalmComboBox : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

Qt::CheckState ToCheckState(int value) {
  if (value == 2) return Qt::PartiallyChecked;
  return value == 1 ? Qt::Checked : Qt::Unchecked;
}

}  // namespace

CheckBinding::CheckBinding(CheckBox& box, BindingContext& context)
    : ControlBinding(box, context), box_(box), check_(new QCheckBox) {
  Name(*check_);
  // The widget has toggled itself by then; Show puts it to what the control makes of the click.
  connect(check_, &QCheckBox::clicked, this, [this] { Act([this] { return box_.UserClick(); }); });
}

void CheckBinding::Show() {
  const QString caption = PlainCaption(box_.caption());
  if (check_->text() != caption) check_->setText(caption);
  // Only the program sets the third state, so only then does the widget have one.
  check_->setTristate(box_.value() == 2);
  check_->setCheckState(ToCheckState(box_.value()));
}

OptionBinding::OptionBinding(OptionGroup& group, BindingContext& context)
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
    const QString name = ToQt(group.Address()) + QStringLiteral("(%1)").arg(index);
    radio->setObjectName(name);
    radio->setAccessibleName(name);
    exclusive_->addButton(radio, index);
    rows->addWidget(radio);
    radios_.push_back(radio);
    connect(radio, &QRadioButton::clicked, this,
            [this, index] { Act([this, index] { return group_.UserChoose(index); }); });
  }
  box_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

std::vector<QWidget*> OptionBinding::TabStops() {
  return {radios_.begin(), radios_.end()};
}

void OptionBinding::GiveFocus() {
  if (radios_.empty()) return;
  const int chosen = group_.selected();
  radios_[static_cast<std::size_t>(chosen < 0 ? 0 : chosen)]->setFocus(Qt::OtherFocusReason);
}

void OptionBinding::Show() {
  const int chosen = group_.selected();
  // An exclusive group cannot have nothing chosen.
  exclusive_->setExclusive(chosen >= 0);
  for (std::size_t i = 0; i < radios_.size(); ++i) {
    radios_[i]->setChecked(static_cast<int>(i) == chosen);
  }
}

ComboBinding::ComboBinding(ComboBox& combo, BindingContext& context)
    : ControlBinding(combo, context), combo_(combo), list_(new CalmComboBox) {
  Name(*list_);
  list_->setMaxVisibleItems(20);
  connect(list_, &QComboBox::activated, this,
          [this](int index) { Act([this, index] { return combo_.UserChoose(index); }); });
}

void ComboBinding::Show() {
  const QSignalBlocker quiet(list_);
  if (shown_ != combo_.items()) {
    shown_ = combo_.items();
    list_->clear();
    for (const std::string& item : shown_) list_->addItem(ToQt(item));
  }
  if (list_->currentIndex() != combo_.selected()) list_->setCurrentIndex(combo_.selected());
}

}  // namespace zento
