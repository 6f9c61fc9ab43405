#pragma once

#include "host/clock.h"

namespace zento {

// The machine's own time.
class NativeClock : public Clock {
 public:
  std::int64_t Micros() const override;
  CalendarTime Now() const override;
  void Spend(std::int64_t) override {}
};

}  // namespace zento
