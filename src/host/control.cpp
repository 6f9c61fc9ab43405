#include "host/control.h"

#include <utility>

#include "host/form.h"

namespace zento {

Control::Control(Form& form, std::string name, int index)
    : form_(form), name_(std::move(name)), index_(index) {
  form_.Register(*this);
}

Control::~Control() = default;

std::string Control::Address() const {
  return index_ < 0 ? name_ : name_ + "(" + std::to_string(index_) + ")";
}

void Control::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Changed();
}

void Control::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  Changed();
}

void Control::SetTip(std::string tip) {
  tip_ = std::move(tip);
  Changed();
}

Status Control::UserSet(const std::string&) {
  return Status::Failure(Address() + " cannot be set");
}
Status Control::UserType(const std::string&) {
  return Status::Failure(Address() + " takes no text");
}
Status Control::UserKey(Key) {
  return Status::Failure(Address() + " takes no keys");
}
Status Control::UserClick() {
  return Status::Failure(Address() + " cannot be clicked");
}
Status Control::UserClickCell(int, int) {
  return Status::Failure(Address() + " has no cells");
}
Status Control::UserStep(int) {
  return Status::Failure(Address() + " has no steps");
}

void Control::Changed() {
  form_.ControlChanged(*this);
}

}  // namespace zento
