#include "app/cli_script.h"

#include <cstdint>
#include <exception>

#include "app/cli.h"
#include "app/console_text.h"
#include "app/home_setup.h"
#include "app/main_program.h"
#include "app/script.h"
#include "core/rescue.h"
#include "host/native/native_files.h"
#include "host/native/termination.h"
#include "host/path_text.h"

namespace zento {
namespace {

int Fail(const Status& status) {
  WriteError(status.why());
  return kExitFailure;
}

constexpr std::int64_t kNoLimit = std::int64_t{100} * 366 * 86400 * 1'000'000;

// Whatever goes wrong inside, what is switched on must be switched off.
ScriptEnd RunGuarded(ScriptDriver& driver, std::string_view text) {
  try {
    return driver.Run(text);
  } catch (const std::exception& error) {
    WriteError(std::string("the script was given up: ") + error.what());
    return ScriptEnd::kFailed;
  }
}

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

// What a script that did not get to its end had no chance to save.
void Rescue(MainProgram& program, Files& files) {
  const auto rescued = RescueTracks(program.workstation(), files);
  if (!rescued.ok()) {
    WriteError("the tracks could not be rescued: " + rescued.why());
  } else if (rescued.value()) {
    WriteError("the tracks as they were are in " + TextFromPath(*rescued.value()));
  }
}

void EndSafely(MainProgram& program, ConsoleMachine& machine) {
  const bool active = program.workstation().running_flag != 0;
  program.End();
  machine.loop().Settle();
  if (active) WriteError("a run was still active; it was brought to its safe end");
  // Nothing that a window told is lost.
  for (const std::string& text : machine.dialogs().TakeMessages()) {
    WriteError("message: " + text);
  }
}

}  // namespace

int RunScript(const ScriptJob& job) {
  NativeFiles files;
  const bool from_input = job.script == "-";
  const auto text = from_input ? ReadStandardInput() : files.Read(job.script);
  if (!text.ok()) return Fail(text.status());

  const bool simulated = job.simulated.has_value();
  const auto home = TakeHome(
      job.home, simulated,
      from_input ? "zento-cli running a script" : "zento-cli running " + TextFromPath(job.script));
  if (!home.ok()) return Fail(home.status());

  const auto machine = ConsoleMachine::Make(job.time, home.value().folder);
  MainProgram program(machine->host(), {job.simulated, home.value().folder});
  if (Status started = program.Start(); !started.ok()) {
    EndSafely(program, *machine);
    return Fail(started);
  }
  // Each line at once: somebody may be following a run that takes all night.
  const ScriptOutput output{[](std::string_view line) {
                              WriteOut(std::string(line) + "\n");
                              static_cast<void>(FlushOut());
                            },
                            WriteError};
  ScriptDriver driver(program.workstation(), machine->host(), machine->dialogs(), machine->loop(),
                      output, &Termination::Requested);
  if (job.time == ConsoleMachine::Time::kReal) driver.idle_limit_micros = kNoLimit;
  const ScriptEnd end = RunGuarded(driver, text.value());
  EndSafely(program, *machine);
  if (end != ScriptEnd::kCompleted) Rescue(program, files);
  return ExitStatus(end);
}

}  // namespace zento
