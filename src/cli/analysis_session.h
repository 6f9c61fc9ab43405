#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis_form.h"
#include "core/workstation.h"
#include "host/virtual/virtual_host.h"
#include "program/dry_files.h"

namespace zento {

// A machine without instruments, on which analysis windows are opened on a track file. Files are
// only read: whatever a window writes stays in memory.
class AnalysisSession {
 public:
  // With the built-in settings. `files` must outlive this.
  explicit AnalysisSession(Files& files);

  // Takes the settings of a home; fails when it has none.
  Status UseSettingsOf(const std::filesystem::path& home);
  // What the file holds that could not be taken goes to `notes`.
  Status OpenFile(const std::filesystem::path& path, std::vector<std::string>& notes);
  // Fails when the window does not open.
  Result<AnalysisForm*> Show(std::string_view form);

  // The message boxes shown since the last call.
  std::vector<std::string> TakeMessages();
  Workstation& workstation() { return workstation_; }

 private:
  DryFiles files_;
  VirtualHost machine_{&files_};
  Workstation workstation_;
};

}  // namespace zento
