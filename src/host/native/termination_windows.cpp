#include <windows.h>

#include <atomic>
#include <csignal>
#include <utility>

#include "host/native/termination.h"

namespace zento {

// The system's own handler instead of the C library's signals, which know nothing of a console that
// is closed, of logging off and of shutting down.
struct Termination::Listener {
  std::function<void()> wake;
  HANDLE finished = CreateEventW(nullptr, TRUE, FALSE, nullptr);
};

namespace {

std::atomic<int> requested{0};
std::atomic<std::function<void()>*> wake_up{nullptr};
std::atomic<HANDLE> finished{nullptr};

// Runs in a thread of the system's. The system ends the process as soon as this returns for
// anything but Ctrl+C and Ctrl+Break, so those wait until the program has ended its run.
BOOL WINAPI NoteEvent(DWORD event) {
  const bool survives = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  requested = survives ? SIGINT : SIGTERM;
  if (auto* wake = wake_up.load(); wake != nullptr && *wake) (*wake)();
  if (!survives) WaitForSingleObject(finished, 20'000);
  return TRUE;
}

}  // namespace

Termination::Termination(std::function<void()> wake) : listener_(std::make_unique<Listener>()) {
  requested = 0;
  listener_->wake = std::move(wake);
  finished = listener_->finished;
  wake_up = &listener_->wake;
  SetConsoleCtrlHandler(NoteEvent, TRUE);
}

Termination::~Termination() {
  wake_up = nullptr;
  SetConsoleCtrlHandler(NoteEvent, FALSE);
  // Stays open for a handler that still waits for it; the process is about to end.
  SetEvent(listener_->finished);
}

bool Termination::Requested() {
  return requested != 0;
}

int Termination::Signal() {
  return requested;
}

}  // namespace zento
