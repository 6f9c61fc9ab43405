#include "host/desktop.h"

#include <algorithm>
#include <utility>

#include "host/controls.h"
#include "host/timer_queue.h"

namespace zento {
namespace {

void StopTimers(const Form& form) {
  for (Control* control : form.controls()) {
    if (auto* timer = dynamic_cast<Timer*>(control)) timer->SetEnabled(false);
  }
}

}  // namespace

Desktop::~Desktop() {
  *alive_ = false;
  // Last loaded, first destroyed.
  while (!loaded_.empty()) {
    const LoadedForm loaded = std::move(loaded_.back());
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
  for (const LoadedForm& loaded : loaded_) {
    if (loaded.form->name() == name) return loaded.form.get();
  }
  return nullptr;
}

Form* Desktop::Load(std::string_view name) {
  if (Form* form = Find(name)) return form;
  const auto factory = factories_.find(name);
  if (factory == factories_.end()) return nullptr;
  loaded_.push_back({factory->second(), false});
  Form* form = loaded_.back().form.get();
  const bool willing = form->Load();
  // A form may have unloaded itself while it loaded.
  const auto found = Locate(*form);
  if (found == loaded_.end()) return nullptr;
  if (willing) return form;
  Retire(Remove(found));
  return nullptr;
}

Form* Desktop::Show(std::string_view name) {
  Form* form = Load(name);
  if (form == nullptr) return nullptr;
  Locate(*form)->shown = true;
  if (view_ != nullptr) {
    view_->FormShown(*form);
  } else {
    form->Activate();
  }
  return Locate(*form) != loaded_.end() ? form : nullptr;
}

std::vector<Desktop::LoadedForm>::iterator Desktop::Locate(const Form& form) {
  return std::find_if(loaded_.begin(), loaded_.end(),
                      [&](const LoadedForm& loaded) { return loaded.form.get() == &form; });
}

bool Desktop::Shown(std::string_view name) const {
  return std::any_of(loaded_.begin(), loaded_.end(), [&](const LoadedForm& loaded) {
    return loaded.shown && loaded.form->name() == name;
  });
}

void Desktop::Hide(std::string_view name) {
  for (LoadedForm& loaded : loaded_) {
    if (loaded.form->name() != name || !loaded.shown) continue;
    loaded.shown = false;
    if (view_ != nullptr) view_->FormHidden(*loaded.form);
    return;
  }
}

void Desktop::RequestClose(std::string_view name) {
  if (Form* form = Find(name)) form->CloseRequested();
}

void Desktop::Unload(std::string_view name) {
  Form* found = Find(name);
  if (found == nullptr) return;
  std::unique_ptr<Form> form = Remove(Locate(*found));
  StopTimers(*form);
  form->Unload();
  Retire(std::move(form));
}

std::unique_ptr<Form> Desktop::Remove(std::vector<LoadedForm>::iterator loaded) {
  std::unique_ptr<Form> form = std::move(loaded->form);
  loaded_.erase(loaded);
  return form;
}

void Desktop::Retire(std::unique_ptr<Form> form) {
  StopTimers(*form);
  if (view_ != nullptr) view_->FormUnloaded(*form);
  form->SetView(nullptr);
  leaving_.push_back(std::move(form));
  timers_.Post([this, alive = alive_] {
    if (!*alive) return;
    // Moved out first: a form's destructor may unload another one.
    const auto gone = std::exchange(leaving_, {});
  });
}

void Desktop::Clear() {
  while (!loaded_.empty()) Unload(loaded_.back().form->name());
  const auto gone = std::exchange(leaving_, {});
  factories_.clear();
}

std::vector<Form*> Desktop::Loaded() const {
  std::vector<Form*> forms;
  forms.reserve(loaded_.size());
  for (const LoadedForm& loaded : loaded_) forms.push_back(loaded.form.get());
  return forms;
}

}  // namespace zento
