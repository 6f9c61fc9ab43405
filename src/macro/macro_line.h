#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/controls.h"
#include "macro/command_table.h"

namespace zento {

// One line of a macro, read. Reading depends on nothing but the line: the interpreter, the marks of
// the editor and the check on the command line see the same.
struct MacroLine {
  enum class Kind {
    kNothing,  // empty, or a comment (an apostrophe comes first)
    kCommand,  // can be carried out
    kUnknown,  // there is no such command: a run says so and goes on
    kRefused,  // too few arguments, or one out of its range: ends a run
  };
  Kind kind = Kind::kNothing;
  std::string_view name;                  // the first word
  const MacroCommand* command = nullptr;  // kCommand and kRefused
  std::vector<MacroArgument> arguments;   // kCommand: as many as the command converts
};

// Blanks around the line are trimmed; words stand between single blanks, so two blanks in a row
// have an empty word between them. `line` must outlive what is returned and hold no line end.
MacroLine ReadMacroLine(std::string_view line);

// What a run would say about the line when it stands in line `number` (from 1): " 3line Syntax
// error:CV.Title Title". Empty when nothing.
std::string MacroLineMessage(const MacroLine& line, int number);

// The same for a command whose window this program does not have.
std::string MissingWindowMessage(std::string_view command, int number);

// How the editor shows a line of a macro: commands, numbers and comments coloured, and the message
// with which a run would refuse it. `number` counts from 1.
LineLook LookOfMacroLine(std::string_view line, int number);

// What helps with the line at the caret: that message, else how its command is written.
std::string HelpForMacroLine(std::string_view line, int number);

}  // namespace zento
