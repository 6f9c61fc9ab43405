#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "macro/follow_macro.h"

namespace zento {

// What a dry run of a macro found out.
struct MacroCheck {
  // A measurement or a wait.
  struct Step {
    int line = 0;
    std::int64_t begins = 0;  // ms after the macro's start
    std::int64_t takes = 0;   // ms
    bool measurement = false;
    bool by_sample = false;  // ended by charge or by the measured rate: another cell, another time
    std::string what;
  };
  struct Finding {
    int line = 0;
    bool problem = true;  // false: worth knowing only
    std::string text;
  };
  struct Written {
    int track = 0;
    std::vector<int> lines;  // more than one: only the last one's points stay
  };

  std::vector<Step> steps;
  std::vector<Finding> findings;
  std::vector<Written> tracks;  // by number
  std::int64_t total = 0;       // ms, measurements begun by the last line included
  MacroVerdict verdict;

  // Every line would be carried out as it is written, and nothing would have to be said.
  bool Clean() const;
};

// Runs a macro on a program that has just been started in virtual time on a simulated bench, and
// notes, line by line, what a person would want to know before the night. What starting the program
// already showed counts as well. A measurement of more than 72 hours does not end.
MacroCheck CheckMacroOn(const UnattendedProgram& program, std::string_view text,
                        const std::string& title);

// For a person, lines ended by "\n".
std::string FormatCheck(const MacroCheck& check);

}  // namespace zento
