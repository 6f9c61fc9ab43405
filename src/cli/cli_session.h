#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "program/headless_program.h"
#include "program/home.h"
#include "text/status_fwd.h"

namespace zento {

// The whole program as the command line works with it: home held, machine and windows there, and a
// safe end whatever happens. What a person should know goes to standard error.
class CliSession {
 public:
  // Takes the home for `who` and starts the program in it. When that fails, all is ended again.
  static Result<std::unique_ptr<CliSession>> Open(const HeadlessOptions& choice,
                                                  std::string_view who);

  HeadlessProgram& program() { return program_; }

  // Runs `act`; what it throws is noted, and false is returned: whatever goes wrong inside, what is
  // switched on must be switched off.
  bool Guarded(const std::function<void()>& act);

  // See MainProgram::EndSafely. False when the tracks are not where they were asked for.
  bool EndSafely(const TracksAtEnd& tracks);

 private:
  CliSession(HeldHome home, const HeadlessOptions& options);

  HeldHome home_;
  HeadlessProgram program_;
};

}  // namespace zento
