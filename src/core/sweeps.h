#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zento {

class TrackStore;

// Where the cycles of a track begin: the first entry is 0, the last one the last point. At most 101
// entries; what comes after the hundredth cycle belongs to it. Modes that have no cycles (0 and 5)
// give 101 zeros.
std::vector<std::int32_t> CycleBoundaries(const TrackStore& tracks, int slot);

// The same for whoever goes from cycle to cycle: first and last point of the only one where a mode
// has no cycles. {0, 0} for a track without points.
std::vector<std::int32_t> CycleEnds(const TrackStore& tracks, int slot);

// From `start` on, the point where the potential was nearest to `target` (V) before it moved away
// again, having come within 0.1 V; the last point when that never happens; start - 1 when `start`
// is behind the last point.
std::int32_t FindVertex(const TrackStore& tracks, int slot, std::int32_t start, double target);

// The values must not be empty.
double ArrayMax(std::span<const double> values);
double ArrayMin(std::span<const double> values);

// Nothing unless x > 0.
std::optional<double> Log10OrEmpty(double x);

// Equal lengths and values; one NaN is as good as another, as something that did not change is to
// be the same.
inline bool SameValues(std::span<const double> a, std::span<const double> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](double x, double y) { return x == y || (x != x && y != y); });
}

}  // namespace zento
