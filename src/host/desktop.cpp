#include "host/desktop.h"

#include <algorithm>
#include <utility>

#include "host/timer.h"
#include "host/timer_queue.h"

namespace zento {

Desktop::~Desktop() {
  *alive_ = false;
  while (!loaded_.empty()) {
    // Last loaded, first destroyed.
    Entry entry = std::move(loaded_.back());
    loaded_.pop_back();
  }
}

void Desktop::Register(std::string name, Factory factory) {
  factories_.insert_or_assign(std::move(name), std::move(factory));
}

bool Desktop::Knows(std::string_view name) const {
  return factories_.find(name) != factories_.end();
}

Form* Desktop::Find(std::string_view name) const {
  for (const Entry& entry : loaded_) {
    if (entry.form->name() == name) return entry.form.get();
  }
  return nullptr;
}

Form* Desktop::Load(std::string_view name) {
  if (Form* form = Find(name)) return form;
  const auto factory = factories_.find(name);
  if (factory == factories_.end()) return nullptr;
  loaded_.push_back({factory->second(), false});
  Form* form = loaded_.back().form.get();
  if (form->Load()) return form;
  const auto refused = std::find_if(loaded_.begin(), loaded_.end(),
                                    [&](const Entry& entry) { return entry.form.get() == form; });
  if (refused != loaded_.end()) loaded_.erase(refused);
  return nullptr;
}

Form* Desktop::Show(std::string_view name) {
  Form* form = Load(name);
  if (form == nullptr) return nullptr;
  for (Entry& entry : loaded_) {
    if (entry.form.get() == form) entry.shown = true;
  }
  if (view_ != nullptr) {
    view_->FormShown(*form);
  } else {
    form->Activate();
  }
  return form;
}

bool Desktop::Shown(std::string_view name) const {
  return std::any_of(loaded_.begin(), loaded_.end(),
                     [&](const Entry& entry) { return entry.shown && entry.form->name() == name; });
}

void Desktop::RequestClose(std::string_view name) {
  if (Form* form = Find(name)) form->CloseRequested();
}

void Desktop::Unload(std::string_view name) {
  const auto found = std::find_if(loaded_.begin(), loaded_.end(),
                                  [&](const Entry& entry) { return entry.form->name() == name; });
  if (found == loaded_.end()) return;
  std::unique_ptr<Form> form = std::move(found->form);
  loaded_.erase(found);
  for (Control* control : form->controls()) {
    if (auto* timer = dynamic_cast<Timer*>(control)) timer->SetEnabled(false);
  }
  form->Unload();
  if (view_ != nullptr) view_->FormUnloaded(*form);
  form->SetView(nullptr);
  leaving_.push_back(std::move(form));
  timers_.Post([this, alive = alive_] {
    if (*alive) leaving_.clear();
  });
}

std::vector<Form*> Desktop::Loaded() const {
  std::vector<Form*> forms;
  forms.reserve(loaded_.size());
  for (const Entry& entry : loaded_) forms.push_back(entry.form.get());
  return forms;
}

}  // namespace zento
