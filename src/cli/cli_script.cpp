#include "cli/cli_script.h"

#include <cstdint>

#include "cli/cli_session.h"
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

}  // namespace

int RunScript(const HeadlessOptions& choice, const std::filesystem::path& script) {
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

}  // namespace zento
