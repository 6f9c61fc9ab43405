#pragma once

#include <cstdint>

#include "text/format.h"

namespace zento {

// The program's only sources of time. Code outside the host reads no other clock.
class Clock {
 public:
  virtual ~Clock() = default;

  // Monotonic microseconds since an arbitrary moment before the program's start.
  virtual std::int64_t Micros() const = 0;

  // Local civil time.
  virtual CalendarTime Now() const = 0;

  // Simulated hardware reports that a call kept the caller busy for so long (>= 0). A virtual clock
  // moves on by it; a real one has already moved and ignores it.
  virtual void Spend(std::int64_t micros) = 0;

  // Milliseconds as a wrapping 32-bit tick count; differences of two counts, taken as 32-bit
  // signed values, are right for spans below 24 days.
  std::int32_t TickCount() const {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(Micros() / 1000));
  }
};

}  // namespace zento
