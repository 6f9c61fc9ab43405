#pragma once

#include <filesystem>

#include "program/program_options.h"

namespace zento {

// Prints what a macro would do (see CheckMacro). Returns kExitOk when a run would be clean,
// kExitScriptLine when it would not, kExitFailure when it cannot be told.
int CheckMacroFile(const ProgramOptions& options, const std::filesystem::path& macro);

}  // namespace zento
