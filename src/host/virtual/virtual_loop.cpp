#include "host/virtual/virtual_loop.h"

namespace zento {
namespace {

// Work that posts itself again takes no virtual time, so time would stand still for ever. A round
// counts as a microsecond: after so many rounds at one moment the clock moves on by a millisecond.
constexpr int kRoundsAMillisecond = 1000;

}  // namespace

bool VirtualLoop::Step(std::int64_t deadline) {
  const auto due = timers_.NextDue();
  if (!due || *due > deadline) return false;
  clock_.AdvanceTo(*due);
  if (clock_.Micros() != moment_) {
    moment_ = clock_.Micros();
    rounds_ = 0;
  } else if (++rounds_ >= kRoundsAMillisecond) {
    clock_.Spend(1000);
  }
  timers_.RunDue();
  return true;
}

Waited VirtualLoop::RunUntil(const std::function<bool()>& done, std::int64_t limit_micros) {
  const std::int64_t deadline = clock_.Micros() + limit_micros;
  while (!done()) {
    if (interrupted && interrupted()) return Waited::kInterrupted;
    if (clock_.Micros() > deadline) return Waited::kTimeout;
    if (Step(deadline)) continue;
    if (!timers_.NextDue()) return Waited::kNothingArmed;
    clock_.AdvanceTo(deadline);
    return Waited::kTimeout;
  }
  return Waited::kDone;
}

Waited VirtualLoop::RunFor(std::int64_t micros) {
  const std::int64_t deadline = clock_.Micros() + micros;
  while (Step(deadline)) {
    if (interrupted && interrupted()) return Waited::kInterrupted;
  }
  clock_.AdvanceTo(deadline);
  return Waited::kDone;
}

void VirtualLoop::Settle() {
  for (int round = 0; round < kRoundsAMillisecond; ++round) {
    const auto due = timers_.NextDue();
    if (!due || *due > clock_.Micros()) return;
    timers_.RunDue();
  }
}

}  // namespace zento
