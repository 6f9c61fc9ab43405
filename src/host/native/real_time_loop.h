#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "host/event_loop.h"
#include "host/timer_queue.h"

namespace zento {

// Drives timers in real time where no window system does. Sleeps towards absolute due moments, so
// that what a sleep or a handler takes longer does not add up.
class RealTimeLoop : public EventLoop {
 public:
  // `interrupted` is asked after every round and whenever Wake was called; empty = never.
  RealTimeLoop(Clock& clock, TimerQueue& timers, std::function<bool()> interrupted = {});
  ~RealTimeLoop() override;

  Waited RunUntil(const std::function<bool()>& done, std::int64_t limit_micros) override;
  Waited RunFor(std::int64_t micros) override;
  void Settle() override;

  // Ends the sleep under way, or the next one at once, so that the loop looks at `interrupted`.
  // Callable from any thread, but from no signal handler.
  void Wake();

 private:
  // Runs what is due or sleeps towards the next due moment, no further than `deadline`.
  void Step(std::int64_t deadline);
  void Sleep(std::int64_t micros);
  bool Interrupted() const { return interrupted_ && interrupted_(); }

  Clock& clock_;
  TimerQueue& timers_;
  std::function<bool()> interrupted_;
  struct Sleeper;
  std::unique_ptr<Sleeper> sleeper_;
};

}  // namespace zento
