#include "cli/script.h"

#include <algorithm>
#include <span>
#include <utility>

#include "cli/script_words.h"
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

ScriptDriver::ScriptDriver(Workstation& workstation, Host& host, VirtualDialogs& dialogs,
                           EventLoop& loop, ScriptOutput output, std::function<bool()> interrupted)
    : workstation_(workstation),
      host_(host),
      dialogs_(dialogs),
      loop_(loop),
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
  loop_.Settle();
  return done;
}

void ScriptDriver::NoteHere(const std::string& text) {
  output_.note("line " + std::to_string(line_) + ": " + text);
}

void ScriptDriver::NoteUnanswered() {
  for (const std::string& question : std::exchange(dialogs_.unanswered, {})) {
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

}  // namespace zento
