// What the simulated bench costs, alone and below measurements and macros, all in virtual time.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "core/settings.h"
#include "core/settings_file.h"
#include "core/settings_table.h"
#include "core/track_store.h"
#include "devices/instruments.h"
#include "graph/graph_form.h"
#include "host/clock.h"
#include "host/desktop.h"
#include "host/services.h"
#include "host/virtual/memory_services.h"
#include "host/virtual/virtual_host.h"
#include "measure/cv_form.h"
#include "program/dry_run.h"
#include "sim/bench.h"
#include "sim/couple_cell.h"
#include "sim/test_support.h"
#include "text/status.h"

namespace {

using namespace zento;

// The default two-cycle voltammogram (80 s at 50 mV/s after 5 s of rest, 100 ticks a second, 100
// readings of two inputs a tick) through the vendor's table.

class Hands : public Clock {
 public:
  std::int64_t Micros() const override { return micros; }
  CalendarTime Now() const override { return {}; }
  void Spend(std::int64_t spent) override { micros += spent; }
  std::int64_t micros = 0;
};

constexpr double kVoltammogramSeconds = 85;

double Voltammogram(const sim::Parameters& parameters) {
  Hands clock;
  sim::Bench bench(clock, parameters);
  vendor::Libraries libraries = bench.Libraries();
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

void Report(benchmark::State& state, double seconds) {
  state.counters["times real time"] = benchmark::Counter(
      seconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void DefaultVoltammogram(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Voltammogram(sim::Parameters()));
  Report(state, kVoltammogramSeconds);
}
BENCHMARK(DefaultVoltammogram)->Unit(benchmark::kMillisecond);

// The peer: the same readings with nothing but the physics.
void VoltammogramWithoutNoise(benchmark::State& state) {
  sim::Parameters parameters;
  parameters.noise = parameters.mains = parameters.bits = 0;
  for (auto _ : state) benchmark::DoNotOptimize(Voltammogram(parameters));
  Report(state, kVoltammogramSeconds);
}
BENCHMARK(VoltammogramWithoutNoise)->Unit(benchmark::kMillisecond);

// One step of the couple cell, at rest and with the disk rotating.
void CellStep(benchmark::State& state) {
  const double omega = static_cast<double>(state.range(0));
  sim::CoupleCell cell({}, 0.2);
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
  const sim::Parameters parameters;
  sim::Random random(1);
  sim::Board board(parameters, random);
  std::int64_t micros = 0;
  for (auto _ : state) {
    micros += 25;
    benchmark::DoNotOptimize(board.Volts(board.Disturb(0.1, micros), 2.5));
  }
}
BENCHMARK(OneConversion);

// A whole measurement through the window: the same voltammogram behind 10 s of retain time. Goal:
// under 1 s. The peer is the bench alone, above.

void VoltammogramThroughTheWindow(benchmark::State& state) {
  std::int32_t points = 0;
  for (auto _ : state) {
    VirtualHost machine;
    Workstation ws;
    sim::Bench bench(machine.clock, sim::Parameters());
    Instruments instruments(ws, machine.host, bench.Libraries());
    machine.desktop.Register("Graph1",
                             [&] { return std::make_unique<Graph>(machine.host, "Graph1"); });
    RegisterMeasureForms(machine.desktop, ws, machine.host, instruments);
    ApplyDefaultSettings(ws);
    ws.settings.ADBoard = 2;
    ws.settings.GPIBControl = 2;
    auto* cv = dynamic_cast<frmMeasureCV*>(machine.desktop.Show("frmMeasureCV"));
    cv->SetVoltage(-0.2, 1.2, 0.6);
    cv->StartMeasurement();
    machine.RunUntil([&] { return ws.running_flag == 0; }, 200'000'000);
    points = ws.tracks.Record(0).pnum;
  }
  state.counters["points"] = points;
}
BENCHMARK(VoltammogramThroughTheWindow)->Unit(benchmark::kMillisecond);

// The ring-disk bench through the drivers, as the measurement reads it: five channels, 500 rounds,
// two points a second, with the feedback on the rotation rate. Goal: 500 times real time on one
// core. The peer is the same series of readings without noise, which leaves the physics and the
// drivers.

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
  Report(state, 4 * 52);
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
  Report(state, kSeconds);
}
BENCHMARK(Night)
    ->ArgNames({"ms", "rounds"})
    ->Args({60'000, 1})
    ->Args({1000, 1})
    ->Args({500, 20})
    ->Unit(benchmark::kMillisecond);

// What a check of a long macro costs: eight hours with twelve measurements (voltammograms,
// ring-disk voltammograms at four rates, steps, ramps) and waits, on the oxygen cell. The peer: the
// simulated bench alone, read as seldom as a monitor would, for the same eight hours.

constexpr char kSweep[] =
    ".Voltage 1 0.2 1\n.RetainTime 10\n.Scanrate 5\n.Repeat 6\n.SamplingRate 5\n.Accumlation 200\n";

// Every line begins with the group's name.
std::string Group(const std::string& name, const std::string& lines) {
  std::string out;
  for (std::size_t at = 0; at < lines.size();) {
    const std::size_t end = lines.find('\n', at) + 1;
    out += name + lines.substr(at, end - at);
    at = end;
  }
  return out;
}

std::string Night() {
  std::string text;
  int track = 0;
  const auto next_track = [&track] { return ".RecordTrack " + std::to_string(track++) + "\n"; };
  for (const int rpm : {400, 900, 1600, 2025}) {
    text += "RDEMeasureMode\n" + Group("RDE", kSweep) +
            Group("RDE", next_track() + ".RPM " + std::to_string(rpm) + "\n.Start\n") + "RDE.END\n";
    text += "CVMeasureMode\n" + Group("CV", kSweep) + Group("CV", next_track() + ".Start\n") +
            "CV.END\nWait 1500000\n";
  }
  for (int i = 0; i < 2; ++i) {
    text += Group("PS", next_track() +
                            ".Voltage 1 0.2\n.MeasureMode 0\n.RetainTime 60\n.MeasureTime "
                            "1800\n.InitSamplingRate 10\n.Accumlation 50\n.Start\n");
    text += Group("RPMvsi", next_track() +
                                ".mode 2\n.Potential 0.2\n.RetainTime 10\n.RPM 200 2000 "
                                "1.5\n.SamplingRate 1\n.Accumlation 1000\n.Start\n");
  }
  return text + "Wait 1500000\n";
}

CheckQuestion Question() {
  CheckQuestion question{Night(), "night.zmc", "/home/lab", {}};
  if (!sim::SetFromText(question.cell, "cell=oxygen").ok()) std::abort();
  return question;
}

void CheckOfEightHours(benchmark::State& state) {
  const CheckQuestion question = Question();
  double hours = 0;
  double measurements = 0;
  for (auto _ : state) {
    MemoryFiles files;
    const auto check = CheckMacro(question, files);
    if (!check.ok() || !check->verdict.Clean()) {
      state.SkipWithError("the macro is not carried out");
      return;
    }
    hours = static_cast<double>(check->total) / 3.6e6;
    measurements = static_cast<double>(check->tracks.size());
  }
  state.counters["hours"] = hours;
  state.counters["tracks"] = measurements;
}
BENCHMARK(CheckOfEightHours)->Unit(benchmark::kSecond);

void BenchAloneForEightHours(benchmark::State& state) {
  for (auto _ : state) {
    Hands clock;
    sim::Bench bench(clock, Question().cell);
    auto libraries = bench.Libraries();
    libraries.dask.Register_Card(22, 0);
    for (std::int64_t second = 1; second <= 8 * 3600; ++second) {
      clock.micros = second * 1'000'000;
      double volts = 0;
      libraries.dask.AI_VReadChannel(0, 1, 3, &volts);
      benchmark::DoNotOptimize(volts);
    }
  }
}
BENCHMARK(BenchAloneForEightHours)->Unit(benchmark::kSecond);

}  // namespace
