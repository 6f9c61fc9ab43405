#include "program/program_options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <sstream>

#include "host/path_text.h"

namespace zento {
namespace {

GuiOptions Refuse(const std::string& why) {
  GuiOptions options;
  options.answer = "zento: " + why + "\n";
  options.exit_status = 1;
  return options;
}

}  // namespace

void ProgramOptions::AddTo(CLI::App& app, const std::string& unsaid) {
  app.add_option("--bench", bench_,
                 "sim: the simulated bench; hardware: the instruments on this machine. " + unsaid)
      ->check(CLI::IsMember({"sim", "hardware"}));
  app.add_option("--home", home_,
                 "folder of settings, calibration and logs; without it the program's own folder "
                 "when it holds a Parameters.txt, else the user's data folder");
  app.add_option("--seed", seed_, "seed of the simulated bench's noise");
  app.add_option("--bench-set", assignments_,
                 "KEY=VALUE, changes a parameter of the simulated bench; may be repeated. "
                 "zento-cli bench lists them")
      ->take_all()
      ->allow_extra_args(false);
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

Result<sim::Parameters> ProgramOptions::CellParameters() const {
  sim::Parameters parameters;
  for (const std::string& assignment : assignments_) {
    if (Status set = sim::SetFromText(parameters, assignment); !set.ok()) return set;
  }
  if (seed_) {
    const Status set = sim::Set(parameters, "seed", std::to_string(*seed_));
    if (!set.ok()) return set;
  }
  return parameters;
}

Result<sim::Parameters> ProgramOptions::BenchParameters() const {
  if (bench_ != "sim" && (seed_ || !assignments_.empty())) {
    return Status::Failure("--bench-set and --seed are for --bench sim");
  }
  return CellParameters();
}

Result<HeadlessOptions> ProgramOptions::Choose() const {
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
  HeadlessOptions choice;
  if (on_bench) choice.program.simulated = parameters.value();
  choice.program.home = home();
  const bool real = clock_.empty() ? !on_bench : clock_ == "real";
  choice.time = real ? HeadlessOptions::Time::kReal : HeadlessOptions::Time::kVirtual;
  return choice;
}

GuiOptions ParseGuiOptions(const std::vector<std::string>& arguments) {
  ProgramOptions given;
  CLI::App app("Zento, a workstation for electrochemical measurements.", "zento");
  app.set_version_flag("--version", std::string("zento ") + ZENTO_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  given.AddTo(app, "Without it the program asks");
  try {
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    if (!reversed.empty()) reversed.pop_back();
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    if (app.exit(error, out, err) != 0) return Refuse(error.what());
    GuiOptions options;
    options.answer = out.str();
    return options;
  }
  GuiOptions options;
  options.home = given.home();
  options.simulated = given.simulated();
  const auto bench = given.BenchParameters();
  if (!bench.ok()) return Refuse(bench.why());
  options.bench = bench.value();
  return options;
}

}  // namespace zento
