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
Result<JobReport> Transform(const TransformRequest& request, Files& files);

}  // namespace zento
