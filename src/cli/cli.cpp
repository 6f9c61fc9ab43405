#include "cli/cli.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <sstream>

#include "cli/cli_analysis.h"
#include "cli/cli_check.h"
#include "cli/cli_fit.h"
#include "cli/cli_mail.h"
#include "cli/cli_run.h"
#include "cli/cli_script.h"
#include "cli/cli_tracks.h"
#include "cli/cli_verify.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/listings.h"
#include "cli/script.h"
#include "core/settings_file.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "program/home.h"
#include "program/program_options.h"

namespace zento {
namespace {

// What was asked for.
struct Request {
  ProgramOptions options;
  std::string file;
  std::string load;
  std::string save;
  std::string log;
  bool overwrite = false;
};

int Print(const Result<std::string>& text) {
  if (!text.ok()) return FailWith(text.status());
  WriteOut(text.value());
  return kExitOk;
}

int Script(const Request& request) {
  const auto choice = request.options.Choose();
  if (!choice.ok()) return FailWith(choice.status());
  return RunScript(choice.value(), PathFromText(request.file));
}

int Run(const Request& request) {
  const auto choice = request.options.Choose();
  if (!choice.ok()) return FailWith(choice.status());
  return RunMacro(choice.value(),
                  {PathFromText(request.file), PathFromText(request.load),
                   PathFromText(request.save), PathFromText(request.log), request.overwrite});
}

int ListSettings(const Request& request) {
  const auto home = FindHome(request.options.home(), request.options.simulated().value_or(false));
  if (!home.ok()) return FailWith(home.status());
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
  const auto parameters = request.options.CellParameters();
  if (!parameters.ok()) return FailWith(parameters.status());
  return Print(BenchListing(parameters.value()));
}

void AddOptions(CLI::App& app, Request& request) {
  request.options.AddTo(app, "Scripts and macros need one of them: data are never made up unasked");
  request.options.AddClockTo(app);
}

void AddRun(CLI::App& app, Request& request, int& exit_status) {
  auto* run = app.add_subcommand("run", "carry out a macro without a person");
  run->add_option("MACRO", request.file, "a macro file (.zmc)")->required();
  run->add_option("--load", request.load, "a track file whose tracks are there at the beginning");
  run->add_option("--save", request.save,
                  "the track file that gets all tracks at the end, however it came; without it "
                  "they go to \"Rescued tracks N.znt\" in the home");
  run->add_flag("--overwrite", request.overwrite,
                "let --save replace a file although it was not loaded");
  run->add_option("--log", request.log, "a file to add to whatever the home's run log gets");
  run->footer(
      "Progress goes to standard error: time, line number, what is carried out, measurements with "
      "track and points. The exit status is 0 only when every line was carried out, every mail was "
      "sent and no message was shown; 2 when not; 128 + the signal's number when the program was "
      "asked to end, which ends a measurement safely.");
  run->callback([&] { exit_status = Run(request); });
}

void AddCheck(CLI::App& app, Request& request, int& exit_status) {
  auto* check = app.add_subcommand("check", "tell what a macro would do, without doing it");
  check->add_option("MACRO", request.file, "a macro file (.zmc)")->required();
  check->footer(
      "The macro runs in virtual time against simulated instruments, with the settings and the "
      "calibration of the home (that of the instruments if it has settings and --bench does not "
      "say); nothing is written, sent or switched. Printed are each measurement and wait with its "
      "time, the tracks that are written, and what a person should know: values that are limited "
      "or do not pass the bus, tracks written twice, a buffer that fills, mails that would not go "
      "out, every message that would be shown. What the sample decides (~) is an estimate for the "
      "simulated cell; --bench-set gives it other properties. Exit status 0: a run would be clean; "
      "2: it would not.");
  check->callback(
      [&] { exit_status = CheckMacroFile(request.options, PathFromText(request.file)); });
}

void AddMailTest(CLI::App& app, Request& request, int& exit_status) {
  auto* mail = app.add_subcommand("mail-test", "send a mail as a macro would, and tell the result");
  mail->add_option("ADDRESS", request.file, "who gets it")->required();
  mail->footer(
      "The server stands in the home's Mail.txt: Server=, Sender= and, where they differ from the "
      "usual, Port=, TLS= (none, STARTTLS or implicit), User=, SenderName=. The password is taken "
      "from the environment variable ZENTO_MAIL_PASSWORD or from \"Mail password.txt\" in the "
      "home, a file that only you may read. --bench sim tries the simulated bench's home.");
  mail->callback([&] { exit_status = SendTestMail(request.options, request.file); });
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

  AddRun(app, request, exit_status);
  AddCheck(app, request, exit_status);
  AddMailTest(app, request, exit_status);
  AddAnalysisCommands(app, request.options, exit_status);
  AddFitCommand(app, exit_status);
  AddVerifyCommand(app, exit_status);
  AddTrackCommands(app, request.options, exit_status);

  auto* bench = app.add_subcommand("bench", "list the simulated bench's parameters");
  bench->callback([&] { exit_status = ListBench(request); });

  NativeFiles files;
  auto* info = app.add_subcommand("info", "print the information sheets of a track file");
  info->add_option("FILE", request.file, "a track file (.znt)")->required();
  info->callback([&] { exit_status = Print(TrackFileSheets(files, PathFromText(request.file))); });

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
  if (Status flushed = FlushOut(); !flushed.ok()) return FailWith(flushed);
  return exit_status;
}

}  // namespace zento
