#include <array>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <atomic>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

#include "host/native/termination.h"

namespace zento {
namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};
// What would end the process in the middle of a write.
constexpr std::array kWriteSignals = {SIGXFSZ, SIGPIPE};

std::atomic<int> requested{0};

}  // namespace

// A thread that does nothing but wait for signals, so that a request is noted whatever the
// program's own thread is at: a loop, a question to the person, virtual time.
struct Termination::Listener {
  explicit Listener(std::function<void()> wake_up) : wake(std::move(wake_up)) {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
      sigaction(kSignals[i], nullptr, &before[i]);
      // A program started with nohup, or in the background, goes on ignoring what it was told to.
      if (before[i].sa_handler != SIG_IGN) signals.add(kSignals[i]);
    }
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigemptyset(&ignore.sa_mask);
    for (std::size_t i = 0; i < kWriteSignals.size(); ++i) {
      sigaction(kWriteSignals[i], &ignore, &before_write[i]);
    }
    Listen();
    thread = std::thread([this] { context.run(); });
  }

  ~Listener() {
    context.stop();
    thread.join();
    signals.clear();
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before[i], nullptr);
    for (std::size_t i = 0; i < kWriteSignals.size(); ++i) {
      sigaction(kWriteSignals[i], &before_write[i], nullptr);
    }
  }

  void Listen() {
    signals.async_wait([this](const std::error_code& failed, int signal) {
      if (failed) return;
      requested = signal;
      if (wake) wake();
      Listen();
    });
  }

  std::function<void()> wake;
  std::array<struct sigaction, kSignals.size()> before{};
  std::array<struct sigaction, kWriteSignals.size()> before_write{};
  asio::io_context context{1};
  asio::signal_set signals{context};
  std::thread thread;
};

Termination::Termination(std::function<void()> wake) {
  requested = 0;
  listener_ = std::make_unique<Listener>(std::move(wake));
}

Termination::~Termination() = default;

bool Termination::Requested() {
  return requested != 0;
}

int Termination::Signal() {
  return requested;
}

}  // namespace zento
