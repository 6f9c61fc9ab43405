#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis_result.h"
#include "cli/window_options.h"
#include "host/services.h"
#include "text/status_fwd.h"

namespace zento {

std::span<const WindowCommand> AnalysisCommands();
// Null when there is none of that name.
const WindowCommand* FindAnalysisCommand(std::string_view name);

struct AnalysisRequest {
  const WindowCommand* command;
  std::filesystem::path file;
  std::filesystem::path home;  // whose settings count; empty = the built-in ones
  std::vector<GivenOption> given;
};

struct AnalysisAnswer {
  std::string report;  // as the window has it, lines ending in CR LF; empty without one
  AnalysisResult outcome;
  std::string fit_line;               // what the window shows below the report
  std::vector<std::string> messages;  // boxes that were shown
  std::vector<std::string> notes;     // what a person should know besides
};

// Opens the file and the command's window on a machine without instruments, enters the options,
// presses the window's button. Nothing is written, whatever the window does. Fails when the file
// cannot be read or an option makes no sense; a refusal of the window is an answer.
Result<AnalysisAnswer> Analyse(const AnalysisRequest& request, Files& files);

}  // namespace zento
