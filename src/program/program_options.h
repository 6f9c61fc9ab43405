#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "program/headless_program.h"
#include "sim/parameters.h"
#include "text/status_fwd.h"

namespace CLI {
class App;
}

namespace zento {

// The options --bench, --home, --bench-set and --seed, which both programs take.
class ProgramOptions {
 public:
  // `app` keeps a reference to this object. `unsaid` tells what holds without --bench.
  void AddTo(CLI::App& app, const std::string& unsaid);
  // The command-line program's own --clock.
  void AddClockTo(CLI::App& app);

  // Whether --bench was given, and how; nothing without it.
  std::optional<bool> simulated() const;
  std::filesystem::path home() const;
  // The simulated bench's parameters with what was given; fails on an unknown key or a bad value.
  Result<sim::Parameters> CellParameters() const;
  // The same; fails when some are given for anything but the simulated bench, too.
  Result<sim::Parameters> BenchParameters() const;

  // What a program works with: its instruments, its time, its home (empty: where it looks for it).
  // For jobs that act: --bench must have been given, because data are never made up unasked.
  // Instruments know real time only; the simulated bench's is virtual unless said otherwise.
  Result<HeadlessOptions> Choose() const;

 private:
  std::string bench_;
  std::string clock_;
  std::string home_;
  std::optional<std::uint64_t> seed_;
  std::vector<std::string> assignments_;  // KEY=VALUE
};

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
