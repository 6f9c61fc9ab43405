// What a check of a long macro costs: eight hours with twelve measurements (voltammograms,
// ring-disk voltammograms at four rates, steps, ramps) and waits, on the oxygen cell. The peer: the
// simulated bench alone, read as seldom as a monitor would, for the same eight hours.

#include <benchmark/benchmark.h>

#include <string>

#include "core/track_store.h"
#include "host/virtual/memory_services.h"
#include "program/dry_run.h"
#include "sim/bench.h"

namespace {

using namespace zento;

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

class Hands : public Clock {
 public:
  std::int64_t Micros() const override { return micros; }
  CalendarTime Now() const override { return {}; }
  void Spend(std::int64_t spent) override { micros += spent; }
  std::int64_t micros = 0;
};

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
