#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "cli/macro_job.h"
#include "host/services.h"
#include "sim/parameters.h"
#include "text/status.h"

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

struct CheckQuestion {
  std::string text;            // of the macro
  std::string title;           // for messages
  std::filesystem::path home;  // its settings and calibration are read, nothing is written
  sim::Parameters cell;        // what the simulated bench measures
};

// Runs a macro in virtual time on a simulated bench, with the settings of the home, or those of a
// fresh bench when there are none. Instruments that the settings name are taken to be there and to
// work; the generator is taken to listen at the address that is set, and without one
// the potentiostat to sweep by itself. No file is written, no mail
// sent, no instrument touched. Fails when the program does not start with these settings.
Result<MacroCheck> CheckMacro(const CheckQuestion& question, Files& files);

// For a person, lines ended by "\n".
std::string FormatCheck(const MacroCheck& check);

}  // namespace zento
