// A whole measurement through the windows, in virtual time on the simulated bench: the two-cycle
// voltammogram that the CV window offers first, 80 s of sweep and 10 s of waiting, 100 points a
// second, each the mean of 100 readings on 2 channels: 1.8 million conversions with their physics,
// noise and quantisation.
//
// Goal: under 1 s. The peer is the wall clock: the same takes 90 s in real time.

#include <benchmark/benchmark.h>

#include <cstdlib>

#include "app/main_program.h"
#include "host/virtual/virtual_host.h"
#include "measure/cv_form.h"

namespace zento {
namespace {

void BM_DefaultVoltammogram(benchmark::State& state) {
  double virtual_seconds = 0;
  std::int32_t points = 0;
  for (auto _ : state) {
    VirtualHost machine;
    MainProgram program(machine.host, {sim::Parameters(), "/home"});
    if (!program.Start().ok()) return state.SkipWithError("the program did not start");
    auto* form = dynamic_cast<frmMeasureCV*>(machine.desktop.Show("frmMeasureCV"));
    if (form == nullptr) return state.SkipWithError("the window did not open");
    form->SetVoltage(-0.2, 1.2, 0.6);
    const std::int64_t began = machine.clock.Micros();
    form->StartMeasurement();
    const auto idle = [&] { return program.workstation().running_flag == 0; };
    if (!machine.RunUntil(idle, 600'000'000)) return state.SkipWithError("the run did not end");
    virtual_seconds = static_cast<double>(machine.clock.Micros() - began) / 1e6;
    points = program.workstation().tracks.Record(0).pnum;
  }
  state.counters["virtual_s"] = virtual_seconds;
  state.counters["points"] = points;
}
BENCHMARK(BM_DefaultVoltammogram)->Unit(benchmark::kMillisecond)->MinTime(3);

}  // namespace
}  // namespace zento
