#include "host/native/real_time_loop.h"

#include <algorithm>

namespace zento {

void RealTimeLoop::Step(std::int64_t deadline) {
  const std::int64_t now = clock_.Micros();
  const std::int64_t until = std::min(timers_.NextDue().value_or(deadline), deadline);
  if (until > now) wakeup_.Sleep(until - now);
  timers_.RunDue();
}

Waited RealTimeLoop::RunUntil(const std::function<bool()>& done, std::int64_t limit_micros) {
  const std::int64_t deadline = clock_.Micros() + limit_micros;
  while (!done()) {
    if (Interrupted()) return Waited::kInterrupted;
    if (clock_.Micros() >= deadline) return Waited::kTimeout;
    if (!timers_.NextDue()) return Waited::kNothingArmed;
    Step(deadline);
  }
  return Waited::kDone;
}

Waited RealTimeLoop::RunFor(std::int64_t micros) {
  const std::int64_t deadline = clock_.Micros() + micros;
  while (clock_.Micros() < deadline) {
    if (Interrupted()) return Waited::kInterrupted;
    Step(deadline);
  }
  return Waited::kDone;
}

void RealTimeLoop::Settle() {
  // Bounded: work that posts itself again for ever is left for later.
  for (int round = 0; round < 1000; ++round) {
    const auto due = timers_.NextDue();
    if (!due || *due > clock_.Micros()) return;
    timers_.RunDue();
  }
}

}  // namespace zento
