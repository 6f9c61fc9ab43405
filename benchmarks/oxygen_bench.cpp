// The oxygen evaluation of a track of 40001 points. Goal: under 10 ms at a step of 1 mV, and time
// that grows with points plus steps. The peer is the definition carried out literally, which scans
// from its search index for every step: near the vertex that is the rest of the track each time.

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "analysis/oxygen.h"
#include "analysis/test_definitions.h"

namespace {

using namespace zento;

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

}  // namespace
