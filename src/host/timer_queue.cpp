#include "host/timer_queue.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zento {

TimerQueue::PeriodicTimer::PeriodicTimer(TimerQueue& queue, std::function<void()> tick)
    : queue_(queue), tick_(std::move(tick)) {
  queue_.timers_.push_back(this);
}

TimerQueue::PeriodicTimer::~PeriodicTimer() {
  std::erase(queue_.timers_, this);
  if (destroyed_ != nullptr) *destroyed_ = true;
}

void TimerQueue::PeriodicTimer::SetInterval(std::int64_t millis) {
  interval_ms_ = std::max<std::int64_t>(millis, 1);
  if (!enabled_) return;
  due_ = (firing_ ? firing_due_ : queue_.clock_.Micros()) + interval_ms_ * 1000;
  queue_.Rearm();
}

void TimerQueue::PeriodicTimer::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  if (!enabled) return;
  due_ = (firing_ ? firing_due_ : queue_.clock_.Micros()) + interval_ms_ * 1000;
  queue_.Rearm();
}

std::optional<std::int64_t> TimerQueue::NextDue() const {
  if (!posted_.empty()) return clock_.Micros();
  std::optional<std::int64_t> next;
  for (const PeriodicTimer* timer : timers_) {
    if (timer->enabled_ && (!next || timer->due_ < *next)) next = timer->due_;
  }
  return next;
}

int TimerQueue::RunDue() {
  if (running_) return 0;
  running_ = true;
  // Reset however this is left, so that a handler that throws does not stop all timers for ever.
  const std::unique_ptr<bool, void (*)(bool*)> leave(&running_, [](bool* flag) { *flag = false; });
  ++round_;
  int ran = 0;
  for (auto& action : std::exchange(posted_, {})) {
    action();
    ++ran;
  }
  // The moment is taken once: what becomes due while handlers run waits for the next call.
  const std::int64_t now = clock_.Micros();
  while (PeriodicTimer* due = EarliestDue(now)) {
    Fire(*due);
    ++ran;
  }
  return ran;
}

// Handlers may add and remove timers, so the list is read afresh for every tick.
TimerQueue::PeriodicTimer* TimerQueue::EarliestDue(std::int64_t now) const {
  PeriodicTimer* due = nullptr;
  for (PeriodicTimer* timer : timers_) {
    if (!timer->enabled_ || timer->due_ > now || timer->round_ == round_) continue;
    if (due == nullptr || timer->due_ < due->due_) due = timer;
  }
  return due;
}

// Marks a timer as firing for as long as it lives, however its handler is left.
class TimerQueue::Firing {
 public:
  Firing(PeriodicTimer& timer, bool& destroyed) : timer_(timer), destroyed_(destroyed) {
    timer_.firing_ = true;
    timer_.destroyed_ = &destroyed_;
  }
  ~Firing() {
    if (destroyed_) return;
    timer_.firing_ = false;
    timer_.destroyed_ = nullptr;
  }
  Firing(const Firing&) = delete;
  Firing& operator=(const Firing&) = delete;

 private:
  PeriodicTimer& timer_;
  bool& destroyed_;
};

void TimerQueue::Fire(PeriodicTimer& timer) {
  bool destroyed = false;
  const Firing firing(timer, destroyed);
  timer.round_ = round_;
  timer.firing_due_ = timer.due_;
  timer.due_ += timer.interval_ms_ * 1000;
  // A copy: the handler may destroy the timer.
  const std::function<void()> tick = timer.tick_;
  if (tick) tick();
  if (destroyed) return;
  const std::int64_t interval = timer.interval_ms_ * 1000;
  const std::int64_t late = clock_.Micros() - timer.due_;
  if (late >= interval) timer.due_ += late / interval * interval;
}

void TimerQueue::Post(std::function<void()> action) {
  posted_.push_back(std::move(action));
  Rearm();
}

void TimerQueue::Rearm() {
  if (on_rearm) on_rearm();
}

}  // namespace zento
