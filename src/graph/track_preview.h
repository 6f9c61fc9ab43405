#pragma once

#include <cstdint>

#include "graph/preview_plot.h"

namespace zento {

class TrackStore;

// The world range of a preview: x and y of two opposite corners.
struct PreviewRange {
  double x_min = 0;
  double y_min = 0;
  double x_max = 0;
  double y_max = 0;
  friend bool operator==(const PreviewRange&, const PreviewRange&) = default;
};

// The track's display range, or where that is empty, as in files of other origin, what its points
// take up.
PreviewRange RangeOf(TrackStore& tracks, int track);

// How a preview writes the x values of a mode.
const char* PreviewXFormat(std::int32_t mode);

enum class PreviewStyle { kLines = 0, kDots = 1 };

// Draws the track anew: the cycles of a cyclic voltammogram in colours of their own, disk and ring
// current in light blue and light red, the channels of a multichannel record against their common
// time. An empty track leaves the plot empty.
void DrawTrack(PreviewPlot& plot, TrackStore& tracks, int track, const PreviewRange& range,
               PreviewStyle style);

}  // namespace zento
