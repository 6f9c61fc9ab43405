#pragma once

#include "core/track_store.h"

namespace zento {

// What a plot of a track shows: x and y of two opposite corners, in the units of columns 0 and 1;
// of a multichannel record x is the time (s).
struct DisplayRange {
  double x_min = 0;
  double y_min = 0;
  double x_max = 0;
  double y_max = 0;
  friend bool operator==(const DisplayRange&, const DisplayRange&) = default;
};

// The track's display range, or where that is empty, as in files of other origin, what its points
// take up.
DisplayRange RangeOf(TrackStore& tracks, int track);

}  // namespace zento
