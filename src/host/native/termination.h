#pragma once

namespace zento {

// Turns the system's requests to end the program into something the loop can look at: SIGINT,
// SIGTERM and SIGHUP, or Ctrl+C, Ctrl+Break, the closing of the console, logging off and shutting
// down on Windows. Nothing but noting the request is done inside the system's handler. While one of
// these lives the requests do not end the process by themselves; the program ends its run safely
// and returns. A file that grows beyond the user's limit and a pipe that nobody reads any more are
// write errors then instead of signals.
//
// At most one lives at a time.
class Termination {
 public:
  // `wake` is called for every request, from a signal handler or another thread; it may do only
  // what is safe there.
  explicit Termination(void (*wake)(void*) = nullptr, void* context = nullptr);
  ~Termination();
  Termination(const Termination&) = delete;
  Termination& operator=(const Termination&) = delete;

  static bool Requested();
  // The signal's number; 0 while nothing was requested, and on Windows SIGINT or SIGTERM.
  static int Signal();
};

}  // namespace zento
