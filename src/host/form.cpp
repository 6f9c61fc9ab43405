#include "host/form.h"

#include <utility>

#include "host/desktop.h"
#include "host/host.h"

namespace zento {

Form::Form(Host& host, std::string name, std::string caption)
    : host_(host), name_(std::move(name)), caption_(std::move(caption)) {}

Form::~Form() = default;

void Form::SetCaption(std::string caption) {
  caption_ = std::move(caption);
  if (view_ != nullptr) view_->CaptionChanged(*this);
}

void Form::CloseRequested() {
  host_.desktop.Unload(name_);
}

void Form::RequestGeometry(const Geometry& geometry) {
  geometry_ = geometry;
  if (view_ != nullptr) view_->GeometryRequested(*this);
}

Control* Form::Find(std::string_view name, int index) const {
  for (Control* control : controls_) {
    if (control->name() == name && control->index() == index) return control;
  }
  return nullptr;
}

void Form::Focus(Control& control) {
  if (view_ != nullptr) view_->FocusRequested(control);
}

void Form::ControlChanged(Control& control) {
  if (view_ != nullptr) view_->ControlChanged(control);
}

}  // namespace zento
