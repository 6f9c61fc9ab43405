#pragma once

#include <cstdint>

#include "core/display_range.h"
#include "core/track_store.h"
#include "graph/preview_plot.h"

namespace zento {

// How a preview writes the x values of a mode.
const char* PreviewXFormat(std::int32_t mode);

enum class PreviewStyle { kLines = 0, kDots = 1 };

// Draws the track anew: the cycles of a cyclic voltammogram in colours of their own, disk and ring
// current in light blue and light red, the channels of a multichannel record against their common
// time. An empty track leaves the plot empty.
void DrawTrack(PreviewPlot& plot, TrackStore& tracks, int track, const DisplayRange& range,
               PreviewStyle style);

}  // namespace zento
