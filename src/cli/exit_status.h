#pragma once

namespace zento {

// Exit statuses of the command-line program; 128 + the signal's number when a signal ended it.
enum CliExit {
  kExitOk = 0,
  kExitFailure = 1,     // wrong options, a file that cannot be read, a home in use
  kExitScriptLine = 2,  // a line of a script or macro could not be carried out
};

}  // namespace zento
