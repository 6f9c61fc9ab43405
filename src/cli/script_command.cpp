#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "cli/cli_session.h"
#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/script.h"
#include "host/native/native_files.h"
#include "host/native/termination.h"
#include "host/path_text.h"

namespace zento {
namespace {

constexpr std::int64_t kNoLimit = std::int64_t{100} * 366 * 86400 * 1'000'000;

int ExitStatus(ScriptEnd end) {
  switch (end) {
    case ScriptEnd::kCompleted:
      return kExitOk;
    case ScriptEnd::kFailed:
      return kExitScriptLine;
    case ScriptEnd::kInterrupted:
      break;
  }
  return 128 + Termination::Signal();
}

// Runs a script ("-": standard input) against the whole program and ends it safely. Returns the
// exit status.
int RunScript(const ProgramOptions& options, const std::filesystem::path& script) {
  const auto chosen = options.Choose();
  if (!chosen.ok()) return FailWith(chosen.status());
  const HeadlessOptions& choice = chosen.value();
  const bool from_input = script == "-";
  const auto text = from_input ? ReadStandardInput() : NativeFiles().Read(script);
  if (!text.ok()) return FailWith(text.status());
  auto opened = CliSession::Open(choice, from_input ? "zento-cli running a script"
                                                    : "zento-cli running " + TextFromPath(script));
  if (!opened.ok()) return FailWith(opened.status());
  CliSession& session = *opened.value();
  HeadlessProgram& program = session.program();

  // Each line at once: somebody may be following a run that takes all night.
  const ScriptOutput output{[](std::string_view line) {
                              WriteOut(std::string(line) + "\n");
                              static_cast<void>(FlushOut());
                            },
                            WriteError};
  ScriptDriver driver(program, output, &Termination::Requested);
  if (choice.time == HeadlessOptions::Time::kReal) driver.idle_limit_micros = kNoLimit;
  ScriptEnd end = ScriptEnd::kFailed;
  session.Guarded([&] { end = driver.Run(text.value()); });
  // What a script that did not get to its end had no chance to save.
  session.EndSafely({.rescue = end != ScriptEnd::kCompleted});
  return ExitStatus(end);
}

}  // namespace

void AddScriptCommand(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto file = std::make_shared<std::string>();
  auto* script =
      app.add_subcommand("script", "do what a person does with the windows, a line each");
  script->add_option("FILE", *file, "the script, - for standard input")->required();
  script->footer("A script's lines (# starts a comment):\n" + ScriptDriver::Help() +
                 "\nA line that cannot be carried out ends the script with exit status 2 and its "
                 "number on standard error. A run that is still active at the end is ended "
                 "safely.");
  script->callback(
      [file, &options, &exit_status] { exit_status = RunScript(options, PathFromText(*file)); });
}

}  // namespace zento
