#include "graph/track_preview.h"

#include <cstddef>
#include <span>
#include <vector>

#include "core/modes.h"
#include "core/palette.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_store.h"

namespace zento {
namespace {

using Values = std::span<const double>;


// What a preview's x axis shows: channels of one record share their time.
XQuantity PreviewX(std::int32_t mode) {
  return IsMultichannel(mode) ? XQuantity::kTime : TraitsOf(mode).x;
}

const char* XTitle(XQuantity x) {
  if (x == XQuantity::kTime) return "Time /s";
  return x == XQuantity::kRotationRate ? "Rotation rate /rpm" : "Potential /V";
}

void Draw(PreviewPlot& plot, Values x, Values y, Colour colour, PreviewStyle style) {
  if (style == PreviewStyle::kLines) {
    plot.Polyline(x, y, colour);
  } else {
    plot.Dots(x, y, colour);
  }
}

// Colour of the k-th of the cycles between `boundaries` boundaries.
Colour CycleColour(std::size_t k, std::size_t boundaries, PreviewStyle style) {
  const std::size_t spread = style == PreviewStyle::kLines ? 144 : 164;
  return HLSToRGB(static_cast<int>(spread * k / boundaries) + 64, 16, 16);
}

void DrawCycles(PreviewPlot& plot, TrackStore& tracks, int track, PreviewStyle style) {
  const Values x = tracks.Points(0, track);
  const Values y = tracks.Points(1, track);
  if (x.empty()) return;
  const std::vector<std::int32_t> boundaries = CycleBoundaries(tracks, track);
  for (std::size_t k = 1; k < boundaries.size(); ++k) {
    const auto first = static_cast<std::size_t>(boundaries[k - 1]);
    // Neighbouring cycles share the point between them.
    const std::size_t count = static_cast<std::size_t>(boundaries[k]) - first + 1;
    Draw(plot, x.subspan(first, count), y.subspan(first, count),
         CycleColour(k, boundaries.size(), style), style);
  }
}

void DrawChannels(PreviewPlot& plot, TrackStore& tracks, int channels, PreviewStyle style) {
  const Values time = tracks.Points(2, 0);
  for (int channel = 0; channel < channels; ++channel) {
    Draw(plot, time, tracks.Points(0, channel), TrackPaleColor(channel), style);
  }
  for (int channel = 0; channel < channels; ++channel) {
    Draw(plot, time, tracks.Points(1, channel), TrackColor(channel), style);
  }
}

}  // namespace

const char* PreviewXFormat(std::int32_t mode) {
  const XQuantity x = PreviewX(mode);
  if (IsMultichannel(mode) || x == XQuantity::kRotationRate) return "###0";
  return x == XQuantity::kTime ? "###0.0" : "0.0";
}

void DrawTrack(PreviewPlot& plot, TrackStore& tracks, int track, const DisplayRange& range,
               PreviewStyle style) {
  plot.Clear();
  const std::int32_t mode = tracks.Record(track).Mode;
  if (!IsMeasured(mode)) return;
  plot.SetFormats(PreviewXFormat(mode), "0.0e+0");
  plot.SetRange(range.x_min, range.y_min, range.x_max, range.y_max);
  plot.SetSteps(TickStep(range.x_min, range.x_max), TickStep(range.y_min, range.y_max));
  plot.SetAxisTitles(XTitle(PreviewX(mode)), "Current /A");
  // With a ring, the colours tell the two electrodes apart instead of the cycles.
  if (TraitsOf(mode).cycles && !HasRing(mode)) {
    DrawCycles(plot, tracks, track, style);
  } else if (IsMultichannel(mode)) {
    DrawChannels(plot, tracks, TraitsOf(mode).channels, style);
  } else {
    const Values x = tracks.Points(0, track);
    Draw(plot, x, tracks.Points(1, track), kLightBlue, style);
    if (HasRing(mode)) Draw(plot, x, tracks.Points(2, track), kLightRed, style);
  }
}

}  // namespace zento
