#pragma once

#include "program/program_options.h"

namespace CLI {
class App;
}

namespace zento {

// The commands that put tracks into track files, and the one that looks for them.
void AddTrackCommands(CLI::App& app, const ProgramOptions& options, int& exit_status);

}  // namespace zento
