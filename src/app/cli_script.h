#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "app/console_machine.h"
#include "sim/parameters.h"

namespace zento {

struct ScriptJob {
  std::optional<sim::Parameters> simulated;  // not set: the instruments on this machine
  ConsoleMachine::Time time = ConsoleMachine::Time::kVirtual;
  std::filesystem::path home;    // empty: where the program's home is
  std::filesystem::path script;  // "-": standard input
};

// Runs a script against the whole program and ends it safely. Returns the exit status.
int RunScript(const ScriptJob& job);

}  // namespace zento
