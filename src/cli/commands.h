#pragma once

#include "program/program_options.h"

// The commands of zento-cli, each with its job beside it. One that is called sets `exit_status`,
// see CliExit; all arguments outlive the parsing. A new command is a function here and a call in
// cli.cpp.

namespace zento {

// script: a script's lines against the whole program.
void AddScriptCommand(CLI::App& app, const ProgramOptions& options, int& exit_status);
// run and check: a macro carried out, and what it would do. However a run ends, the tracks are
// saved; kExitOk only when every line was carried out, every mail was sent and no message was
// shown.
void AddMacroCommands(CLI::App& app, const ProgramOptions& options, int& exit_status);
// A command for every analysis window: kExitOk with the report on standard output, kExitScriptLine
// when the window refused (its message is on standard error), kExitFailure when the file cannot be
// read or an option makes no sense.
void AddAnalysisCommands(CLI::App& app, const ProgramOptions& options, int& exit_status);
// fit: exit statuses as of the analysis commands.
void AddFitCommand(CLI::App& app, int& exit_status);
// verify: kExitOk only when every quantity was found within its tolerance.
void AddVerifyCommand(CLI::App& app, int& exit_status);

}  // namespace zento
