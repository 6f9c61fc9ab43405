#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zento {

// Why a run came to its end. The first reason given is the one that counts.
enum class EndReason {
  kPerson,    // the Stop button
  kTime,      // the planned time is over
  kCharge,    // the charge limit was reached
  kLimit,     // the limit rotation rate was exceeded
  kOverflow,  // no room for more points
  kDevice,    // nothing could be read any more
  kClosing,   // the window or the program is being closed
};

// How a measurement ended, for whoever follows it without its window.
struct RunReport {
  std::string what;  // the run as a person calls it ("Potential step")
  EndReason reason = EndReason::kPerson;
  std::string how;                 // in full, as in the log
  std::optional<int> first_track;  // where the points are; nothing = none were stored
  int last_track = 0;              // of a run that stores several tracks
  std::int32_t points = 0;
};

}  // namespace zento
