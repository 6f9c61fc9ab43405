#pragma once

#include "host/clock.h"

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

}  // namespace zento
