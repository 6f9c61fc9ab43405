#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "host/native/native_files.h"
#include "program/console_machine.h"
#include "program/home_setup.h"
#include "program/main_program.h"
#include "program/program_options.h"
#include "text/status.h"

namespace zento {

// Notes a failure on standard error and returns the exit status for it.
int FailWith(const Status& status);

// The whole program as the command line works with it: home held, machine and windows there, and a
// safe end whatever happens.
class CliSession {
 public:
  // Takes the home for `who` and starts the program in it. When that fails, all is ended again.
  static Result<std::unique_ptr<CliSession>> Open(const SessionChoice& choice,
                                                  std::string_view who);
  ~CliSession();

  ConsoleMachine& machine() { return *machine_; }
  Host& host() { return machine_->host(); }
  MainProgram& program() { return *program_; }
  Workstation& workstation() { return program_->workstation(); }

  // Runs `act`; what it throws is noted, and false is returned: whatever goes wrong inside, what is
  // switched on must be switched off.
  bool Guarded(const std::function<void()>& act);

  // Ends active runs safely and closes all windows; what was running and what the windows still
  // told is noted.
  void End();
  // Writes tracks that stand in no file to the home, and says so.
  void Rescue();

 private:
  CliSession() = default;

  HeldHome home_;
  std::unique_ptr<ConsoleMachine> machine_;
  std::unique_ptr<MainProgram> program_;
};

}  // namespace zento
