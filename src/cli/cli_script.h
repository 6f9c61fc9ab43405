#pragma once

#include <filesystem>

#include "program/program_options.h"

namespace zento {

// Runs a script ("-": standard input) against the whole program and ends it safely. Returns the
// exit status.
int RunScript(const HeadlessOptions& choice, const std::filesystem::path& script);

}  // namespace zento
