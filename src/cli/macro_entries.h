#pragma once

#include <array>
#include <string_view>

namespace zento {

// Where the arguments of a macro command stand in its window once it was carried out: what a check
// compares with what was asked for.
struct MacroEntry {
  std::string_view command;
  const char* form;
  // A control for each argument, null behind the last; "NAME" or element 0, 1, 2 of an array.
  std::array<const char*, 3> controls;
  bool array = false;
  // The window goes on with another value of its own after each run.
  bool moves_on = false;
};

// Null when the command sets no number.
const MacroEntry* FindMacroEntry(std::string_view command);

}  // namespace zento
