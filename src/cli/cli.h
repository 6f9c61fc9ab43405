#pragma once

#include <string>
#include <vector>

namespace zento {

// The command-line program. `arguments` in UTF-8, the program's name first. Returns the exit
// status, see CliExit.
int RunCli(const std::vector<std::string>& arguments);

}  // namespace zento
