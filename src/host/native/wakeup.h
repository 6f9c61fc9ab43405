#pragma once

#include <cstdint>
#include <optional>

namespace zento {

// Lets one thread sleep until a moment, or until someone wakes it.
class Wakeup {
 public:
  Wakeup();
  ~Wakeup();
  Wakeup(const Wakeup&) = delete;
  Wakeup& operator=(const Wakeup&) = delete;

  // Ends the sleep under way, or the next one at once. Callable from any thread and from a signal
  // handler.
  void Wake();

  // Sleeps for so many microseconds, or until woken when there is no limit; late by what the
  // system's timers are late, some 0.1 ms. May return early: look at the clock and sleep again.
  void Sleep(std::optional<std::int64_t> micros);

 private:
  struct State;
  State* state_;
};

}  // namespace zento
