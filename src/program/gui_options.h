#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "sim/parameters.h"

namespace zento {

// What the graphical program was asked for.
struct GuiOptions {
  // Set: the person's choice between the simulated bench and the instruments on this machine. Not
  // set: to be asked for.
  std::optional<bool> simulated;
  std::filesystem::path home;  // empty = where the program looks for it
  sim::Parameters bench;

  // Set: print it and end with `exit_status` instead of starting (help, version, bad options).
  std::optional<std::string> answer;
  int exit_status = 0;
};

// `arguments` in UTF-8, the program's name first.
GuiOptions ParseGuiOptions(const std::vector<std::string>& arguments);

}  // namespace zento
