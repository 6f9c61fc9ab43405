#pragma once

#include <string>
#include <string_view>

#include "text/status_fwd.h"

namespace zento {

// Standard output, error and input, in UTF-8 and without translated line ends.

// To be called once, before anything is written.
void PrepareConsole();
void WriteOut(std::string_view text);
void WriteError(std::string_view line);  // adds the program's name and the line end
// Whether all that was written to standard output has got there.
Status FlushOut();
Result<std::string> ReadStandardInput();
// Notes a failure on standard error and returns the exit status for it.
int FailWith(const Status& status);

}  // namespace zento
