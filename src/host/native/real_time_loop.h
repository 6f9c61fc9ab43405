#pragma once

#include <functional>

#include "host/event_loop.h"
#include "host/native/wakeup.h"
#include "host/timer_queue.h"

namespace zento {

// Drives timers in real time where no window system does. Sleeps towards absolute due moments, so
// that what a sleep or a handler takes longer does not add up.
class RealTimeLoop : public EventLoop {
 public:
  // `interrupted` is asked after every round and whenever Wake was called; empty = never.
  RealTimeLoop(Clock& clock, TimerQueue& timers, std::function<bool()> interrupted = {})
      : clock_(clock), timers_(timers), interrupted_(std::move(interrupted)) {}

  Waited RunUntil(const std::function<bool()>& done, std::int64_t limit_micros) override;
  Waited RunFor(std::int64_t micros) override;
  void Settle() override;

  // Makes the loop look at `interrupted` at once; callable from a signal handler.
  void Wake() { wakeup_.Wake(); }

 private:
  // Runs what is due or sleeps towards the next due moment, no further than `deadline`.
  void Step(std::int64_t deadline);
  bool Interrupted() const { return interrupted_ && interrupted_(); }

  Clock& clock_;
  TimerQueue& timers_;
  std::function<bool()> interrupted_;
  Wakeup wakeup_;
};

}  // namespace zento
