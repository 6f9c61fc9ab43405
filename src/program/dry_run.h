#pragma once

#include <filesystem>
#include <string>

#include "host/services.h"
#include "macro/check.h"
#include "program/headless_program.h"
#include "sim/parameters.h"
#include "text/status_fwd.h"

namespace zento {

// A headless program for a macro to run on. `program` must outlive what is returned.
UnattendedProgram Unattended(HeadlessProgram& program);

struct CheckQuestion {
  std::string text;            // of the macro
  std::string title;           // for messages
  std::filesystem::path home;  // its settings and calibration are read, nothing is written
  sim::Parameters cell;        // what the simulated bench measures
};

// Runs a macro in virtual time on a simulated bench, with the settings of the home, or those of a
// fresh bench when there are none. Instruments that the settings name are taken to be there and to
// work; the generator is taken to listen at the address that is set, and without one the
// potentiostat to sweep by itself. No file is written, no mail sent, no instrument touched. Fails
// when the program does not start with these settings.
Result<MacroCheck> CheckMacro(const CheckQuestion& question, Files& files);

}  // namespace zento
