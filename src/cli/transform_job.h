#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/track_jobs.h"
#include "cli/window_options.h"

namespace zento {

// A window that makes new points of a track, as a command: it calculates with cmdCalc and writes
// with one of two buttons.
struct TransformCommand {
  WindowCommand window;
  // Writes into the track that the window shows; empty when the window always asks for another.
  std::string_view update_button;
  // Writes into the track that `destination` names, under the title in `title`.
  std::string_view record_button;
  std::string_view destination;
  std::string_view title;
  // What the help says about where the result goes.
  std::string_view into_help;
};

std::span<const TransformCommand> TransformCommands();

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
