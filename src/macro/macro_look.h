#pragma once

#include <string_view>

#include "host/controls.h"

namespace zento {

// How the editor shows a line of a macro: commands, numbers and comments coloured, and the message
// with which a run would refuse it. `number` counts from 1.
LineLook LookOfMacroLine(std::string_view line, int number);

// What helps with the line at the caret: that message, else how its command is written.
std::string HelpForMacroLine(std::string_view line, int number);

}  // namespace zento
