#include "host/native/alarm.h"

#ifdef __linux__

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>

namespace zento {

Alarm::Alarm() : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {}

Alarm::~Alarm() {
  if (descriptor_ >= 0) close(descriptor_);
}

void Alarm::After(std::int64_t micros) {
  // Zero would switch the timer off.
  const std::int64_t nanos = std::max<std::int64_t>(micros * 1000, 1);
  itimerspec when{};
  when.it_value.tv_sec = nanos / 1'000'000'000;
  when.it_value.tv_nsec = nanos % 1'000'000'000;
  timerfd_settime(descriptor_, 0, &when, nullptr);
}

void Alarm::Cancel() {
  const itimerspec never{};
  timerfd_settime(descriptor_, 0, &never, nullptr);
}

void Alarm::Acknowledge() {
  std::uint64_t count = 0;
  // Nothing to read means that the alarm was set anew meanwhile.
  [[maybe_unused]] const auto bytes = read(descriptor_, &count, sizeof count);
}

}  // namespace zento

#else

namespace zento {

Alarm::Alarm() = default;
Alarm::~Alarm() = default;
void Alarm::After(std::int64_t) {}
void Alarm::Cancel() {}
void Alarm::Acknowledge() {}

}  // namespace zento

#endif
