#include "cli/cli_session.h"

#include <exception>
#include <optional>
#include <utility>

#include "cli/cli.h"
#include "cli/console_text.h"
#include "core/rescue.h"
#include "host/path_text.h"

namespace zento {

int FailWith(const Status& status) {
  WriteError(status.why());
  return kExitFailure;
}

Result<std::unique_ptr<CliSession>> CliSession::Open(const SessionChoice& choice,
                                                     std::string_view who) {
  auto home = TakeHome(choice.home, choice.simulated.has_value(), who);
  if (!home.ok()) return home.status();
  std::unique_ptr<CliSession> session(new CliSession);
  session->home_ = std::move(home.value());
  session->machine_ = ConsoleMachine::Make(choice.time, session->home_.folder);
  session->program_ = std::make_unique<MainProgram>(
      session->host(), MainOptions{choice.simulated, session->home_.folder, DataFolders()});
  if (Status started = session->program_->Start(); !started.ok()) {
    session->End();
    return started;
  }
  return session;
}

CliSession::~CliSession() = default;

bool CliSession::Guarded(const std::function<void()>& act) {
  try {
    act();
    return true;
  } catch (const std::exception& error) {
    WriteError(std::string("given up: ") + error.what());
    return false;
  }
}

void CliSession::End() {
  const bool active = workstation().running_flag != 0;
  program_->End();
  machine_->loop().Settle();
  if (active) WriteError("a run was still active; it was brought to its safe end");
  for (const std::string& text : machine_->dialogs().TakeMessages()) {
    WriteError("message: " + text);
  }
}

void CliSession::Rescue() {
  const auto rescued = RescueTracks(workstation(), host().files);
  if (!rescued.ok()) {
    WriteError("the tracks could not be rescued: " + rescued.why());
  } else if (rescued.value()) {
    WriteError("the tracks as they were are in " + TextFromPath(*rescued.value()));
  }
}

}  // namespace zento
