#include "cli/analysis_session.h"

#include "analysis/analysis_forms.h"
#include "cli/track_load.h"
#include "core/home.h"
#include "core/settings_file.h"
#include "core/track_file.h"
#include "host/path_text.h"

namespace zento {

AnalysisSession::AnalysisSession(Files& files) : files_(files) {
  RegisterAnalysisForms(machine_.desktop, workstation_, machine_.host);
  ApplyDefaultSettings(workstation_);
  for (int track = 0; track < kTracks; ++track) workstation_.tracks.ClearTrack(track);
}

Status AnalysisSession::UseSettingsOf(const std::filesystem::path& home) {
  const auto bytes = files_.Read(SettingsPath(home));
  if (!bytes.ok()) return bytes.status();
  return ParseSettings(bytes.value(), workstation_.settings).Within(TextFromPath(home));
}

Status AnalysisSession::OpenFile(const std::filesystem::path& path,
                                 std::vector<std::string>& notes) {
  const TrackFileLoad load = OpenTracks(workstation_, files_, path);
  return CheckLoad(load, path, notes);
}

Result<AnalysisForm*> AnalysisSession::Show(std::string_view form) {
  if (machine_.desktop.Show(form) == nullptr) {
    return Status::Failure(std::string(form) + " did not open");
  }
  return machine_.desktop.FindAs<AnalysisForm>(form);
}

std::vector<std::string> AnalysisSession::TakeMessages() {
  machine_.Settle();
  return machine_.dialogs.TakeMessages();
}

}  // namespace zento
