#include "app/cli.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <sstream>

#include "app/bench_options.h"
#include "app/cli_script.h"
#include "app/console_text.h"
#include "app/home_setup.h"
#include "app/listings.h"
#include "app/script.h"
#include "core/settings_file.h"
#include "host/native/native_files.h"
#include "host/path_text.h"

namespace zento {
namespace {

// What was asked for, as texts.
struct Request {
  std::string bench;
  std::string clock;
  std::string home;
  BenchOptions bench_parameters;
  std::string file;
  int track = 0;
  bool headings = false;
};

int Fail(const Status& status) {
  WriteError(status.why());
  return kExitFailure;
}

int Print(const Result<std::string>& text) {
  if (!text.ok()) return Fail(text.status());
  WriteOut(text.value());
  return kExitOk;
}

int Script(const Request& request) {
  if (request.bench.empty()) {
    return Fail(Status::Failure(
        "say what the script is to run on: --bench sim for the simulated bench, --bench hardware "
        "for the instruments on this machine"));
  }
  ScriptJob job;
  job.script = PathFromText(request.file);
  job.home = PathFromText(request.home);
  const bool simulated = request.bench == "sim";
  if (simulated) {
    const auto parameters = request.bench_parameters.Parameters();
    if (!parameters.ok()) return Fail(parameters.status());
    job.simulated = parameters.value();
  } else if (request.clock == "virtual") {
    return Fail(
        Status::Failure("instruments know only real time: --clock virtual is for --bench sim"));
  } else if (request.bench_parameters.given()) {
    return Fail(Status::Failure("--bench-set and --seed are for --bench sim"));
  }
  const bool real = request.clock.empty() ? !simulated : request.clock == "real";
  job.time = real ? ConsoleMachine::Time::kReal : ConsoleMachine::Time::kVirtual;
  return RunScript(job);
}

int ListSettings(const Request& request) {
  const auto home = FindHome(PathFromText(request.home), request.bench == "sim");
  if (!home.ok()) return Fail(home.status());
  NativeFiles files;
  Workstation workstation;
  workstation.home = home.value();
  LoadSettings(workstation, files, [](const std::filesystem::path&) { return true; });
  if (!workstation.SettingsLoaded) ApplyDefaultSettings(workstation);
  WriteError((workstation.SettingsLoaded ? "settings of " : "built-in defaults; no settings in ") +
             TextFromPath(home.value()));
  return Print(SettingsListing(workstation.settings));
}

int ListBench(const Request& request) {
  const auto parameters = request.bench_parameters.Parameters();
  if (!parameters.ok()) return Fail(parameters.status());
  return Print(BenchListing(parameters.value()));
}

void AddOptions(CLI::App& app, Request& request) {
  app.add_option("--bench", request.bench,
                 "sim: the simulated bench; hardware: the instruments on this machine. A script "
                 "needs one of them: data are never made up unasked")
      ->check(CLI::IsMember({"sim", "hardware"}));
  app.add_option("--clock", request.clock,
                 "virtual: time passes only in the script's waits, as fast as the machine allows, "
                 "from 2026-01-01 09:00 on (the simulated bench's default); real: as on the wall")
      ->check(CLI::IsMember({"virtual", "real"}));
  app.add_option("--home", request.home,
                 "folder of settings, calibration and logs; without it the program's own folder "
                 "when it holds a Parameters.txt, else the user's data folder");
  request.bench_parameters.AddTo(app);
}

}  // namespace

int RunCli(const std::vector<std::string>& arguments) {
  PrepareConsole();
  Request request;
  int exit_status = kExitOk;
  CLI::App app(
      "Zento from the command line: drives the workstation's windows by their names, and "
      "looks into its files.",
      "zento-cli");
  app.set_version_flag("--version", std::string("zento-cli ") + ZENTO_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.require_subcommand(1);
  app.fallthrough();
  AddOptions(app, request);

  auto* script =
      app.add_subcommand("script", "do what a person does with the windows, a line each");
  script->add_option("FILE", request.file, "the script, - for standard input")->required();
  script->footer("A script's lines (# starts a comment):\n" + ScriptDriver::Help() +
                 "\nA line that cannot be carried out ends the script with exit status 2 and its "
                 "number on standard error. A run that is still active at the end is ended "
                 "safely.");
  script->callback([&] { exit_status = Script(request); });

  auto* bench = app.add_subcommand("bench", "list the simulated bench's parameters");
  bench->callback([&] { exit_status = ListBench(request); });

  NativeFiles files;
  auto* info = app.add_subcommand("info", "print the information sheets of a track file");
  info->add_option("FILE", request.file, "a track file (.znt)")->required();
  info->callback([&] { exit_status = Print(TrackFileSheets(files, PathFromText(request.file))); });

  auto* table = app.add_subcommand("table", "print a track's points as tab-separated text");
  table->add_option("FILE", request.file, "a track file (.znt)")->required();
  table->add_option("--track", request.track, "number of the track")
      ->required()
      ->check(CLI::Range(0, kTracks - 1));
  table->add_flag("--headings", request.headings, "say first what the columns are");
  table->callback([&] {
    exit_status =
        Print(TrackTable(files, PathFromText(request.file), request.track, request.headings));
  });

  auto* settings = app.add_subcommand("settings", "list the home's settings: key, type, value");
  settings->callback([&] { exit_status = ListSettings(request); });

  try {
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    if (!reversed.empty()) reversed.pop_back();
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = app.exit(error, out, err);
    WriteOut(out.str());
    if (status != 0) {
      WriteError(error.what());
      return kExitFailure;
    }
  }
  if (Status flushed = FlushOut(); !flushed.ok()) return Fail(flushed);
  return exit_status;
}

}  // namespace zento
