#include "cli/cli.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cli/cli_tracks.h"
#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/listings.h"
#include "cli/track_jobs.h"
#include "core/settings_file.h"
#include "exchange/information_sheet.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/native/native_mail.h"
#include "host/path_text.h"
#include "program/home.h"
#include "program/program_options.h"

namespace zento {
namespace {

// Sends a mail with the settings of the home and prints what became of it.
int SendTestMail(const ProgramOptions& options, const std::string& address) {
  const auto home = FindHome(options.home(), options.simulated().value_or(false));
  if (!home.ok()) return FailWith(home.status());
  NativeClock clock;
  TimerQueue timers(clock);
  const auto mail = MakeNativeMail(timers, {.home = home.value()});
  Status sent;
  WriteError("sending with the settings of " + TextFromPath(home.value()));
  mail->Send({"", address, "Test mail", "Mails from macros will reach this address."},
             [&](const Status& how) { sent = how; });
  mail->Finish();
  if (!sent.ok()) return FailWith(sent.Within("NOT sent"));
  WriteOut("The server has taken the mail to " + address + "\n");
  return kExitOk;
}

int Print(const Result<std::string>& text) {
  if (!text.ok()) return FailWith(text.status());
  WriteOut(text.value());
  return kExitOk;
}

int ListSettings(const ProgramOptions& options) {
  const auto home = FindHome(options.home(), options.simulated().value_or(false));
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

int ListBench(const ProgramOptions& options) {
  const auto parameters = options.CellParameters();
  if (!parameters.ok()) return FailWith(parameters.status());
  return Print(BenchListing(parameters.value()));
}

int ListTracks(const std::filesystem::path& path) {
  NativeFiles files;
  std::vector<std::string> notes;
  const auto tracks = ReadTrackFile(files, path, notes);
  if (!tracks.ok()) return FailWith(tracks.status());
  for (const std::string& note : notes) WriteError(note);
  WriteOut(SheetsText(*tracks.value()));
  return kExitOk;
}

void AddMailTest(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto address = std::make_shared<std::string>();
  auto* mail = app.add_subcommand("mail-test", "send a mail as a macro would, and tell the result");
  mail->add_option("ADDRESS", *address, "who gets it")->required();
  mail->footer(
      "The server stands in the home's Mail.txt: Server=, Sender= and, where they differ from the "
      "usual, Port=, TLS= (none, STARTTLS or implicit), User=, SenderName=. The password is taken "
      "from the environment variable ZENTO_MAIL_PASSWORD or from \"Mail password.txt\" in the "
      "home, a file that only you may read. --bench sim tries the simulated bench's home.");
  mail->callback(
      [address, &options, &exit_status] { exit_status = SendTestMail(options, *address); });
}

void AddListings(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto* bench = app.add_subcommand("bench", "list the simulated bench's parameters");
  bench->callback([&] { exit_status = ListBench(options); });

  auto file = std::make_shared<std::string>();
  auto* info = app.add_subcommand("info", "print the information sheets of a track file");
  info->add_option("FILE", *file, "a track file (.znt)")->required();
  info->callback([file, &exit_status] { exit_status = ListTracks(PathFromText(*file)); });

  auto* settings = app.add_subcommand("settings", "list the home's settings: key, type, value");
  settings->callback([&] { exit_status = ListSettings(options); });
}

}  // namespace

int RunCli(const std::vector<std::string>& arguments) {
  PrepareConsole();
  ProgramOptions options;
  int exit_status = kExitOk;
  CLI::App app(
      "Zento from the command line: drives the workstation's windows by their names, and "
      "looks into its files.",
      "zento-cli");
  app.set_version_flag("--version", std::string("zento-cli ") + ZENTO_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.require_subcommand(1);
  app.fallthrough();
  options.AddTo(app, "Scripts and macros need one of them: data are never made up unasked");
  options.AddClockTo(app);

  AddScriptCommand(app, options, exit_status);
  AddMacroCommands(app, options, exit_status);
  AddMailTest(app, options, exit_status);
  AddAnalysisCommands(app, options, exit_status);
  AddFitCommand(app, exit_status);
  AddVerifyCommand(app, exit_status);
  AddTrackCommands(app, options, exit_status);
  AddListings(app, options, exit_status);

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
