#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "program/bench_options.h"
#include "program/console_machine.h"
#include "sim/parameters.h"
#include "text/status.h"

namespace CLI {
class App;
}

namespace zento {

// What a program works with: its instruments, its home, its time.
struct SessionChoice {
  std::optional<sim::Parameters> simulated;  // not set: the instruments on this machine
  ConsoleMachine::Time time = ConsoleMachine::Time::kVirtual;
  std::filesystem::path home;  // empty: where the program's home is
};

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
  // The bench's parameters; fails on an unknown key or a bad value, and when some are given for
  // anything but the simulated bench.
  Result<sim::Parameters> BenchParameters() const;

  // For jobs that act: --bench must have been given, because data are never made up unasked.
  // Instruments know real time only; the simulated bench's is virtual unless said otherwise.
  Result<SessionChoice> Choose() const;

  const BenchOptions& bench_options() const { return bench_parameters_; }

 private:
  std::string bench_;
  std::string clock_;
  std::string home_;
  BenchOptions bench_parameters_;
};

}  // namespace zento
