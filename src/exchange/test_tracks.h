#pragma once

#include <cstdint>

#include "core/track_store.h"

namespace zento {

// One track of each mode, on the track of the mode's number; mode 5 on track 0 and 5. For tests.
inline TrackStore ExchangeTracks() {
  TrackStore tracks;
  for (const std::int32_t mode : {1, 2, 3, 4, 5, 6, 7, 0}) {
    TrackRecord& record = tracks.Record(mode);
    record.Mode = mode == 0 ? kModeMulti : mode;
    record.Title = mode == 1 ? "Pt, 0.1 M H2SO4\tμ" : "title " + std::to_string(mode);
    record.MeasTime = "2026/11/22 21:32:39";
    record.Scanrate = 50;
    record.StepTime = 0.05;
    record.V = {0.2, -0.6, 0};
    record.ref = 2;
    record.RingXValue = -1e-6;
    record.RPM = mode == 2 ? 1600 : 0;
    record.Conc = 1.2e-6;
    record.Area = 0.28274;
    record.Weight = 0.0125;
    record.ne = 2;
    record.pnum = 6;
    record.Vxmax = 1;
    record.Vymax = 1;
    for (std::int32_t i = 0; i < record.pnum; ++i) {
      const double x = i < 4 ? 0.25 * i : 0.25 * (7 - i);
      tracks.SetValue(0, mode, i, mode == kModeRPMvsj ? 400.0 * (i + 1) : x - 0.1);
      tracks.SetValue(1, mode, i, (i - 2) * 1.23456789e-5 / (mode + 1));
      tracks.SetValue(2, mode, i, mode == kModeRDE ? 3e-7 * (i + 1) : 100.5 * i);
    }
  }
  for (int channel = 1; channel < 10; ++channel) {
    tracks.SetValue(1, channel, 3, channel == 9 ? 123456789012345678.0 : 0.1 * channel);
  }
  tracks.Record(4).TimeRecording = 1;
  return tracks;
}

}  // namespace zento
