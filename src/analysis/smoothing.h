#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "analysis/savitzky_golay.h"

namespace zento {

class TrackStore;

enum class SmoothingMethod { kMovingAverage = 0, kSavitzkyGolay = 1, kSpikes = 2 };

// How values are smoothed. A window of `points` values stands around each of them; where it reaches
// beyond the ends, the end's value takes the place of what is missing.
struct Smoothing {
  SmoothingMethod method = SmoothingMethod::kMovingAverage;
  std::int32_t points = 3;  // odd, at least 3; 5 for Savitzky-Golay
  SavitzkyGolayRow row;     // for Savitzky-Golay: that of `points`
  double w = 0;             // for spikes: deviations as large as this are halved
  // Above 0: that many values and one more at each end keep what they are.
  std::int32_t skip = 0;
};

// Smooths a stretch of values. Moving average: the mean of the window. Savitzky-Golay:
// (a0 y(p) + sum of ak (y(p - k) + y(p + k))) / divisor, see SavitzkyGolayRow. Spikes: the first
// value stays; of the others, with m the mean of the window without its middle and d the distance
// from it, w / (w + d) (y - m) + m. Sums are added up from left to right, outwards for
// Savitzky-Golay. `out` has the length of `y` and does not overlap it.
void Smooth(std::span<const double> y, const Smoothing& smoothing, std::span<double> out);

// The stretches of a track that are smoothed by themselves, both ends included: the sweeps between
// the turning points, so that no window reaches across one; the whole of a step, a rotation sweep
// or a multichannel record; nothing in other modes.
struct PointStretch {
  std::int32_t first = 0, last = 0;
};
std::vector<PointStretch> SmoothedStretches(const TrackStore& tracks, int track);

// How many of a sweep's stretches have a turning point inside, which windows then reach across: the
// potential goes beyond both ends by more than 5 % of the track's range. That happens where noise
// larger than its steps hides a turning point, or where the header's vertices are not the track's.
std::size_t StretchesThatTurn(TrackStore& tracks, int track);

// Smooths the currents of a track, and its x column if asked for, into another slot, which gets the
// header and all columns. w is a thousandth of the track's DiskYscale, whatever `smoothing` says.
// False, and nothing is written, for a track without points or of a mode that is not smoothed.
bool SmoothTrack(TrackStore& tracks, int track, const Smoothing& smoothing, bool x_axis, int slot);

}  // namespace zento
