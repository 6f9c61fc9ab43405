#include "cli/script.h"

#include <algorithm>
#include <utility>

#include "cli/script_words.h"
#include "graph/svg_surface.h"
#include "host/canvas.h"
#include "host/controls.h"
#include "host/desktop.h"
#include "host/path_text.h"
#include "text/codepage.h"
#include "text/lines.h"

namespace zento {

struct ScriptDriver::Verb {
  std::string_view name;
  std::string_view arguments;
  std::string_view help;
  Status (ScriptDriver::*act)(std::string_view rest);
};

std::span<const ScriptDriver::Verb> ScriptDriver::Verbs() {
  static constexpr Verb kVerbs[] = {
      {"open", "FORM", "load and show a window, by its name", &ScriptDriver::Open},
      {"close", "FORM", "close a window", &ScriptDriver::Close},
      {"set", "FORM.CONTROL VALUE",
       "replace a text and leave its box; choose an option or entry by index; check 0, 1 or 2",
       &ScriptDriver::Set},
      {"type", "FORM.CONTROL TEXT",
       "replace a text without leaving its box; among several lines, type at the caret",
       &ScriptDriver::Type},
      {"key", "FORM.CONTROL KEY",
       "press Enter, Escape, Delete, Backspace, Up, Down, Left, Right, Tab or a character",
       &ScriptDriver::PressKeyIn},
      {"click", "FORM.CONTROL [ROW COLUMN]", "click a button, menu entry, check box or grid cell",
       &ScriptDriver::Click},
      {"up", "FORM.CONTROL", "one step up of an up-down control", &ScriptDriver::Up},
      {"down", "FORM.CONTROL", "one step down", &ScriptDriver::Down},
      {"get", "FORM.CONTROL", "print a control's text or value; FORM alone prints its caption",
       &ScriptDriver::Get},
      {"answer", "TEXT",
       "queue the answer to the next question: yes, no, ok, cancel, a text or a path",
       &ScriptDriver::Answer},
      {"wait", "idle [LIMIT] | 2.5s",
       "let time pass until no run and no macro is active (for LIMIT at most; in virtual time 72h "
       "if not said) "
       "/ for so long",
       &ScriptDriver::Wait},
      {"messages", "", "print the message boxes shown since the last time, and forget them",
       &ScriptDriver::Messages},
      {"mails", "",
       "print the mails sent since the last time, and forget them; in virtual time, where they are "
       "kept",
       &ScriptDriver::Mails},
      {"clipboard", "[set FILE]", "print the clipboard's text / fill it with a file's",
       &ScriptDriver::ClipboardLine},
      {"plot", "FORM.CONTROL FILE.svg", "write what a graph or preview shows", &ScriptDriver::Plot},
  };
  return kVerbs;
}

ScriptDriver::ScriptDriver(HeadlessProgram& program, ScriptOutput output,
                           std::function<bool()> interrupted)
    : program_(program),
      host_(program.host()),
      output_(std::move(output)),
      interrupted_(std::move(interrupted)) {}

ScriptEnd ScriptDriver::Run(std::string_view text) {
  const std::string decoded = DecodeFile(text);
  LineReader lines(decoded);
  std::string_view line;
  for (line_ = 1; lines.Next(line); ++line_) {
    if (interrupted_ && interrupted_()) return ScriptEnd::kInterrupted;
    const Status done = Carry(line);
    NoteUnanswered();
    if (interrupted_in_wait_) return ScriptEnd::kInterrupted;
    if (done.ok()) continue;
    NoteHere(done.why());
    return ScriptEnd::kFailed;
  }
  return ScriptEnd::kCompleted;
}

Status ScriptDriver::Carry(std::string_view line) {
  std::string_view rest = line;
  const std::string_view name = TakeWord(rest);
  if (name.empty() || name.front() == '#') return Status::Ok();
  const auto verb = std::ranges::find(Verbs(), name, &Verb::name);
  if (verb == Verbs().end()) return Status::Failure("there is no verb '" + std::string(name) + "'");
  Status done = (this->*verb->act)(rest);
  program_.loop().Settle();
  return done;
}

void ScriptDriver::NoteHere(const std::string& text) {
  output_.note("line " + std::to_string(line_) + ": " + text);
}

void ScriptDriver::NoteUnanswered() {
  for (const std::string& question : std::exchange(program_.dialogs().unanswered, {})) {
    NoteHere("no answer was queued for '" + question + "'; taken as cancelled");
  }
}

void ScriptDriver::PrintLines(std::string_view text) {
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = text.find('\n', begin);
    std::string_view line = text.substr(begin, end == text.npos ? text.npos : end - begin);
    if (line.ends_with('\r')) line.remove_suffix(1);
    output_.print(line);
    if (end == text.npos) return;
    begin = end + 1;
  }
}

std::string ScriptDriver::Help() {
  std::string help;
  for (const Verb& verb : Verbs()) {
    help.append("  ").append(verb.name);
    if (!verb.arguments.empty()) help.append(" ").append(verb.arguments);
    help.append("\n      ").append(verb.help).append("\n");
  }
  return help;
}

// The verbs that act on windows and their controls.

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

// The verbs that stand for the person and the machine around the windows: answers, time, messages,
// clipboard, pictures.

Status ScriptDriver::Answer(std::string_view rest) {
  program_.dialogs().Answer(std::string(RestAsText(rest)));
  return Status::Ok();
}

Status ScriptDriver::Messages(std::string_view) {
  for (std::string& text : program_.dialogs().TakeMessages()) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    output_.print(text);
  }
  return Status::Ok();
}

Status ScriptDriver::Mails(std::string_view) {
  MemoryMail* const kept = program_.kept_mails();
  if (kept == nullptr) return Status::Failure("mails are kept in virtual time only");
  kept->Finish();
  for (const MailMessage& mail : kept->TakeSent()) {
    output_.print("To: " + mail.display_name + " <" + mail.address + ">");
    output_.print("Subject: " + mail.subject);
    PrintLines(mail.text);
  }
  return Status::Ok();
}

Status ScriptDriver::ClipboardLine(std::string_view rest) {
  const std::string_view word = TakeWord(rest);
  if (word.empty()) {
    PrintLines(host_.clipboard.Text());
    return Status::Ok();
  }
  if (word != "set") return Status::Failure("clipboard takes nothing, or: set FILE");
  const auto bytes = host_.files.Read(PathFromText(RestAsText(rest)));
  if (!bytes.ok()) return bytes.status();
  host_.clipboard.SetText(DecodeFile(bytes.value()));
  return Status::Ok();
}

Status ScriptDriver::Plot(std::string_view rest) {
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  auto* canvas = dynamic_cast<Canvas*>(control.value());
  if (canvas == nullptr) return Status::Failure(control.value()->Address() + " is no picture");
  const std::string file(RestAsText(rest));
  if (file.empty()) return Status::Failure("plot takes FORM.CONTROL FILE.svg");
  return host_.files.Replace(PathFromText(file), CanvasAsSvg(*canvas));
}

Status ScriptDriver::Wait(std::string_view rest) {
  const std::string_view word = TakeWord(rest);
  if (word != "idle") {
    const auto micros = ParseDuration(word);
    if (!micros) return Status::Failure("wait takes: idle, or a time such as 2.5s");
    interrupted_in_wait_ = program_.loop().RunFor(*micros) == Waited::kInterrupted;
    return Status::Ok();
  }
  const std::string_view limit = TakeWord(rest);
  if (limit.empty()) return WaitIdle(idle_limit_micros);
  const auto micros = ParseDuration(limit);
  if (!micros) return Status::Failure("'" + std::string(limit) + "' is no time such as 600s");
  return WaitIdle(*micros);
}

Status ScriptDriver::WaitIdle(std::int64_t limit_micros) {
  const auto idle = [&workstation = program_.workstation()] {
    return workstation.running_flag == 0 && !workstation.macro_active;
  };
  switch (program_.loop().RunUntil(idle, limit_micros)) {
    case Waited::kDone:
      return Status::Ok();
    case Waited::kInterrupted:
      interrupted_in_wait_ = true;
      return Status::Ok();
    case Waited::kNothingArmed:
      return Status::Failure("a run is active, but no timer is left that could end it");
    case Waited::kTimeout:
      break;
  }
  return Status::Failure("the run did not end within the time allowed");
}

}  // namespace zento
