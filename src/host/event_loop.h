#pragma once

#include <cstdint>
#include <functional>

namespace zento {

// How a wait ended.
enum class Waited {
  kDone,          // the condition holds
  kTimeout,       // the limit passed first
  kNothingArmed,  // no timer is enabled and nothing was posted: the condition can never come true
  kInterrupted,   // the person or the system asked the program to end
};

// Drives the timers of a program that has no window system of its own to do so.
class EventLoop {
 public:
  virtual ~EventLoop() = default;
  // Runs what becomes due until `done` holds, for at most `limit_micros` (>= 0) of the clock's
  // time. `done` is asked before anything runs and after every round.
  virtual Waited RunUntil(const std::function<bool()>& done, std::int64_t limit_micros) = 0;
  // Lets exactly `micros` pass, running what becomes due.
  virtual Waited RunFor(std::int64_t micros) = 0;
  // Runs what is due now, follow-ups included, without waiting. Bounded: work that posts itself
  // again for ever is left for later.
  virtual void Settle() = 0;
};

}  // namespace zento
