#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "host/control.h"
#include "program/headless_program.h"

namespace zento {

// Where a script's output goes, one line at a time, without the line end.
struct ScriptOutput {
  std::function<void(std::string_view)> print;  // what the script asked for
  std::function<void(std::string_view)> note;   // what a person should know besides
};

enum class ScriptEnd {
  kCompleted,    // all lines were carried out
  kFailed,       // a line could not be; why was noted with the line's number
  kInterrupted,  // the program was asked to end
};

// Does what a person does with windows, one action a line; see Help for the lines. Forms and
// controls are found by their names, so every window there is can be driven.
//
// After each line everything that is due by then has run: answers are delivered, forms have gone.
class ScriptDriver {
 public:
  // `interrupted` is asked before every line; empty = never.
  ScriptDriver(HeadlessProgram& program, ScriptOutput output,
               std::function<bool()> interrupted = {});

  ScriptEnd Run(std::string_view text);

  // How long "wait idle" waits when the line does not say, so that a run in virtual time that never
  // ends does not hold the machine for ever.
  std::int64_t idle_limit_micros = std::int64_t{72} * 3600 * 1'000'000;

  // One line a verb, for --help.
  static std::string Help();

 private:
  struct Verb;
  static std::span<const Verb> Verbs();

  Status Carry(std::string_view line);
  Status Open(std::string_view rest);
  Status Close(std::string_view rest);
  Status Set(std::string_view rest);
  Status Type(std::string_view rest);
  Status PressKeyIn(std::string_view rest);
  Status Click(std::string_view rest);
  Status Up(std::string_view rest);
  Status Down(std::string_view rest);
  Status Get(std::string_view rest);
  Status Answer(std::string_view rest);
  Status Wait(std::string_view rest);
  Status Messages(std::string_view rest);
  Status Mails(std::string_view rest);
  Status ClipboardLine(std::string_view rest);
  Status Plot(std::string_view rest);

  // A note that begins with the line's number.
  void NoteHere(const std::string& text);
  Status WaitIdle(std::int64_t limit_micros);
  Status Step(std::string_view rest, int direction);
  // The control named by the next word of `rest`, which is taken off.
  Result<Control*> TakeControl(std::string_view& rest);
  // Runs `action` unless the control cannot be used now, which is noted.
  Status Act(Control& control, const std::function<Status()>& action);
  void NoteUnanswered();
  void PrintLines(std::string_view text);

  HeadlessProgram& program_;
  Host& host_;
  ScriptOutput output_;
  std::function<bool()> interrupted_;
  int line_ = 0;  // from 1; 0 outside Run
  bool interrupted_in_wait_ = false;
};

}  // namespace zento
