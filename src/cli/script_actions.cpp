#include <functional>
#include <string>

#include "cli/script.h"
#include "cli/script_keys.h"
#include "cli/script_words.h"
#include "host/controls.h"

// The verbs that act on windows and their controls.

namespace zento {

Status ScriptDriver::Open(std::string_view rest) {
  const std::string_view name = TakeWord(rest);
  if (!host_.desktop.Knows(name)) {
    return Status::Failure("there is no form '" + std::string(name) + "'");
  }
  if (host_.desktop.Show(name) == nullptr) {
    NoteHere(std::string(name) + " did not open");
  }
  return Status::Ok();
}

Status ScriptDriver::Close(std::string_view rest) {
  const std::string_view name = TakeWord(rest);
  if (host_.desktop.Find(name) == nullptr) {
    return Status::Failure("no form '" + std::string(name) + "' is open");
  }
  host_.desktop.RequestClose(name);
  return Status::Ok();
}

Result<Control*> ScriptDriver::TakeControl(std::string_view& rest) {
  const std::string word(TakeWord(rest));
  const auto address = ParseControlAddress(word);
  if (!address) return Status::Failure("'" + word + "' is not FORM.CONTROL");
  const Form* form = host_.desktop.Find(address->form);
  if (form == nullptr) {
    const bool known = host_.desktop.Knows(address->form);
    return Status::Failure((known ? "no form '" : "there is no form '") + address->form +
                           (known ? "' is open" : "'"));
  }
  Control* control = form->Find(address->control, address->index);
  if (control == nullptr) return Status::Failure("there is no control '" + word + "'");
  return control;
}

Status ScriptDriver::Act(Control& control, const std::function<Status()>& action) {
  if (control.Usable()) return action();
  NoteHere(control.form().name() + "." + control.Address() +
           (control.visible() ? " is disabled" : " is hidden"));
  return Status::Ok();
}

Status ScriptDriver::Set(std::string_view rest) {
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  return Act(*control.value(),
             [&] { return control.value()->UserSet(std::string(RestAsText(rest))); });
}

Status ScriptDriver::Type(std::string_view rest) {
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  const std::string text(RestAsText(rest));
  return Act(*control.value(), [&] {
    // Where the text is edited in place, typing goes on at the caret.
    auto* box = dynamic_cast<TextBox*>(control.value());
    if (box != nullptr && box->multiline) return box->UserInsert(text);
    return control.value()->UserType(text);
  });
}

Status ScriptDriver::PressKeyIn(std::string_view rest) {
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  const std::string_view name = TakeWord(rest);
  const auto key = ParseKey(name);
  if (!key) return Status::Failure("there is no key '" + std::string(name) + "'");
  return Act(*control.value(), [&] { return PressKey(*control.value(), *key); });
}

Status ScriptDriver::Click(std::string_view rest) {
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  const std::string_view first = TakeWord(rest);
  if (first.empty()) return Act(*control.value(), [&] { return control.value()->UserClick(); });
  const auto row = ParseIndex(first);
  const auto column = ParseIndex(TakeWord(rest));
  if (!row || !column) return Status::Failure("a cell is two numbers: ROW COLUMN");
  return Act(*control.value(), [&] { return control.value()->UserClickCell(*row, *column); });
}

Status ScriptDriver::Up(std::string_view rest) {
  return Step(rest, +1);
}

Status ScriptDriver::Down(std::string_view rest) {
  return Step(rest, -1);
}

Status ScriptDriver::Step(std::string_view rest, int direction) {
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  return Act(*control.value(), [&] { return control.value()->UserStep(direction); });
}

Status ScriptDriver::Get(std::string_view rest) {
  std::string_view word = rest;
  const std::string_view name = TakeWord(word);
  if (const Form* form = host_.desktop.Find(name)) {
    output_.print(form->caption());
    return Status::Ok();
  }
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  PrintLines(control.value()->Value());
  return Status::Ok();
}

}  // namespace zento
