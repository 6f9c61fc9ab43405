#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/modes.h"

namespace zento {

inline constexpr int kTracks = 21;       // tracks 0 to 20, which the user sees
inline constexpr int kScratchSlot = 21;  // 21 and 22: scratch space for tools
inline constexpr int kSlots = 23;
inline constexpr int kTrackColumns = 3;
// Points a track can hold. The analysis windows work on up to this many per column.
inline constexpr std::int32_t kMaxPoints = 40001;

// The header of one recorded curve.
struct TrackRecord {
  std::int32_t Mode = kModeNone;
  std::string Title;          // UTF-8, one line
  std::string MeasTime;       // date and time of the measurement, as text
  double Scanrate = 0;        // mV/s
  std::array<double, 3> V{};  // V: start, first and second turning point (V1st, V2nd, V3rd)
  double Vxmin = 0;           // display range, in the units of columns 0 and 1
  double Vymin = 0;
  double Vxmax = 0;
  double Vymax = 0;
  double RingXValue = 0;           // V
  double MaxTime = 0;              // ms
  double RPM = 0;                  // rpm
  std::int32_t pnum = 0;           // stored points
  double Conc = 0;                 // mol cm-3
  double Area = 0;                 // cm2
  double Weight = 0;               // mg
  double ne = 0;                   // electrons transferred
  double DiskYscale = 0;           // A per volt of the disk current's channel
  double RingYscale = 0;           // A per volt of the ring current's channel
  std::int32_t TimeRecording = 0;  // 1: a rotation-rate sweep with a time column
  std::int32_t ref = 0;            // index into RefName
  double pH = 0;
  double StepTime = 0;  // s
  double VoltStep = 0;  // V

  bool IsEmpty() const { return Mode == kModeNone; }
  friend bool operator==(const TrackRecord&, const TrackRecord&) = default;
};

}  // namespace zento
