#include "program/program_options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "host/path_text.h"

namespace zento {

void ProgramOptions::AddTo(CLI::App& app, const std::string& unsaid) {
  app.add_option("--bench", bench_,
                 "sim: the simulated bench; hardware: the instruments on this machine. " + unsaid)
      ->check(CLI::IsMember({"sim", "hardware"}));
  app.add_option("--home", home_,
                 "folder of settings, calibration and logs; without it the program's own folder "
                 "when it holds a Parameters.txt, else the user's data folder");
  bench_parameters_.AddTo(app);
}

void ProgramOptions::AddClockTo(CLI::App& app) {
  app.add_option("--clock", clock_,
                 "virtual: time passes only in waits, as fast as the machine allows, from "
                 "2026-01-01 09:00 on, and mails are kept instead of sent (the simulated bench's "
                 "default); real: as on the wall")
      ->check(CLI::IsMember({"virtual", "real"}));
}

std::optional<bool> ProgramOptions::simulated() const {
  if (bench_.empty()) return std::nullopt;
  return bench_ == "sim";
}

std::filesystem::path ProgramOptions::home() const {
  return PathFromText(home_);
}

Result<sim::Parameters> ProgramOptions::BenchParameters() const {
  if (bench_ != "sim" && bench_parameters_.given()) {
    return Status::Failure("--bench-set and --seed are for --bench sim");
  }
  return bench_parameters_.Parameters();
}

Result<SessionChoice> ProgramOptions::Choose() const {
  if (bench_.empty()) {
    return Status::Failure(
        "say what to run on: --bench sim for the simulated bench, --bench hardware for the "
        "instruments on this machine");
  }
  const bool on_bench = bench_ == "sim";
  if (!on_bench && clock_ == "virtual") {
    return Status::Failure("instruments know only real time: --clock virtual is for --bench sim");
  }
  const auto parameters = BenchParameters();
  if (!parameters.ok()) return parameters.status();
  SessionChoice choice;
  if (on_bench) choice.simulated = parameters.value();
  choice.home = home();
  const bool real = clock_.empty() ? !on_bench : clock_ == "real";
  choice.time = real ? ConsoleMachine::Time::kReal : ConsoleMachine::Time::kVirtual;
  return choice;
}

}  // namespace zento
