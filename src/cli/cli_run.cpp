#include "cli/cli_run.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "cli/cli_session.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "core/track_file.h"
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

}  // namespace

int RunMacro(const HeadlessOptions& choice, const MacroRequest& request) {
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

}  // namespace zento
