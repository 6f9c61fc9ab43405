#include "cli/analysis_job.h"

#include <algorithm>

#include "analysis/analysis_form.h"
#include "cli/track_load.h"
#include "cli/window_entries.h"
#include "core/home.h"
#include "core/settings_file.h"
#include "host/path_text.h"
#include "program/headless_program.h"

namespace zento {
namespace {

// Takes the settings of a home; fails when it has none.
Status UseSettingsOf(const std::filesystem::path& home, Files& files, Settings& settings) {
  const auto bytes = files.Read(SettingsPath(home));
  if (!bytes.ok()) return bytes.status();
  return ParseSettings(bytes.value(), settings).Within(TextFromPath(home));
}

}  // namespace

Result<AnalysisAnswer> Analyse(const AnalysisRequest& request, Files& files) {
  HeadlessProgram program(
      {.program = {.windows = Windows::kAnalyses}, .files = &files, .dry = true});
  if (Status started = program.Start(); !started.ok()) return started;
  Workstation& workstation = program.workstation();
  AnalysisAnswer answer;
  if (!request.home.empty()) {
    Status used = UseSettingsOf(request.home, files, workstation.settings);
    if (!used.ok()) return used;
  }
  const TrackFileLoad load = OpenTracks(workstation, program.host().files, request.file);
  if (Status opened = CheckLoad(load, request.file, answer.notes); !opened.ok()) return opened;
  const std::string_view name = request.command->form;
  if (program.desktop().Show(name) == nullptr) {
    return Status::Failure(std::string(name) + " did not open");
  }
  auto* const form = program.desktop().FindAs<AnalysisForm>(name);
  WindowEntries entries(*form, workstation.tracks, *request.command);
  if (Status entered = entries.Enter(request.given); !entered.ok()) {
    return entered.Within(TextFromPath(request.file));
  }
  form->Calculate();
  answer.outcome = form->outcome();
  answer.messages = program.TakeMessages();
  answer.notes.insert(answer.notes.end(), entries.notes().begin(), entries.notes().end());
  // A window that refuses in a message box goes on showing the report before.
  const std::string& refusal = answer.outcome.refusal;
  if (refusal.empty() || std::ranges::find(answer.messages, refusal) == answer.messages.end()) {
    answer.report = form->report();
    answer.fit_line = form->lblFit.text();
    std::ranges::replace(answer.fit_line, '\n', ';');
  }
  // A window that has nothing to do with a track like this does nothing, which nobody can see here.
  if (answer.report.empty() && answer.outcome.refusal.empty()) {
    answer.outcome.refusal = "the window has nothing to calculate for this track";
  }
  const Control* note = form->Find("lblNote");
  if (note != nullptr && !note->Value().empty()) answer.notes.push_back(note->Value());
  return answer;
}

Result<std::vector<GivenEntry>> ParseEntries(const AnalysisCommand& command,
                                             const std::vector<std::string>& words) {
  std::vector<GivenEntry> given;
  for (std::size_t i = 0; i < words.size(); i += 2) {
    const auto entry = std::ranges::find(command.entries, words[i], &AnalysisEntry::option);
    if (entry == command.entries.end() || i + 1 == words.size()) {
      return Status::Failure(std::string(command.name) + ": " + words[i] +
                             (entry == command.entries.end() ? " is no option" : " has no value"));
    }
    given.push_back({&*entry, words[i + 1]});
  }
  return given;
}

}  // namespace zento
