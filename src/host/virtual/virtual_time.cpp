
#include <chrono>

#include "host/virtual/virtual_time.h"

namespace zento {
CalendarTime VirtualClock::Now() const {
  using namespace std::chrono;
  const sys_days day = sys_days(year(start_.year) / month(static_cast<unsigned>(start_.month)) /
                                std::chrono::day(static_cast<unsigned>(start_.day)));
  const auto moment = day + hours(start_.hour) + minutes(start_.minute) + seconds(start_.second) +
                      floor<seconds>(microseconds(micros_));
  const auto today = floor<days>(moment);
  const year_month_day date(today);
  const hh_mm_ss time(moment - today);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

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
