#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "cli/cli_session.h"
#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "core/settings_file.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "host/native/native_files.h"
#include "host/native/termination.h"
#include "host/path_text.h"
#include "macro/follow_macro.h"
#include "macro/macro_file.h"
#include "program/dry_run.h"
#include "text/format.h"
#include "text/lines.h"

namespace zento {
namespace {

struct MacroRequest {
  std::filesystem::path macro;
  std::filesystem::path load;  // tracks to begin with; empty = none
  std::filesystem::path save;  // empty = where unsaved tracks go: into the home
  std::filesystem::path log;   // gets what the run log gets; empty = none
  bool overwrite = false;      // `save` may replace a file that was not loaded
};

constexpr std::int64_t kLongestInVirtualTime = std::int64_t{72} * 3600 * 1'000'000;
constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();

// Tells a person, or whoever reads the file tomorrow, how far it is.
class Progress : public MacroFollower {
 public:
  Progress(const Clock& clock, std::string_view text, bool mails_are_kept)
      : clock_(clock), mails_are_kept_(mails_are_kept) {
    std::string_view line;
    for (LineReader lines(text); lines.Next(line);) lines_.emplace_back(line);
  }

  void LineBegun(int line, const MacroLine&) override {
    std::string_view text = lines_.at(static_cast<std::size_t>(line) - 1);
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    Say(line, std::string(text));
  }
  void LineDone(int line, const MacroLine& what, MacroLineResult result) override {
    using enum MacroLineResult;
    if (result == kCarriedOut || result == kLeftOut) return;
    Say(line, "NOT carried out: " + std::string(what.name));
  }
  void MeasurementBegun(int line, const std::string& what) override { Say(line, what + " begins"); }
  void MeasurementEnded(int line, const RunReport& report) override {
    Say(line, report.what + " ended: " + report.how);
  }
  void MessageShown(int line, const std::string& text) override { Say(line, "message: " + text); }
  void MailEnded(int line, const Status& how) override {
    if (!how.ok()) {
      Say(line, "mail NOT sent: " + how.why());
    } else {
      Say(line, mails_are_kept_ ? "mail kept: in virtual time none is sent" : "mail sent");
    }
  }

 private:
  void Say(int line, const std::string& text) const {
    WriteError(FormatGeneralDate(clock_.Now()) + "  line " + std::to_string(line) + ": " + text);
  }

  const Clock& clock_;
  bool mails_are_kept_;
  std::vector<std::string> lines_;
};

// What would otherwise come out in the morning.
Status CheckPlaces(const MacroRequest& request, Files& files) {
  for (const std::filesystem::path& path : {request.save, request.log}) {
    const auto folder = path.parent_path();
    if (!folder.empty() && !files.Exists(folder)) {
      return Status::Failure("there is no folder " + TextFromPath(folder));
    }
  }
  if (request.save.empty() || request.overwrite) return Status::Ok();
  const auto file = TrackFileName(request.save);
  std::error_code unknown;
  const bool loaded = std::filesystem::equivalent(file, request.load, unknown);
  if (!files.Exists(file) || loaded) return Status::Ok();
  return Status::Failure(TextFromPath(file) +
                         " exists already: --load it to go on with its tracks, save to another "
                         "file, or --overwrite it");
}

Status Load(Workstation& workstation, Files& files, const std::filesystem::path& path) {
  const TrackFileLoad load = OpenTracks(workstation, files, path);
  using Outcome = TrackFileLoad::Outcome;
  if (load.outcome == Outcome::kNotRecognized) {
    return Status::Failure(TextFromPath(path) + " is no track file");
  }
  if (!load.complete()) return load.status;
  for (const std::string& remark : load.remarks) {
    WriteError(TextFromPath(path) + ": " + remark);
  }
  workstation.ShowTrack(0);
  return Status::Ok();
}

int ExitStatus(const MacroVerdict& verdict) {
  if (Termination::Requested()) return 128 + Termination::Signal();
  return verdict.Clean() ? kExitOk : kExitScriptLine;
}

// Carries out a macro on the whole program and ends it safely; progress goes to standard error.
// However it ends, the tracks are saved. Returns the exit status.
int RunMacro(const ProgramOptions& options, const MacroRequest& request) {
  const auto chosen = options.Choose();
  if (!chosen.ok()) return FailWith(chosen.status());
  const HeadlessOptions& choice = chosen.value();
  NativeFiles files;
  const auto bytes = files.Read(request.macro);
  if (!bytes.ok()) return FailWith(bytes.status());
  const std::string text = MacroTextFromFile(bytes.value());
  if (Status places = CheckPlaces(request, files); !places.ok()) return FailWith(places);
  auto opened = CliSession::Open(choice, "zento-cli running " + TextFromPath(request.macro));
  if (!opened.ok()) return FailWith(opened.status());
  CliSession& session = *opened.value();
  HeadlessProgram& program = session.program();
  Workstation& workstation = program.workstation();
  if (!request.load.empty()) {
    Status loaded = Load(workstation, program.host().files, request.load);
    if (!loaded.ok()) {
      session.EndSafely({.rescue = false});
      return FailWith(loaded);
    }
  }
  if (!request.log.empty()) workstation.run_log.CopyTo(request.log);

  const bool on_virtual_time = choice.time == HeadlessOptions::Time::kVirtual;
  Progress progress(program.host().clock, text, on_virtual_time);
  MacroVerdict verdict;
  verdict.outcome.end = MacroOutcome::End::kStopped;
  session.Guarded([&] {
    verdict = FollowMacro(Unattended(program), text, TextFromPath(request.macro.filename()),
                          on_virtual_time ? kLongestInVirtualTime : kNoLimit, progress);
  });
  if (verdict.endless) WriteError("a measurement does not come to an end; it is ended now");
  // What cannot be saved where it was asked for goes to the home.
  TracksAtEnd tracks;
  if (!request.save.empty()) {
    tracks.save = [&] { return SaveTracksAs(workstation, program.host().files, request.save); };
  }
  const bool saved = session.EndSafely(tracks);
  const int status = ExitStatus(verdict);
  if (status < 128) WriteError(VerdictText(verdict));
  return saved || status != kExitOk ? status : kExitFailure;
}

// The home that a run would use. Where nobody says which, that of the instruments if it has
// settings.
Result<std::filesystem::path> HomeFor(const ProgramOptions& options, Files& files) {
  if (const auto simulated = options.simulated()) return FindHome(options.home(), *simulated);
  const auto instruments = FindHome(options.home(), false);
  if (instruments.ok() && files.Exists(SettingsPath(instruments.value()))) return instruments;
  return FindHome(options.home(), true);
}

// Prints what a macro would do, see CheckMacro. kExitFailure when it cannot be told.
int CheckMacroFile(const ProgramOptions& options, const std::filesystem::path& macro) {
  NativeFiles files;
  const auto bytes = files.Read(macro);
  if (!bytes.ok()) return FailWith(bytes.status());
  const auto home = HomeFor(options, files);
  if (!home.ok()) return FailWith(home.status());
  const auto cell = options.CellParameters();
  if (!cell.ok()) return FailWith(cell.status());

  const bool has_settings = files.Exists(SettingsPath(home.value()));
  WriteOut("Checked with the settings of " +
           (has_settings ? TextFromPath(home.value()) : "a fresh simulated bench") +
           ", on simulated instruments and a simulated cell\n");
  const auto check = CheckMacro({MacroTextFromFile(bytes.value()), TextFromPath(macro.filename()),
                                 home.value(), cell.value()},
                                files);
  if (!check.ok()) return FailWith(check.status());
  WriteOut(FormatCheck(check.value()));
  return check->Clean() ? kExitOk : kExitScriptLine;
}

// As typed.
struct RunCall {
  std::string file, load, save, log;
  bool overwrite = false;
};

void AddRun(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto call = std::make_shared<RunCall>();
  auto* run = app.add_subcommand("run", "carry out a macro without a person");
  run->add_option("MACRO", call->file, "a macro file (.zmc)")->required();
  run->add_option("--load", call->load, "a track file whose tracks are there at the beginning");
  run->add_option("--save", call->save,
                  "the track file that gets all tracks at the end, however it came; without it "
                  "they go to \"Rescued tracks N.znt\" in the home");
  run->add_flag("--overwrite", call->overwrite,
                "let --save replace a file although it was not loaded");
  run->add_option("--log", call->log, "a file to add to whatever the home's run log gets");
  run->footer(
      "Progress goes to standard error: time, line number, what is carried out, measurements with "
      "track and points. The exit status is 0 only when every line was carried out, every mail was "
      "sent and no message was shown; 2 when not; 128 + the signal's number when the program was "
      "asked to end, which ends a measurement safely.");
  run->callback([call, &options, &exit_status] {
    exit_status =
        RunMacro(options, {PathFromText(call->file), PathFromText(call->load),
                           PathFromText(call->save), PathFromText(call->log), call->overwrite});
  });
}

void AddCheck(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto file = std::make_shared<std::string>();
  auto* check = app.add_subcommand("check", "tell what a macro would do, without doing it");
  check->add_option("MACRO", *file, "a macro file (.zmc)")->required();
  check->footer(
      "The macro runs in virtual time against simulated instruments, with the settings and the "
      "calibration of the home (that of the instruments if it has settings and --bench does not "
      "say); nothing is written, sent or switched. Printed are each measurement and wait with its "
      "time, the tracks that are written, and what a person should know: values that are limited "
      "or do not pass the bus, tracks written twice, a buffer that fills, mails that would not go "
      "out, every message that would be shown. What the sample decides (~) is an estimate for the "
      "simulated cell; --bench-set gives it other properties. Exit status 0: a run would be clean; "
      "2: it would not.");
  check->callback([file, &options, &exit_status] {
    exit_status = CheckMacroFile(options, PathFromText(*file));
  });
}

}  // namespace

void AddMacroCommands(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  AddRun(app, options, exit_status);
  AddCheck(app, options, exit_status);
}

}  // namespace zento
