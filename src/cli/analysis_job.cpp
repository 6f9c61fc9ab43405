#include "cli/analysis_job.h"

#include <algorithm>

#include "cli/analysis_session.h"
#include "cli/window_entries.h"
#include "host/path_text.h"

namespace zento {

Result<AnalysisAnswer> Analyse(const AnalysisRequest& request, Files& files) {
  AnalysisSession session(files);
  AnalysisAnswer answer;
  if (!request.home.empty()) {
    if (Status used = session.UseSettingsOf(request.home); !used.ok()) return used;
  }
  if (Status opened = session.OpenFile(request.file, answer.notes); !opened.ok()) return opened;
  const auto form = session.Show(request.command->form);
  if (!form.ok()) return form.status();
  WindowEntries entries(*form.value(), session.workstation().tracks, *request.command);
  if (Status entered = entries.Enter(request.given); !entered.ok()) {
    return entered.Within(TextFromPath(request.file));
  }
  form.value()->Calculate();
  answer.outcome = form.value()->outcome();
  answer.messages = session.TakeMessages();
  answer.notes.insert(answer.notes.end(), entries.notes().begin(), entries.notes().end());
  // A window that refuses in a message box goes on showing the report before.
  const std::string& refusal = answer.outcome.refusal;
  if (refusal.empty() || std::ranges::find(answer.messages, refusal) == answer.messages.end()) {
    answer.report = form.value()->report();
    answer.fit_line = form.value()->lblFit.text();
    std::ranges::replace(answer.fit_line, '\n', ';');
  }
  // A window that has nothing to do with a track like this does nothing, which nobody can see here.
  if (answer.report.empty() && answer.outcome.refusal.empty()) {
    answer.outcome.refusal = "the window has nothing to calculate for this track";
  }
  const Control* note = form.value()->Find("lblNote");
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
