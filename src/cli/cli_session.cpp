#include "cli/cli_session.h"

#include <exception>
#include <string>
#include <utility>

#include "cli/console_text.h"
#include "host/path_text.h"

namespace zento {

CliSession::CliSession(HeldHome home, const HeadlessOptions& options)
    : home_(std::move(home)), program_(options) {}

Result<std::unique_ptr<CliSession>> CliSession::Open(const HeadlessOptions& choice,
                                                     std::string_view who) {
  HeadlessOptions options = choice;
  auto home = TakeHome(options.program.home, options.program.simulated.has_value(), who);
  if (!home.ok()) return home.status();
  options.program.home = home->folder;
  options.program.data_folders = DataFolders();
  options.interruptible = true;
  std::unique_ptr<CliSession> session(new CliSession(std::move(home.value()), options));
  if (Status started = session->program().Start(); !started.ok()) {
    session->EndSafely({.rescue = false});
    return started;
  }
  return session;
}

bool CliSession::Guarded(const std::function<void()>& act) {
  try {
    act();
    return true;
  } catch (const std::exception& error) {
    WriteError(std::string("given up: ") + error.what());
    return false;
  }
}

bool CliSession::EndSafely(const TracksAtEnd& tracks) {
  const SafeEnd end = program_.program().EndSafely(tracks);
  if (end.run_was_active) WriteError("a run was still active; it was brought to its safe end");
  for (const std::string& text : program_.TakeMessages()) WriteError("message: " + text);
  if (!end.saved.ok()) WriteError("NOT SAVED: " + end.saved.why());
  if (!end.rescued.ok()) {
    WriteError("the tracks could not be rescued: " + end.rescued.why());
  } else if (end.rescued.value()) {
    WriteError("the tracks as they were are in " + TextFromPath(*end.rescued.value()));
  }
  return end.saved.ok();
}

}  // namespace zento
