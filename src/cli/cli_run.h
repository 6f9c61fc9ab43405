#pragma once

#include <filesystem>

#include "program/program_options.h"

namespace zento {

struct MacroRequest {
  std::filesystem::path macro;
  std::filesystem::path load;  // tracks to begin with; empty = none
  std::filesystem::path save;  // empty = where unsaved tracks go: into the home
  std::filesystem::path log;   // gets what the run log gets; empty = none
  bool overwrite = false;      // `save` may replace a file that was not loaded
};

// Carries out a macro on the whole program and ends it safely; progress goes to standard error.
// However it ends, the tracks are saved. Returns the exit status: kExitOk only when every line was
// carried out, every mail was sent and no message was shown.
int RunMacro(const HeadlessOptions& choice, const MacroRequest& request);

}  // namespace zento
