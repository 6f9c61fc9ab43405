// The analyses of the fullest tracks, 40001 points, each with its peer.

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "analysis/kl_form.h"
#include "analysis/oxygen.h"
#include "analysis/smoothing.h"
#include "analysis/test_definitions.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "core/tables.h"
#include "core/track_store.h"
#include "host/desktop.h"
#include "host/virtual/virtual_host.h"

namespace {

using namespace zento;

// Smoothing with a window of 15, and of 21 such tracks with three columns each. Peers: one
// operation a point over the same data, and the filters as they are defined, a sum a point.

constexpr int kPoints = 40'001;

std::vector<double> NoisyValues() {
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
  const std::vector<double> y = NoisyValues();
  std::vector<double> out(y.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < y.size(); ++i) out[i] = 0.5 * y[i];
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(PeerOneOperation)->Unit(benchmark::kMicrosecond);

void SmoothColumn(benchmark::State& state) {
  const std::vector<double> y = NoisyValues();
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
  const std::vector<double> y = NoisyValues();
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

// The oxygen evaluation. Goal: under 10 ms at a step of 1 mV, and time that grows with points plus
// steps. The peer is the definition carried out literally, which scans from its search index for
// every step: near the vertex that is the rest of the track each time.

constexpr std::array<double, 3> kVertices = {1.2, 0.05, 1.2};

// A sweep there and back with the noise of a board.
struct Track {
  std::vector<double> volts, disk, ring;

  explicit Track(std::size_t points) {
    std::mt19937 random(1);
    std::normal_distribution<> noise(0, 1e-4);
    for (std::size_t i = 0; i < points; ++i) {
      const double way = 2.0 * static_cast<double>(i) / static_cast<double>(points - 1);
      const double volt = kVertices[1] + (kVertices[0] - kVertices[1]) * std::fabs(1 - way);
      volts.push_back(volt + noise(random));
      disk.push_back(-1.5e-3 / (1 + std::exp((volt - 0.8) / 0.03)) * (1 + noise(random)));
      ring.push_back(-0.01 * disk.back());
    }
  }
};

using Evaluation = OxygenShares (*)(const Track&, const OxygenSettings&);

OxygenShares Ours(const Track& track, const OxygenSettings& settings) {
  return EvaluateOxygen(track.volts, track.disk, track.ring, kVertices, settings).value();
}

OxygenShares Literal(const Track& track, const OxygenSettings& settings) {
  return LiteralOxygen(track.volts, track.disk, track.ring, kVertices, settings);
}

// Arguments: points, step and half-width in microvolts.
void Evaluate(benchmark::State& state, Evaluation evaluation) {
  const Track track(static_cast<std::size_t>(state.range(0)));
  const OxygenSettings settings{0.39, static_cast<double>(state.range(1)) * 1e-6,
                                static_cast<double>(state.range(2)) * 1e-6};
  std::size_t lines = 0;
  for (auto _ : state) {
    const OxygenShares shares = evaluation(track, settings);
    lines = shares.size();
    benchmark::DoNotOptimize(shares.water.data());
  }
  state.counters["lines"] = static_cast<double>(lines);
}

void Cases(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond)->ArgNames({"points", "step_uV", "half_width_uV"});
  bench->Args({40001, 50000, 10000});  // as usual
  bench->Args({40001, 1000, 500});     // windows side by side
  bench->Args({40001, 1000, 10000});   // the goal's
  bench->Args({20001, 1000, 10000});   // half the points
  bench->Args({40001, 1000, 20000});   // the settings' own half-width
  bench->Args({40001, 100, 50});       // ten times the steps
  bench->Args({40001, 1000, 300000});  // windows that reach beyond the vertex for long
}

BENCHMARK_CAPTURE(Evaluate, ours, Ours)->Apply(Cases);
BENCHMARK_CAPTURE(Evaluate, literal, Literal)->Apply(Cases);

// A whole Koutecky-Levich calculation of the fullest store: 21 tracks, plot and report included,
// with half of the points and with all of them inside the potential window. Beside it the means
// alone, by a plain loop that asks the store for every value; plot, fit and report are not in its
// time. Both see the same points, and their results are held against each other first.

// Ring-disk sweeps from 1.2 to 0.2 V and back. The window begins at 0.2 V: half a volt of it holds
// half of the points, one above 1 V all of them.
void Fill(Workstation& ws, double window) {
  ws.tracks.kl.Resize();
  for (int track = 0; track < kTracks; ++track) {
    TrackRecord& record = ws.tracks.Record(track);
    record.Mode = kModeRDE;
    record.RPM = 400 + 100 * track;
    record.pnum = kMaxPoints;
    for (std::int32_t i = 0; i < kMaxPoints; ++i) {
      const double volts = 0.2 + std::abs(1 - i / 20000.0);
      ws.tracks.SetValue(0, track, i, volts);
      ws.tracks.SetValue(1, track, i, -1e-4 * std::sqrt(record.RPM) - 1e-9 * (i % 17));
    }
    ws.tracks.kl.KLUseFlag[static_cast<std::size_t>(track)] = 1;
  }
  ws.settings.KLVuse = 0.2 + window / 2;
  ws.settings.KLVrange = window / 2;
  ws.settings.KLMethod = 1;  // its y is the mean current over the area
}

std::vector<double> PlainMeans(const Workstation& ws) {
  const double low = ws.settings.KLVuse - ws.settings.KLVrange;
  const double high = ws.settings.KLVuse + ws.settings.KLVrange;
  std::vector<double> means;
  for (int track = 0; track < kTracks; ++track) {
    double sum = 0;
    int count = 0;
    for (std::int32_t i = 0; i < ws.tracks.PointCount(track); ++i) {
      const double volts = ws.tracks.Value(0, track, i);
      if (volts < low || volts >= high) continue;
      sum += ws.tracks.Value(1, track, i);
      ++count;
    }
    means.push_back(sum / count);
  }
  return means;
}

bool SameMeans(const Workstation& ws, const AnalysisForm& form) {
  const std::vector<double> means = PlainMeans(ws);
  if (form.result().columns.empty()) return false;
  const std::vector<double>& densities = form.result().columns.back().values;
  if (densities.size() != means.size()) return false;
  for (std::size_t i = 0; i < means.size(); ++i) {
    const double expected = std::abs(means[i]) / ws.settings.KLElectrodeArea;
    if (!(std::abs(densities[i] / expected - 1) < 1e-12)) return false;
  }
  return true;
}

double Volts(const benchmark::State& state) {
  return static_cast<double>(state.range(0)) / 1000;
}

void Calculation(benchmark::State& state) {
  VirtualHost machine;
  Workstation ws;
  ApplyDefaultSettings(ws);
  Fill(ws, Volts(state));
  machine.desktop.Register("frmKoutecky_Levich",
                           [&] { return std::make_unique<frmKoutecky_Levich>(ws, machine.host); });
  auto* form = machine.desktop.LoadAs<frmKoutecky_Levich>("frmKoutecky_Levich");
  for (auto _ : state) form->Calculate();
  if (!SameMeans(ws, *form)) state.SkipWithError("other means than those of the plain loop");
}
BENCHMARK(Calculation)->ArgName("window_mV")->Arg(500)->Arg(1010)->Unit(benchmark::kMillisecond);

void PeerPlainLoop(benchmark::State& state) {
  Workstation ws;
  Fill(ws, Volts(state));
  for (auto _ : state) benchmark::DoNotOptimize(PlainMeans(ws));
}
BENCHMARK(PeerPlainLoop)->ArgName("window_mV")->Arg(500)->Arg(1010)->Unit(benchmark::kMillisecond);

}  // namespace
