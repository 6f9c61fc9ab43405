// What a tick of the multichannel monitor costs beyond the board's own conversions: 100 rounds of
// 20 inputs, averaged, scaled, kept, its ten currents shown as numbers and drawn as ten more
// points, against the bare loop of the same 2000 calls of the vendor's table. The board answers at
// once, so the difference of the two is our own work; full redraws of the growing plot are part of
// it.
//
// Goal: at most 50 us of our own work.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <memory>

#include "core/settings_file.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/measure_form.h"
#include "measure/multi_form.h"
#include "paper_view.h"

namespace {

using namespace zento;

constexpr int kInputs = 20;
constexpr int kRounds = 100;
constexpr std::int64_t kSecond = 1'000'000;

vendor::Libraries Tables() {
  vendor::Libraries tables;
  tables.dask.Register_Card = [](std::uint16_t, std::uint16_t) { return std::int16_t{0}; };
  tables.dask.AI_VReadChannel = [](std::uint16_t, std::uint16_t channel, std::uint16_t, double* v) {
    *v = 0.1 * channel;
    return std::int16_t{0};
  };
  return tables;
}

void Tick(benchmark::State& state) {
  VirtualHost machine;
  Workstation ws;
  ApplyDefaultSettings(ws);
  ws.settings.ADBoard = 2;
  ws.settings.MMAccum = kRounds;
  Instruments instruments(ws, machine.host, Tables());
  machine.desktop.Register("Graph1",
                           [&] { return std::make_unique<Graph>(machine.host, "Graph1"); });
  RegisterMeasureForms(machine.desktop, ws, machine.host, instruments);
  PaperView paper;
  machine.desktop.Load("Graph1")->SetView(&paper);
  auto* form = machine.desktop.LoadAs<frmMultipotentiostat>("frmMultipotentiostat");
  form->SetView(&paper);
  form->opnMMMeas.Select(1);
  form->chkiMon.SetValue(1);
  form->StartMeasurement();
  for (auto _ : state) {
    machine.clock.Spend(kSecond);
    form->timer.on_tick();
    if (ws.running_flag != 0) continue;
    state.PauseTiming();  // 20001 points: the run has ended
    form->StartMeasurement();
    state.ResumeTiming();
  }
  form->SetView(nullptr);
  machine.desktop.Find("Graph1")->SetView(nullptr);
}
BENCHMARK(Tick)->Unit(benchmark::kMicrosecond);

void BareCalls(benchmark::State& state) {
  const vendor::Libraries tables = Tables();
  for (auto _ : state) {
    std::array<double, kInputs> sums{};
    for (int round = 0; round < kRounds; ++round) {
      for (std::size_t i = 0; i < sums.size(); ++i) {
        double volts = 0;
        tables.dask.AI_VReadChannel(0, static_cast<std::uint16_t>(i), 3, &volts);
        sums[i] += volts;
      }
    }
    benchmark::DoNotOptimize(sums);
  }
}
BENCHMARK(BareCalls)->Unit(benchmark::kMicrosecond);

}  // namespace
