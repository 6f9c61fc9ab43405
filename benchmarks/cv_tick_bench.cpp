// What a measurement's tick costs beyond the board's own conversions: 500 rounds of 5 channels,
// averaged, scaled, kept and drawn as one more point, against the bare loop of the same 2500 calls
// of the vendor's table. The board answers at once, so the difference of the two is our own work.

#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <vector>

#include "core/palette.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/live_plot.h"
#include "measure/run.h"
#include "paper_view.h"

namespace {

using namespace zento;

constexpr std::array<std::uint8_t, 5> kChannels = {0, 1, 2, 3, 4};
constexpr int kRounds = 500;

vendor::Libraries Tables() {
  vendor::Libraries tables;
  tables.dask.Register_Card = [](std::uint16_t, std::uint16_t) { return std::int16_t{0}; };
  tables.dask.AI_VReadChannel = [](std::uint16_t, std::uint16_t channel, std::uint16_t, double* v) {
    *v = 0.1 * channel;
    return std::int16_t{0};
  };
  return tables;
}

// A ring-disk measurement's tick: five inputs, two of them recorded, one point drawn.
class FiveChannels : public MeasureForm {
 public:
  FiveChannels(Workstation& ws, Host& host, Instruments& instruments)
      : MeasureForm(ws, host, instruments, "five", "Five channels"),
        start_(*this, "cmdStart", "Start"),
        timer_(*this, "Timer"),
        plot_(host.desktop, "Graph1") {
    Attach(timer_, start_);
  }
  bool Load() override { return OpenDevices({"AD Board Trouble!", "", ""}); }
  LayoutNode Layout() override { return layout::Stretch(); }

  void Start() {
    BeginRun();
    plot_.Begin("Voltammogram", {-1, -1, 1, 1}, kLook);
    StartRecording();
  }
  Plan CurrentPlan() const override { return {}; }
  void RunTick() { timer_.on_tick(); }
  bool Full() const { return PointIndex() > 20000; }

 protected:
  std::vector<RunParameter> Parameters() const override { return {}; }
  void MonitorTick() override {}
  void MeasureTick() override {
    benchmark::DoNotOptimize(ReadTime());
    std::array<double, 5> sums{};
    if (!ReadSums(kChannels, kRounds, sums)) return TickFailed();
    TickSucceeded();
    AcquiredPoint& point = Point(PointIndex());
    // The place moves with the index, as a sweep does.
    point = {sums[1] / kRounds + PointIndex() * 1e-5, sums[3] / kRounds, sums[4] / kRounds};
    if (plot_.Include(point[0], point[1])) {
      plot_.Redraw(kLook);
      plot_.Curve(RecordedPoints(), 1, kLightBlue);
    } else {
      plot_.Point(point[0], point[1], kLightBlue);
    }
    KeepPoint();
  }
  void FinishRun() override {}

 private:
  inline static const AxisLook kLook{"0.00", "0.0e+0", "/V"};
  Button start_;
  Timer timer_;
  LivePlot plot_;
};

void Tick(benchmark::State& state) {
  VirtualHost machine;
  Workstation ws;
  ws.settings.ADBoard = 2;
  Instruments instruments(ws, machine.host, Tables());
  machine.desktop.Register("Graph1",
                           [&] { return std::make_unique<Graph>(machine.host, "Graph1"); });
  machine.desktop.Register(
      "five", [&] { return std::make_unique<FiveChannels>(ws, machine.host, instruments); });
  PaperView window;
  machine.desktop.Load("Graph1")->SetView(&window);
  auto* form = machine.desktop.LoadAs<FiveChannels>("five");
  form->Start();
  for (auto _ : state) {
    form->RunTick();
    if (!form->Full()) continue;
    state.PauseTiming();
    ws.end_active_run();
    form->Start();
    state.ResumeTiming();
  }
  machine.desktop.Find("Graph1")->SetView(nullptr);
}
BENCHMARK(Tick)->Unit(benchmark::kMicrosecond);

void BareCalls(benchmark::State& state) {
  const vendor::Libraries tables = Tables();
  for (auto _ : state) {
    std::array<double, 5> sums{};
    for (int round = 0; round < kRounds; ++round) {
      for (std::size_t i = 0; i < kChannels.size(); ++i) {
        double volts = 0;
        tables.dask.AI_VReadChannel(0, kChannels[i], 3, &volts);
        sums[i] += volts;
      }
    }
    benchmark::DoNotOptimize(sums);
  }
}
BENCHMARK(BareCalls)->Unit(benchmark::kMicrosecond);

}  // namespace
