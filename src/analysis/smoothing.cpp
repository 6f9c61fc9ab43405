#include "analysis/smoothing.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/track_points.h"
#include "analysis/vector_passes.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_store.h"

namespace zento {
namespace {

const SmoothingPasses& BestPasses() {
#ifdef ZENTO_AVX2
  if (HasAvx2()) return Avx2Smoothing();
#endif
  return BaselineSmoothing();
}

void Pass(const Smoothing& smoothing, const double* y, double* out, std::size_t blocks) {
  static const SmoothingPasses& passes = BestPasses();
  const auto half = static_cast<std::size_t>(smoothing.points / 2);
  switch (smoothing.method) {
    case SmoothingMethod::kMovingAverage:
      return passes.average(y, out, blocks, half);
    case SmoothingMethod::kSavitzkyGolay:
      return passes.weigh(y, out, blocks, half, smoothing.row.a.data(), smoothing.row.divisor);
    case SmoothingMethod::kSpikes:
      return passes.suppress(y, out, blocks, half, smoothing.w);
  }
}

// Where a sweep that begins at `first` and goes to `vertex` ends.
std::int32_t SweepEnd(const TrackStore& tracks, int track, std::int32_t first, double vertex) {
  const std::int32_t last = tracks.PointCount(track) - 1;
  std::int32_t end = FindVertex(tracks, track, first, vertex);
  const auto current = [&](std::int32_t point) { return std::fabs(tracks.Value(1, track, point)); };
  if (end > first && end < last && current(end) < current(end - 1)) --end;
  return end > last - 2 ? last : std::max(end, first);
}

void SmoothColumn(TrackStore& tracks, int column, int track, const Smoothing& smoothing,
                  const std::vector<PointStretch>& stretches, int slot) {
  const std::span<const double> y = tracks.Points(column, track);
  std::vector<double>& out = tracks.Column(column, slot);
  if (out.size() < y.size()) out.resize(y.size());
  for (const auto& [first, last] : stretches) {
    const auto at = static_cast<std::size_t>(first);
    const auto count = static_cast<std::size_t>(last) - at + 1;
    Smooth(y.subspan(at, count), smoothing, std::span<double>(out).subspan(at, count));
  }
}

}  // namespace

void Smooth(std::span<const double> y, const Smoothing& smoothing, std::span<double> out) {
  if (y.empty()) return;
  const std::size_t count = y.size();
  const auto half = static_cast<std::size_t>(smoothing.points / 2);
  // Windows within the values are read where they are; those at the ends from a copy in which the
  // ends' values are repeated: `half` points at each end, and what is left over from the blocks.
  // The last of such blocks may reach beyond `to`; what it computes there is not taken over.
  const std::size_t inner_blocks = count > 2 * half ? (count - 2 * half) / kSmoothedAtOnce : 0;
  const std::size_t inner_end = half + inner_blocks * kSmoothedAtOnce;
  if (inner_blocks > 0) Pass(smoothing, y.data(), out.data() + half, inner_blocks);
  const auto value = [&](std::ptrdiff_t point) {
    return y[static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(point, 0, static_cast<std::ptrdiff_t>(count) - 1))];
  };
  std::vector<double> window(kSmoothedAtOnce + 2 * half);
  std::array<double, kSmoothedAtOnce> smoothed{};
  const auto end_block = [&](std::size_t from, std::size_t to) {
    for (std::size_t i = 0; i < window.size(); ++i) {
      window[i] = value(static_cast<std::ptrdiff_t>(from + i) - static_cast<std::ptrdiff_t>(half));
    }
    Pass(smoothing, window.data(), smoothed.data(), 1);
    std::copy_n(smoothed.begin(), to - from, out.begin() + static_cast<std::ptrdiff_t>(from));
  };
  const auto ends = [&](std::size_t from, std::size_t to) {
    for (; from < to; from = std::min(to, from + kSmoothedAtOnce)) {
      end_block(from, std::min(to, from + kSmoothedAtOnce));
    }
  };
  ends(0, inner_blocks > 0 ? half : count);
  if (inner_blocks > 0) ends(inner_end, count);

  if (smoothing.method == SmoothingMethod::kSpikes) out.front() = y.front();
  if (smoothing.skip <= 0) return;
  const std::size_t kept = std::min(count, static_cast<std::size_t>(smoothing.skip) + 1);
  std::copy_n(y.begin(), kept, out.begin());
  std::copy_n(y.end() - static_cast<std::ptrdiff_t>(kept), kept,
              out.end() - static_cast<std::ptrdiff_t>(kept));
}

std::vector<PointStretch> SmoothedStretches(const TrackStore& tracks, int track) {
  const TrackRecord& record = tracks.Record(track);
  const std::int32_t last = tracks.PointCount(track) - 1;
  if (last < 0) return {};
  if (XIsTime(record.Mode) || XIsRotationRate(record.Mode) || IsMultichannel(record.Mode)) {
    return {{0, last}};
  }
  if (!IsSweep(record.Mode)) return {};
  std::vector<PointStretch> stretches;
  std::int32_t first = 0;
  for (std::size_t sweep = 1; first < last || stretches.empty(); ++sweep) {
    const std::int32_t end = SweepEnd(tracks, track, first, record.V[sweep % 3]);
    stretches.push_back({first, end});
    first = end + 1;
  }
  return stretches;
}

std::size_t StretchesThatTurn(TrackStore& tracks, int track) {
  if (!IsSweep(tracks.Record(track).Mode)) return 0;
  const std::span<const double> x = tracks.Points(0, track);
  if (x.empty()) return 0;
  const double noise = 0.05 * (ArrayMax(x) - ArrayMin(x));
  std::size_t turning = 0;
  for (const auto& [first, last] : SmoothedStretches(tracks, track)) {
    const auto at = static_cast<std::size_t>(first);
    const auto [low, high] = std::minmax(x[at], x[static_cast<std::size_t>(last)]);
    const auto its = x.subspan(at, static_cast<std::size_t>(last) - at + 1);
    turning += ArrayMax(its) > high + noise || ArrayMin(its) < low - noise ? 1 : 0;
  }
  return turning;
}

bool SmoothTrack(TrackStore& tracks, int track, const Smoothing& smoothing, bool x_axis, int slot) {
  const std::vector<PointStretch> stretches = SmoothedStretches(tracks, track);
  if (stretches.empty()) return false;
  Smoothing its = smoothing;
  its.w = tracks.Record(track).DiskYscale / 1000;
  tracks.CopyTrackHeader(track, slot);
  const std::int32_t mode = tracks.Record(track).Mode;
  for (int column = 0; column < kTrackColumns; ++column) {
    const bool current = column == 1 || (column == 2 && (HasRing(mode) || IsMultichannel(mode)));
    if (current || (column == 0 && x_axis)) {
      SmoothColumn(tracks, column, track, its, stretches, slot);
    } else {
      PutPoints(tracks, column, slot, tracks.Points(column, track));
    }
  }
  return true;
}

}  // namespace zento
