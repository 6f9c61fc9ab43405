#include "core/sweeps.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/track_store.h"

namespace zento {
namespace {

constexpr std::size_t kMostBoundaries = 101;

std::vector<std::int32_t> SweepBoundaries(const TrackStore& tracks, int slot) {
  const TrackRecord& record = tracks.Record(slot);
  const std::int32_t last = tracks.PointCount(slot) - 1;
  std::vector<std::int32_t> boundaries = {0};
  std::int32_t point = 0;
  do {
    std::int32_t found = FindVertex(tracks, slot, point, record.V[1]);
    found = FindVertex(tracks, slot, found, record.V[2]);
    found = FindVertex(tracks, slot, found, record.V[0]);
    // Vertices that lie on one another can be "found" without a step forward, for ever: what is
    // left is then one cycle.
    point = found > point ? found : last;
    if (boundaries.size() < kMostBoundaries) {
      boundaries.push_back(point);
    } else {
      boundaries.back() = point;
    }
  } while (point < last);
  return boundaries;
}

}  // namespace

std::int32_t FindVertex(const TrackStore& tracks, int slot, std::int32_t start, double target) {
  const std::int32_t last = tracks.PointCount(slot) - 1;
  if (start > last) return start - 1;
  double previous = 10000;
  for (std::int32_t i = std::max(start, 0); i <= last; ++i) {
    const double distance = std::fabs(tracks.Value(0, slot, i) - target);
    if (distance > previous && previous < 0.1) return i - 1;
    previous = distance;
  }
  return last;
}

std::vector<std::int32_t> CycleBoundaries(const TrackStore& tracks, int slot) {
  const std::int32_t mode = tracks.Record(slot).Mode;
  if (TraitsOf(mode).cycles) return SweepBoundaries(tracks, slot);
  if (!IsMeasured(mode) || IsMultichannel(mode)) return std::vector<std::int32_t>(kMostBoundaries);
  return {0, tracks.PointCount(slot) - 1};
}

std::vector<std::int32_t> CycleEnds(const TrackStore& tracks, int slot) {
  const std::int32_t mode = tracks.Record(slot).Mode;
  const std::int32_t last = tracks.PointCount(slot) - 1;
  const bool apart = IsMeasured(mode) && !IsMultichannel(mode) && last >= 1;
  return apart ? CycleBoundaries(tracks, slot) : std::vector<std::int32_t>{0, std::max(last, 0)};
}

double ArrayMax(std::span<const double> values) {
  return *std::max_element(values.begin(), values.end());
}

double ArrayMin(std::span<const double> values) {
  return *std::min_element(values.begin(), values.end());
}

std::optional<double> Log10OrEmpty(double x) {
  if (!(x > 0)) return std::nullopt;
  return std::log(x) / 2.302585093;
}

}  // namespace zento
