// What the simulated bench costs: the default two-cycle voltammogram (80 s at 50 mV/s after 5 s of
// rest, 100 ticks a second, 100 readings of two inputs a tick) through the vendor's table.

#include <benchmark/benchmark.h>

#include <initializer_list>
#include <string_view>

#include "host/clock.h"
#include "sim/bench.h"
#include "sim/couple_cell.h"

namespace {

using zento::CalendarTime;
using namespace zento::sim;

class Hands : public zento::Clock {
 public:
  std::int64_t Micros() const override { return micros; }
  CalendarTime Now() const override { return {}; }
  void Spend(std::int64_t spent) override { micros += spent; }
  std::int64_t micros = 0;
};

double Voltammogram(const Parameters& parameters) {
  Hands clock;
  Bench bench(clock, parameters);
  zento::vendor::Libraries libraries = bench.Libraries();
  libraries.dask.Register_Card(22, 0);
  libraries.gpib.GpIni();
  const std::int32_t addresses[] = {2, 0, 7};
  for (const std::string_view line :
       {"SR0",     "F1ED1",   "VF-0200", "RT50E-3", "STEP",    "HT005E0", "YF1",     "F101",
        "VF-0200", "RT50E-3", "HT000E0", "YF0",     "F102",    "VF+1200", "RT50E-3", "HT000E0",
        "YF0",     "F103",    "VF+0600", "RT50E-3", "HT000E0", "YF0",     "F104",    "VF-0200",
        "RT50E-3", "HT000E0", "YF0",     "ET4",     "ED0",     "A1"}) {
    libraries.gpib.GpTalk(addresses, static_cast<std::int32_t>(line.size()), line.data());
  }
  double sum = 0;
  for (int tick = 0; tick < 8500; ++tick) {
    clock.micros = (tick + 1) * std::int64_t{10000};
    for (int i = 0; i < 100; ++i) {
      double volts = 0;
      libraries.dask.AI_VReadChannel(0, 0, 3, &volts);
      sum += volts;
      libraries.dask.AI_VReadChannel(0, 1, 3, &volts);
      sum += volts;
    }
  }
  return sum;
}

void Report(benchmark::State& state) {
  constexpr double kSeconds = 85;
  state.counters["times real time"] = benchmark::Counter(
      kSeconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void DefaultVoltammogram(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Voltammogram(Parameters()));
  Report(state);
}
BENCHMARK(DefaultVoltammogram)->Unit(benchmark::kMillisecond);

// The peer: the same readings with nothing but the physics.
void VoltammogramWithoutNoise(benchmark::State& state) {
  Parameters parameters;
  parameters.noise = parameters.mains = parameters.bits = 0;
  for (auto _ : state) benchmark::DoNotOptimize(Voltammogram(parameters));
  Report(state);
}
BENCHMARK(VoltammogramWithoutNoise)->Unit(benchmark::kMillisecond);

// One step of the couple cell, at rest and with the disk rotating.
void CellStep(benchmark::State& state) {
  const double omega = static_cast<double>(state.range(0));
  CoupleCell cell({}, 0.2);
  double volts = 0.2;
  double rate = 1e-4;
  for (auto _ : state) {
    if (volts > 0.4 || volts < 0.1) rate = -rate;
    volts += rate;
    benchmark::DoNotOptimize(cell.Step(1e-3, {volts, omega}));
  }
}
BENCHMARK(CellStep)->Arg(0)->Arg(168);

void OneConversion(benchmark::State& state) {
  const Parameters parameters;
  Random random(1);
  Board board(parameters, random);
  std::int64_t micros = 0;
  for (auto _ : state) {
    micros += 25;
    benchmark::DoNotOptimize(board.Volts(board.Disturb(0.1, micros), 2.5));
  }
}
BENCHMARK(OneConversion);

}  // namespace
