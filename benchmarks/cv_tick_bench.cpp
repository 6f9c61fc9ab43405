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
class FiveChannels : public Technique {
 public:
  FiveChannels() : Technique("Five channels") {}
  Plan MakePlan(const RunChoices&, const Workstation&) const override { return {}; }
  std::vector<RunParameter> Parameters(const RunChoices&) const override { return {}; }
  std::size_t Columns() const override { return 3; }
  void Begin(Run& run) override { run.StartRecording(); }
  void Tick(Run& run) override {
    benchmark::DoNotOptimize(run.ReadTime());
    std::array<double, 5> sums{};
    if (!run.ReadSums(kChannels, kRounds, sums)) return run.ReadingFailed();
    run.ReadingSucceeded();
    // The place moves with the index, as a sweep does.
    run.Put({sums[1] / kRounds + run.points().size() * 1e-5, sums[3] / kRounds, sums[4] / kRounds});
    run.Keep();
  }
  void Store(Run& run) override { run.StoreTrack(0, kModeRDE, {}, {0, 1, 2}); }
  void Describe(RunState&, const RunChoices&) const override {}
};

// The run and the plot that a window would draw it on.
class DrawnRun {
 public:
  DrawnRun(Workstation& ws, Host& host, Instruments& instruments)
      : run_(ws, host, instruments), plot_(host.desktop, "Graph1") {}

  void Start() {
    run_.Claim();
    plot_.Begin("Voltammogram", {-1, -1, 1, 1}, kLook);
    run_.Begin(std::make_unique<FiveChannels>(), {}, "AD Board Trouble!");
  }
  void Tick() {
    run_.Tick();
    const RunPoints& points = run_.points();
    const std::int32_t index = points.Written() - 1;
    const double x = points.At(0, index);
    const double y = points.At(1, index);
    if (plot_.Include(x, y)) {
      plot_.Redraw(kLook);
      plot_.Curve(points.Column(0), points.Column(1), QBColor(9));
    } else {
      plot_.Point(x, y, QBColor(9));
    }
  }
  bool Full() const { return run_.points().size() > 20000; }

 private:
  inline static const AxisLook kLook{"0.00", "0.0e+0", "/V"};
  Run run_;
  LivePlot plot_;
};

void Tick(benchmark::State& state) {
  VirtualHost machine;
  Workstation ws;
  ws.settings.ADBoard = 2;
  Instruments instruments(ws, machine.host, Tables());
  machine.desktop.Register("Graph1",
                           [&] { return std::make_unique<Graph>(machine.host, "Graph1"); });
  PaperView window;
  machine.desktop.Load("Graph1")->SetView(&window);
  static_cast<void>(instruments.analog_input.Open());
  DrawnRun run(ws, machine.host, instruments);
  run.Start();
  for (auto _ : state) {
    run.Tick();
    if (!run.Full()) continue;
    state.PauseTiming();
    ws.end_active_run();
    run.Start();
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
