#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/track_jobs.h"
#include "cli/transform_command.h"

namespace zento {

struct TransformRequest {
  const TransformCommand* command = nullptr;
  std::filesystem::path file;
  std::filesystem::path home;  // whose settings count; empty = the built-in ones
  std::vector<GivenOption> given;
  std::optional<int> into;           // the track that gets the result
  std::optional<std::string> title;  // of that track; else what the window makes up
  SaveRequest save;
};

// Makes new points of a track in the command's window. Nothing is saved when the window shows a
// message. Fails when a file cannot be read or written, an option makes no sense, or the window
// has nothing to write.
Result<JobTold> Transform(const TransformRequest& request, Files& files);

// What the Edit menu puts on the clipboard.
enum class CopyKind { kAll, kData, kCurrentTime, kPotentialCurrent, kSpecial };

struct CopyRequest {
  CopyKind kind = CopyKind::kAll;
  std::filesystem::path file;
  std::filesystem::path home;  // as above
  int track = 0;
  std::vector<GivenOption> given;  // of SpecialCopyCommand(), for kSpecial
};

struct CopyAnswer {
  std::string text;  // empty when the window showed a message
  JobTold told;
};

// A track as the main window copies it. Fails when the file cannot be read, the track is empty or
// of a mode that this table is not for, or an option makes no sense.
Result<CopyAnswer> CopyFromFile(const CopyRequest& request, Files& files);

}  // namespace zento
