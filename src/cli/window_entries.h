#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/analysis_command.h"
#include "core/track_store.h"
#include "host/form.h"

namespace zento {

// Enters the options of an analysis command into its window, as a person would. Values that are
// none, and tracks that are not there, are refused; what the window made something else of, its
// limits say, is noted.
class WindowEntries {
 public:
  WindowEntries(Form& form, const TrackStore& tracks, const AnalysisCommand& command)
      : form_(form), tracks_(tracks), command_(command) {}

  Status Enter(const std::vector<GivenEntry>& given);
  const std::vector<std::string>& notes() const { return notes_; }

 private:
  using Given = std::vector<GivenEntry>;

  Result<std::vector<int>> UsedTracks(const Given& given) const;
  Result<int> ShownTrack(const Given& given, const std::vector<int>& used) const;
  Status CheckUses(const std::vector<int>& used);
  Status EnterForTrack(const Given& given, int track);
  const AnalysisEntry* ShownEntry() const;
  Status ShowTrack(int track);

  Status Put(const AnalysisEntry& entry, const std::string& value);
  Status PutNumber(const AnalysisEntry& entry, const std::string& value);
  Status PutChoice(const AnalysisEntry& entry, const std::string& value);
  Status PutPoints(const AnalysisEntry& entry, const std::string& value);
  Status PutIndex(const AnalysisEntry& entry, const std::string& value);
  Status Set(std::string_view control, const std::string& value);
  Status Dial(std::string_view box, std::string_view arrows, std::int32_t target);
  Result<Control*> Find(std::string_view control) const;

  Form& form_;
  const TrackStore& tracks_;
  const AnalysisCommand& command_;
  std::vector<std::string> notes_;
};

}  // namespace zento
