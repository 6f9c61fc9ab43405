// Smoothing of 40001 points with a window of 15, and of 21 such tracks with three columns each.
// Peers: one operation a point over the same data, and the filters as they are defined, a sum a
// point.

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "analysis/smoothing.h"
#include "analysis/test_definitions.h"
#include "core/tables.h"
#include "core/track_store.h"

namespace {

using namespace zento;

constexpr int kPoints = 40'001;

std::vector<double> Values() {
  std::vector<double> values(kPoints);
  for (int i = 0; i < kPoints; ++i) {
    values[static_cast<std::size_t>(i)] = std::sin(i * 1e-3) + 0.01 * std::cos(17.0 * i);
  }
  return values;
}

Smoothing Window15(SmoothingMethod method) {
  return {method, 15, {1105, {167, 162, 147, 122, 87, 42, -13, -78}}, 0.01, 0};
}

void PeerOneOperation(benchmark::State& state) {
  const std::vector<double> y = Values();
  std::vector<double> out(y.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < y.size(); ++i) out[i] = 0.5 * y[i];
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(PeerOneOperation)->Unit(benchmark::kMicrosecond);

void SmoothColumn(benchmark::State& state) {
  const std::vector<double> y = Values();
  std::vector<double> out(y.size());
  const Smoothing smoothing = Window15(static_cast<SmoothingMethod>(state.range(0)));
  for (auto _ : state) {
    Smooth(y, smoothing, out);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(SmoothColumn)->ArgName("method")->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

void PeerPlainSums(benchmark::State& state) {
  const std::vector<double> y = Values();
  const Smoothing smoothing = Window15(static_cast<SmoothingMethod>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(LiteralSmooth(y, smoothing));
}
BENCHMARK(PeerPlainSums)->ArgName("method")->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

// Ring-disk voltammograms of 20 sweeps: vertices found, header and all columns written.
void SmoothAllTracks(benchmark::State& state) {
  TrackStore tracks;
  for (int track = 0; track < kTracks; ++track) {
    TrackRecord& record = tracks.Record(track);
    record.Mode = kModeRDE;
    record.V = {0, 1, 0};
    record.pnum = kPoints;
    for (int i = 0; i < kPoints; ++i) {
      const int phase = i % 4000;
      tracks.SetValue(0, track, i, 5e-4 * (phase < 2000 ? phase : 4000 - phase));
      tracks.SetValue(1, track, i, 1e-5 * std::sin(i * 1e-3));
      tracks.SetValue(2, track, i, 1e-6 * std::cos(i * 1e-3));
    }
  }
  const Smoothing smoothing = Window15(static_cast<SmoothingMethod>(state.range(0)));
  for (auto _ : state) {
    for (int track = 0; track < kTracks; ++track) {
      if (!SmoothTrack(tracks, track, smoothing, true, kScratchSlot)) {
        state.SkipWithError("nothing was smoothed");
      }
      tracks.CopyTrackData(kScratchSlot, track);
    }
  }
}
BENCHMARK(SmoothAllTracks)->ArgName("method")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

}  // namespace
