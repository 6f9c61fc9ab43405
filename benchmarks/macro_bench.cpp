// A macro of 10,000 lines without measurements, from its start to its end, in virtual time, so that
// what counts is the work and not the waiting between turns. Goal: under 0.2 s. The peer is the
// reading of the same lines alone; the third figure is what the editor does when such a text is
// opened.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/settings.h"
#include "core/settings_file.h"
#include "devices/instruments.h"
#include "graph/graph_form.h"
#include "host/desktop.h"
#include "host/virtual/virtual_host.h"
#include "macro/interpreter.h"
#include "macro/macro_line.h"
#include "measure/measure_form.h"
#include "sim/bench.h"
#include "text/lines.h"
#include "ui/main/device_forms.h"

namespace {

using namespace zento;

constexpr int kLines = 10'000;

std::string LongMacro() {
  const char* const lines[] = {"    CV.RPM 400\r\n",
                               "CV.Title Sample\r\n",
                               "' a comment\r\n",
                               "PS.Voltage 0.1 0.8\r\n",
                               "Motor.On 900\r\n",
                               "CV.Scanrate 20\r\n",
                               "RPMvsi.RPM 200 1200 10\r\n",
                               "\r\n"};
  std::string text;
  for (int i = 0; i < kLines; ++i) text += lines[static_cast<std::size_t>(i) % std::size(lines)];
  return text;
}

void Run(benchmark::State& state) {
  const std::string text = LongMacro();
  VirtualHost machine;
  Workstation ws;
  sim::Bench bench(machine.clock, sim::Parameters());
  Instruments instruments(ws, machine.host, bench.Libraries());
  machine.desktop.Register("Graph1",
                           [&] { return std::make_unique<Graph>(machine.host, "Graph1"); });
  RegisterDeviceForms(machine.desktop, ws, machine.host, instruments);
  RegisterMeasureForms(machine.desktop, ws, machine.host, instruments);
  ApplyDefaultSettings(ws);
  ws.settings.ADBoard = 2;
  ws.settings.DABoard = 1;
  ws.settings.PowerControl = 2;
  ws.rpm_calibration = {{100, 0.1}, {3000, 3.0}};
  MacroInterpreter interpreter(ws, machine.host, instruments);
  for (auto _ : state) {
    if (!interpreter.Start(text)) return state.SkipWithError("did not start");
    machine.RunUntil([&] { return !ws.macro_active; }, 3'600'000'000);
  }
  state.counters["lines"] = interpreter.Line();
}
BENCHMARK(Run)->Unit(benchmark::kMillisecond);

void ReadOnly(benchmark::State& state) {
  const std::string text = LongMacro();
  for (auto _ : state) {
    std::string_view line;
    for (LineReader reader(text); reader.Next(line);) benchmark::DoNotOptimize(ReadMacroLine(line));
  }
}
BENCHMARK(ReadOnly)->Unit(benchmark::kMillisecond);

void Colour(benchmark::State& state) {
  const std::string text = LongMacro();
  for (auto _ : state) {
    std::string_view line;
    int number = 0;
    for (LineReader reader(text); reader.Next(line);) {
      benchmark::DoNotOptimize(LookOfMacroLine(line, ++number));
    }
  }
}
BENCHMARK(Colour)->Unit(benchmark::kMillisecond);

}  // namespace
