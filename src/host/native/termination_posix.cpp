#include <array>
#include <atomic>
#include <csignal>

#include "host/native/termination.h"

namespace zento {
namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> requested{0};
std::atomic<void (*)(void*)> wake_up{nullptr};
std::atomic<void*> wake_context{nullptr};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<void*>::is_always_lock_free);

std::array<struct sigaction, kSignals.size()> before;

// What would end the process in the middle of a write.
constexpr std::array kWriteSignals = {SIGXFSZ, SIGPIPE};
std::array<struct sigaction, kWriteSignals.size()> before_write;

extern "C" void NoteSignal(int signal) {
  requested = signal;
  if (auto* wake = wake_up.load()) wake(wake_context);
}

}  // namespace

Termination::Termination(void (*wake)(void*), void* context) {
  requested = 0;
  wake_context = context;
  wake_up = wake;
  struct sigaction action {};
  action.sa_handler = NoteSignal;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], nullptr, &before[i]);
    // A program started with nohup, or in the background, goes on ignoring what it was told to.
    if (before[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
  }
  action.sa_handler = SIG_IGN;
  for (std::size_t i = 0; i < kWriteSignals.size(); ++i) {
    sigaction(kWriteSignals[i], &action, &before_write[i]);
  }
}

Termination::~Termination() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before[i], nullptr);
  for (std::size_t i = 0; i < kWriteSignals.size(); ++i) {
    sigaction(kWriteSignals[i], &before_write[i], nullptr);
  }
  wake_up = nullptr;
}

bool Termination::Requested() {
  return requested != 0;
}

int Termination::Signal() {
  return requested;
}

}  // namespace zento
