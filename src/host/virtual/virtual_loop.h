#pragma once

#include "host/event_loop.h"
#include "host/timer_queue.h"
#include "host/virtual/virtual_clock.h"

namespace zento {

// Jumps from one due moment to the next instead of waiting for it. A round of handlers costs no
// time but what simulated hardware reports with Clock::Spend.
class VirtualLoop : public EventLoop {
 public:
  VirtualLoop(VirtualClock& clock, TimerQueue& timers) : clock_(clock), timers_(timers) {}

  Waited RunUntil(const std::function<bool()>& done, std::int64_t limit_micros) override;
  Waited RunFor(std::int64_t micros) override;
  void Settle() override;

  // Asked after every round; empty = never.
  std::function<bool()> interrupted;

 private:
  // One step towards `deadline`. False when nothing becomes due until then.
  bool Step(std::int64_t deadline);

  VirtualClock& clock_;
  TimerQueue& timers_;
  std::int64_t moment_ = 0;  // of the last round
  int rounds_ = 0;           // at that moment
};

}  // namespace zento
