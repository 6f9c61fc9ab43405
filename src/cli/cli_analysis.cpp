#include "cli/cli_analysis.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <memory>
#include <string>

#include "cli/analysis_job.h"
#include "cli/console_text.h"
#include "cli/entry_options.h"
#include "cli/exit_status.h"
#include "cli/outcome_json.h"
#include "host/native/native_files.h"
#include "host/path_text.h"

namespace zento {
namespace {

constexpr char kFooter[] =
    "Opens the analysis window on the file, makes these entries in it, presses its button and "
    "prints the window's report. Entries that are not made have the built-in settings, or those "
    "of the home that --home names. Nothing is written; FILE stays as it is. A refusal of the "
    "window goes to standard error, with exit status 2.";

// What one command was given on the command line.
struct Call {
  const AnalysisCommand* command = nullptr;
  std::string file;
  EntryOptions entries;
  bool json = false;
  bool quality = false;
};

std::string WithLineFeeds(std::string text) {
  std::erase(text, '\r');
  return text;
}

int Print(const Call& call, const AnalysisAnswer& answer) {
  if (call.json) {
    WriteOut(OutcomeJson(call.command->name, call.file, answer.outcome));
  } else {
    WriteOut(WithLineFeeds(answer.report));
  }
  for (const std::string& note : answer.notes) WriteError(note);
  for (const std::string& message : answer.messages) WriteError("message: " + message);
  const std::string& refusal = answer.outcome.refusal;
  if (std::ranges::find(answer.messages, refusal) == answer.messages.end() && !refusal.empty()) {
    WriteError(refusal);
  }
  if (call.quality && !answer.fit_line.empty()) WriteError(answer.fit_line);
  return refusal.empty() ? kExitOk : kExitScriptLine;
}

int Run(const Call& call, const ProgramOptions& options) {
  NativeFiles files;
  const auto answer =
      Analyse({call.command, PathFromText(call.file), options.home(), call.entries.Given()}, files);
  return answer.ok() ? Print(call, answer.value()) : FailWith(answer.status());
}

void AddCommand(CLI::App& app, const AnalysisCommand& command, const ProgramOptions& options,
                int& exit_status) {
  auto call = std::make_shared<Call>();
  call->command = &command;
  auto* sub = app.add_subcommand(std::string(command.name), std::string(command.help));
  sub->add_option("FILE", call->file, "a track file (.znt)")->required();
  call->entries.AddTo(*sub, command.entries);
  sub->add_flag("--quality", call->quality,
                "tell on standard error how good the fit is, as the window does");
  sub->add_flag("--json", call->json,
                "print an object with quantities, columns, rows and fit instead of the report");
  sub->footer(kFooter);
  sub->callback([call, &options, &exit_status] { exit_status = Run(*call, options); });
}

}  // namespace

void AddAnalysisCommands(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  for (const AnalysisCommand& command : AnalysisCommands()) {
    AddCommand(app, command, options, exit_status);
  }
}

}  // namespace zento
