#include "host/timer_queue.h"

#include <algorithm>
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
  int ran = 0;
  for (auto& action : std::exchange(posted_, {})) {
    action();
    ++ran;
  }
  // Handlers may add and remove timers, so the list is read afresh for every tick. The moment is
  // taken once: a handler that takes long does not make its own next tick part of this call.
  const std::int64_t now = clock_.Micros();
  for (;;) {
    Entry* due = nullptr;
    for (Entry* entry : entries_) {
      if (entry->enabled_ && entry->due_ <= now && (due == nullptr || entry->due_ < due->due_)) {
        due = entry;
      }
    }
    if (due == nullptr) break;
    Fire(*due);
    ++ran;
  }
  running_ = false;
  return ran;
}

void TimerQueue::Fire(Entry& entry) {
  const std::int64_t began = clock_.Micros();
  bool destroyed = false;
  entry.destroyed_ = &destroyed;
  entry.firing_ = true;
  entry.firing_due_ = entry.due_;
  entry.due_ += entry.interval_ms_ * 1000;
  // A copy: the handler may destroy the entry.
  const std::function<void()> tick = entry.tick_;
  if (tick) tick();
  if (destroyed) return;
  entry.destroyed_ = nullptr;
  entry.firing_ = false;
  if (!entry.enabled_) return;
  const std::int64_t interval = entry.interval_ms_ * 1000;
  const std::int64_t now = clock_.Micros();
  if (now - entry.due_ >= interval) entry.due_ += (now - entry.due_) / interval * interval;
  // RunDue compares with the moment it began at, so one call never runs a timer twice.
  if (entry.due_ <= began) entry.due_ = began + 1;
}

void TimerQueue::Post(std::function<void()> action) {
  posted_.push_back(std::move(action));
  Rearm();
}

void TimerQueue::Rearm() {
  if (on_rearm) on_rearm();
}

}  // namespace zento
