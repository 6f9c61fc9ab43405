#pragma once

#include "host/clock.h"
#include "host/event_loop.h"
#include "host/timer_queue.h"

namespace zento {

// Time that passes only when it is told to. Begins at a fixed civil time, so that whatever is dated
// comes out the same in every run.
class VirtualClock : public Clock {
 public:
  explicit VirtualClock(CalendarTime start = {2026, 1, 1, 9, 0, 0}) : start_(start) {}
  std::int64_t Micros() const override { return micros_; }
  CalendarTime Now() const override;
  void Spend(std::int64_t micros) override { micros_ += micros; }
  // Moves on to `micros`; a moment that has passed changes nothing.
  void AdvanceTo(std::int64_t micros) {
    if (micros > micros_) micros_ = micros;
  }

 private:
  CalendarTime start_;
  std::int64_t micros_ = 1'000'000;
};

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
