#include "host/native/real_time_loop.h"

#include <algorithm>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <windows.h>

#include <mmsystem.h>
#endif

namespace zento {

struct RealTimeLoop::Sleeper {
#ifdef _WIN32
  // Otherwise the system looks at its timers 64 times a second only.
  Sleeper() {
    timeBeginPeriod(1);
  }
  ~Sleeper() {
    timeEndPeriod(1);
  }
#endif
  asio::io_context context{1};
  asio::steady_timer alarm{context};
};

RealTimeLoop::RealTimeLoop(Clock& clock, TimerQueue& timers, std::function<bool()> interrupted)
    : clock_(clock),
      timers_(timers),
      interrupted_(std::move(interrupted)),
      sleeper_(std::make_unique<Sleeper>()) {}

RealTimeLoop::~RealTimeLoop() = default;

void RealTimeLoop::Wake() {
  asio::post(sleeper_->context, [] {});
}

// Ends with the first handler: the alarm's, or what Wake has left there, before the sleep began or
// during it. Late by what the system's timers are late, some 0.1 ms.
void RealTimeLoop::Sleep(std::int64_t micros) {
  auto& [context, alarm] = *sleeper_;
  context.restart();
  alarm.expires_after(std::chrono::microseconds(micros));
  alarm.async_wait([](const std::error_code&) {});
  context.run_one();
  alarm.cancel();
  context.poll();  // nothing is left over for the next sleep
}

void RealTimeLoop::Step(std::int64_t deadline) {
  const std::int64_t now = clock_.Micros();
  const std::int64_t until = std::min(timers_.NextDue().value_or(deadline), deadline);
  if (until > now) Sleep(until - now);
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
