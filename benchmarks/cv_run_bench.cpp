// A whole measurement through the window on the simulated bench, in virtual time: the default
// two-cycle voltammogram, 80 s at 100 ticks a second with 100 readings of two inputs each, behind
// 10 s of retain time. Goal: under 1 s. The peer is the bench alone (bench_bench).

#include <benchmark/benchmark.h>

#include <memory>

#include "core/settings_file.h"
#include "core/track_store.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/cv_form.h"
#include "measure/measure_forms.h"
#include "sim/bench.h"

namespace {

using namespace zento;

void DefaultVoltammogram(benchmark::State& state) {
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
BENCHMARK(DefaultVoltammogram)->Unit(benchmark::kMillisecond);

}  // namespace
