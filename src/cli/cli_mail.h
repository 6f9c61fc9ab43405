#pragma once

#include <string>

#include "program/program_options.h"

namespace zento {

// Sends a mail with the settings of the home and prints what became of it. Returns the exit status.
int SendTestMail(const ProgramOptions& options, const std::string& address);

}  // namespace zento
