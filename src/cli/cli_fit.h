#pragma once

#include "program/program_options.h"

namespace zento {

// Adds the command `fit`; exit statuses as of the analysis commands.
void AddFitCommand(CLI::App& app, int& exit_status);

}  // namespace zento
