#pragma once

#include <functional>
#include <memory>

namespace zento {

// Turns the system's requests to end the program into something the loop can look at: SIGINT,
// SIGTERM and SIGHUP, or Ctrl+C, Ctrl+Break, the closing of the console, logging off and shutting
// down on Windows. While one of these lives the requests do not end the process by themselves; the
// program ends its run safely and returns. A request is remembered from the moment this is made,
// whether or not a loop runs yet. A file that grows beyond the user's limit and a pipe that nobody
// reads any more are write errors then instead of signals.
//
// At most one lives at a time.
class Termination {
 public:
  // `wake` is called for every request, from another thread, as soon as it has been noted.
  explicit Termination(std::function<void()> wake = {});
  ~Termination();
  Termination(const Termination&) = delete;
  Termination& operator=(const Termination&) = delete;

  static bool Requested();
  // The signal's number; 0 while nothing was requested, and on Windows SIGINT or SIGTERM.
  static int Signal();

 private:
  struct Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace zento
