#include "host/timer_queue.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zento {

TimerQueue::Entry::Entry(TimerQueue& queue, std::function<void()> tick)
    : queue_(queue), tick_(std::move(tick)) {
  queue_.entries_.push_back(this);
}

TimerQueue::Entry::~Entry() {
  std::erase(queue_.entries_, this);
  if (destroyed_ != nullptr) *destroyed_ = true;
}

void TimerQueue::Entry::SetInterval(std::int64_t millis) {
  interval_ms_ = std::max<std::int64_t>(millis, 1);
  if (!enabled_) return;
  due_ = (firing_ ? firing_due_ : queue_.clock_.Micros()) + interval_ms_ * 1000;
  queue_.Rearm();
}

void TimerQueue::Entry::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  if (!enabled) return;
  due_ = (firing_ ? firing_due_ : queue_.clock_.Micros()) + interval_ms_ * 1000;
  queue_.Rearm();
}

std::optional<std::int64_t> TimerQueue::NextDue() const {
  if (!posted_.empty()) return clock_.Micros();
  std::optional<std::int64_t> next;
  for (const Entry* entry : entries_) {
    if (entry->enabled_ && (!next || entry->due_ < *next)) next = entry->due_;
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
  while (Entry* due = EarliestDue(now)) {
    Fire(*due);
    ++ran;
  }
  return ran;
}

// Handlers may add and remove timers, so the list is read afresh for every tick.
TimerQueue::Entry* TimerQueue::EarliestDue(std::int64_t now) const {
  Entry* due = nullptr;
  for (Entry* entry : entries_) {
    if (!entry->enabled_ || entry->due_ > now || entry->round_ == round_) continue;
    if (due == nullptr || entry->due_ < due->due_) due = entry;
  }
  return due;
}

// Marks an entry as firing for as long as it lives, however its handler is left.
class TimerQueue::Firing {
 public:
  Firing(Entry& entry, bool& destroyed) : entry_(entry), destroyed_(destroyed) {
    entry_.firing_ = true;
    entry_.destroyed_ = &destroyed_;
  }
  ~Firing() {
    if (destroyed_) return;
    entry_.firing_ = false;
    entry_.destroyed_ = nullptr;
  }
  Firing(const Firing&) = delete;
  Firing& operator=(const Firing&) = delete;

 private:
  Entry& entry_;
  bool& destroyed_;
};

void TimerQueue::Fire(Entry& entry) {
  bool destroyed = false;
  const Firing firing(entry, destroyed);
  entry.round_ = round_;
  entry.firing_due_ = entry.due_;
  entry.due_ += entry.interval_ms_ * 1000;
  // A copy: the handler may destroy the entry.
  const std::function<void()> tick = entry.tick_;
  if (tick) tick();
  if (destroyed) return;
  const std::int64_t interval = entry.interval_ms_ * 1000;
  const std::int64_t late = clock_.Micros() - entry.due_;
  if (late >= interval) entry.due_ += late / interval * interval;
}

void TimerQueue::Post(std::function<void()> action) {
  posted_.push_back(std::move(action));
  Rearm();
}

void TimerQueue::Rearm() {
  if (on_rearm) on_rearm();
}

}  // namespace zento
