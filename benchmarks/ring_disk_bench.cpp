// The ring-disk bench through the drivers, as the measurement reads it: five channels, 500 rounds,
// two points a second, with the feedback on the rotation rate. Goal: 500 times real time on one
// core. The peer is the same series of readings without noise, which leaves the physics and the
// drivers.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "core/settings_table.h"
#include "devices/instruments.h"
#include "host/virtual/virtual_host.h"
#include "sim/bench.h"
#include "sim/test_support.h"

namespace {

using namespace zento;

constexpr std::array<std::uint8_t, 5> kChannels = {0, 1, 2, 3, 4};

struct Laboratory {
  explicit Laboratory(const sim::Parameters& parameters) : bench(machine.clock, parameters) {
    SetAllToDefaults(ws.settings);
    ws.settings.ADBoard = 2;
    ws.settings.GPIBControl = 2;
    ws.settings.DABoard = 1;
    ws.settings.PowerControl = 2;
    ws.rpm_calibration = {{100, 0.1}, {5000, 5.0}};
    instruments.analog_input.Open();
    instruments.analog_output.Open();
    instruments.gpib.InitialiseLink();
  }

  // Ticks every `interval` seconds for `seconds`, `rounds` readings of the five channels each.
  // Returns the last tick's sums.
  std::array<double, 5> Read(double seconds, double interval, int rounds, double rpm) {
    std::array<double, 5> sums{};
    std::int64_t due = machine.clock.Micros();
    const std::int64_t end = due + static_cast<std::int64_t>(seconds * 1e6);
    while (due < end) {
      due += static_cast<std::int64_t>(interval * 1e6);
      machine.clock.AdvanceTo(due);
      if (!instruments.analog_input.ReadSum(kChannels, rounds, sums)) std::abort();
      const double measured = sums[4] / rounds * 1000;
      double nudge = measured < rpm - 10 ? 0.0005 : measured > rpm + 10 ? -0.0005 : 0.0;
      if (rpm > 0 && measured > 100 && nudge != 0.0) instruments.rotation.Nudge(nudge);
    }
    return sums;
  }

  VirtualHost machine;
  Workstation ws;
  sim::Bench bench;
  Instruments instruments{ws, machine.host, bench.Libraries()};
};

void Rate(benchmark::State& state, double seconds) {
  state.counters["times real time"] = benchmark::Counter(
      seconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// 1.0 V to 0.2 V and back at 50 mV/s behind 10 s of rest, at four rates, with 10 s of monitoring
// after each.
void Series(benchmark::State& state, const sim::Parameters& parameters) {
  for (auto _ : state) {
    Laboratory lab(parameters);
    for (std::int32_t rpm : {400, 900, 1600, 2400}) {
      lab.instruments.generator.ProgrammeCyclicSweep(1, std::array{1.0, 0.2, 1.0}, 50, 10);
      lab.instruments.generator.OutputOn();
      lab.instruments.rotation.SetRotation(rpm);
      const auto sums = lab.Read(42, 0.5, 500, rpm);
      if (sums[3] / 500 < 1e-4) state.SkipWithError("no ring current");
      lab.instruments.generator.OutputOff();
      lab.instruments.rotation.SetRotation(0);
      lab.Read(10, 0.5, 500, 0);
    }
  }
  Rate(state, 4 * 52);
}

void RingDiskSeries(benchmark::State& state) {
  Series(state, sim::With({"cell=oxygen"}));
}
BENCHMARK(RingDiskSeries)->Unit(benchmark::kMillisecond);

void RingDiskSeriesWithoutNoise(benchmark::State& state) {
  Series(state, sim::With({"cell=oxygen", "noise=0", "mains=0", "bits=0"}));
}
BENCHMARK(RingDiskSeriesWithoutNoise)->Unit(benchmark::kMillisecond);

// Eight hours, read by a monitor (argument: times a second, rounds) while nothing else happens.
void Night(benchmark::State& state) {
  constexpr double kSeconds = 8 * 3600;
  const double interval = static_cast<double>(state.range(0)) / 1000;
  const auto rounds = static_cast<int>(state.range(1));
  for (auto _ : state) {
    Laboratory lab(sim::With({"cell=oxygen"}));
    benchmark::DoNotOptimize(lab.Read(kSeconds, interval, rounds, 0));
  }
  Rate(state, kSeconds);
}
BENCHMARK(Night)
    ->ArgNames({"ms", "rounds"})
    ->Args({60'000, 1})
    ->Args({1000, 1})
    ->Args({500, 20})
    ->Unit(benchmark::kMillisecond);

}  // namespace
