#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "host/clock.h"

namespace zento {

// The periodic timers of all windows, in order of their due times. What drives the program (the
// graphical event loop, the command line's real-time loop, virtual time) asks for the next due
// moment and calls RunDue; everything happens on that one thread.
//
// Cadence: a periodic timer is due at absolute multiples of its interval after it was enabled, so
// neither the handler's own duration nor disabling and enabling it inside its own handler shifts
// it. Ticks missed by more than one interval are dropped instead of bunched; the next one stays on
// the same multiples.
class TimerQueue {
 public:
  // One timer. Disabling and destroying are allowed at any moment, in its own handler too.
  class PeriodicTimer {
   public:
    PeriodicTimer(TimerQueue& queue, std::function<void()> tick);
    ~PeriodicTimer();
    PeriodicTimer(const PeriodicTimer&) = delete;
    PeriodicTimer& operator=(const PeriodicTimer&) = delete;

    // Milliseconds, at least 1. Takes effect from the current period's start when set inside the
    // timer's own handler, from now otherwise.
    void SetInterval(std::int64_t millis);
    std::int64_t Interval() const { return interval_ms_; }
    void SetEnabled(bool enabled);
    bool Enabled() const { return enabled_; }

   private:
    friend class TimerQueue;
    TimerQueue& queue_;
    std::function<void()> tick_;
    std::int64_t interval_ms_ = 1000;
    std::int64_t due_ = 0;         // microseconds of the clock
    std::int64_t firing_due_ = 0;  // due moment of the tick now being handled
    bool enabled_ = false;
    bool firing_ = false;
    std::uint64_t round_ = 0;    // the RunDue that ran it last
    bool* destroyed_ = nullptr;  // set while firing, to learn of destruction inside the handler
  };

  explicit TimerQueue(Clock& clock) : clock_(clock) {}
  TimerQueue(const TimerQueue&) = delete;
  TimerQueue& operator=(const TimerQueue&) = delete;

  // Clock microseconds of the next tick (or of now when something was posted), nothing when no
  // timer is enabled.
  std::optional<std::int64_t> NextDue() const;

  // Runs what was posted, then each enabled timer that is due, at most once each. Returns how many
  // handlers ran. Not to be called from within a handler: that returns 0.
  int RunDue();

  // Runs `action` from the loop, after the handlers now on the stack have returned.
  void Post(std::function<void()> action);

  // Called whenever NextDue may have changed to an earlier moment.
  std::function<void()> on_rearm;

 private:
  class Firing;
  PeriodicTimer* EarliestDue(std::int64_t now) const;
  void Fire(PeriodicTimer& timer);
  void Rearm();

  Clock& clock_;
  std::vector<PeriodicTimer*> timers_;
  std::vector<std::function<void()>> posted_;
  std::uint64_t round_ = 0;
  bool running_ = false;
};

}  // namespace zento
