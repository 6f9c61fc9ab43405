#pragma once

#include "program/program_options.h"

namespace zento {

// Adds the command `verify`; when it is called, it sets `exit_status`: kExitOk only when every
// quantity was found within its tolerance.
void AddVerifyCommand(CLI::App& app, int& exit_status);

}  // namespace zento
