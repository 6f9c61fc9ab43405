#pragma once

#include "program/program_options.h"

namespace zento {

// Adds a command for every analysis window; the one that is called sets `exit_status`: kExitOk with
// the report on standard output, kExitScriptLine when the window refused (its message is on
// standard error), kExitFailure when the file cannot be read or an option makes no sense. All
// arguments outlive the parsing.
void AddAnalysisCommands(CLI::App& app, const ProgramOptions& options, int& exit_status);

}  // namespace zento
