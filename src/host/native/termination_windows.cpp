#include "host/native/termination.h"

#include <windows.h>

#include <atomic>
#include <csignal>

namespace zento {
namespace {

std::atomic<int> requested{0};
std::atomic<void (*)(void*)> wake_up{nullptr};
std::atomic<void*> wake_context{nullptr};
HANDLE finished = nullptr;

// Runs in a thread of the system's. The system ends the process as soon as this returns for
// anything but Ctrl+C and Ctrl+Break, so those wait until the program has ended its run.
BOOL WINAPI NoteEvent(DWORD event) {
  const bool survives = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  requested = survives ? SIGINT : SIGTERM;
  if (auto* wake = wake_up.load()) wake(wake_context);
  if (!survives) WaitForSingleObject(finished, 20'000);
  return TRUE;
}

}  // namespace

Termination::Termination(void (*wake)(void*), void* context) {
  requested = 0;
  wake_context = context;
  wake_up = wake;
  if (finished == nullptr) finished = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  ResetEvent(finished);
  SetConsoleCtrlHandler(NoteEvent, TRUE);
}

Termination::~Termination() {
  wake_up = nullptr;
  SetConsoleCtrlHandler(NoteEvent, FALSE);
  SetEvent(finished);
}

bool Termination::Requested() {
  return requested != 0;
}

int Termination::Signal() {
  return requested;
}

}  // namespace zento
