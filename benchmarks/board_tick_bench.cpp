// What our own work around a board's conversions costs: reading, averaging, scaling, keeping and
// drawing. Each is measured with a board that answers at once ("board_us:0"), and with one whose
// conversion holds the program as long as a real board's call does, so that caches and branches are
// as they are at the bench. "own_us" is the time of one tick outside the board's calls. The peer is
// the bare loop of the same calls.
//
// Goals of our own work: 20 us for 2500 conversions read, 50 us for a tick of the multichannel
// monitor.

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/palette.h"
#include "core/run_log.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "core/workstation.h"
#include "devices/analog_input.h"
#include "devices/pci_card.h"
#include "graph/graph_form.h"
#include "host/desktop.h"
#include "host/virtual/virtual_host.h"
#include "measure/live_plot.h"
#include "measure/multi_form.h"
#include "measure/run.h"
#include "paper_view.h"

namespace {

using namespace zento;
using Ticks = std::chrono::steady_clock;

// 100,000 conversions a second, polled.
constexpr int kBoardMicros = 10;

// The vendor's functions are plain pointers, so what they need stands here.
struct Board {
  std::chrono::microseconds conversion{0};
  std::chrono::nanoseconds held{0};  // by all conversions
};
Board board;

vendor::Libraries Tables() {
  vendor::Libraries tables;
  tables.dask.Register_Card = [](std::uint16_t, std::uint16_t) { return std::int16_t{0}; };
  tables.dask.AI_VReadChannel = [](std::uint16_t, std::uint16_t channel, std::uint16_t range,
                                   double* volts) {
    *volts = channel * 0.1 + range * 1e-3;
    if (board.conversion.count() > 0) {
      const auto begun = Ticks::now();
      auto now = begun;
      while (now - begun < board.conversion) now = Ticks::now();
      board.held += now - begun;
    }
    return std::int16_t{0};
  };
  return tables;
}

// Sets the board's time from the benchmark's last argument, and tells what was not the board's.
class BoardTime {
 public:
  BoardTime(benchmark::State& state, std::int64_t micros) : state_(state) {
    board = {std::chrono::microseconds(micros), {}};
  }
  ~BoardTime() {
    if (board.conversion.count() == 0) return;
    const double all = std::chrono::duration<double, std::micro>(spent_ - board.held).count();
    state_.counters["own_us"] = all / static_cast<double>(state_.iterations());
  }
  BoardTime(const BoardTime&) = delete;
  BoardTime& operator=(const BoardTime&) = delete;

  template <typename Work>
  void Count(Work work) {
    const auto begun = Ticks::now();
    work();
    spent_ += Ticks::now() - begun;
  }

 private:
  benchmark::State& state_;
  std::chrono::nanoseconds spent_{0};
};

constexpr std::array<std::uint8_t, 5> kChannels = {0, 1, 2, 3, 4};
constexpr int kRounds = 500;

template <std::size_t inputs>
void BareCalls(benchmark::State& state, int rounds) {
  BoardTime time(state, state.range(0));
  const vendor::Libraries tables = Tables();
  for (auto _ : state) {
    time.Count([&] {
      std::array<double, inputs> sums{};
      for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < inputs; ++i) {
          double volts = 0;
          tables.dask.AI_VReadChannel(0, static_cast<std::uint16_t>(i), 3, &volts);
          sums[i] += volts;
        }
      }
      benchmark::DoNotOptimize(sums);
    });
  }
}

#define BOARD ArgName("board_us")->Arg(0)->Arg(kBoardMicros)->Unit(benchmark::kMicrosecond)

void BareCallsOfFiveInputs(benchmark::State& state) {
  BareCalls<5>(state, kRounds);
}
BENCHMARK(BareCallsOfFiveInputs)->BOARD;

// The driver alone: accumulation 500 on 5 channels. Arguments: the board, automatic ranging off or
// on.
void ReadSum(benchmark::State& state) {
  BoardTime time(state, state.range(0));
  Workstation workstation;
  workstation.settings.ADBoard = 2;
  workstation.settings.DynamicRange = static_cast<std::int16_t>(state.range(1));
  vendor::Libraries libraries = Tables();
  PciCard card(workstation.settings, libraries.dask);
  AnalogInput input({workstation.settings, libraries, card});
  if (input.Open() != 0) state.SkipWithError("the board did not open");
  std::array<double, 5> sums{};
  for (auto _ : state) {
    time.Count([&] {
      if (!input.ReadSum(kChannels, kRounds, sums)) state.SkipWithError("a read failed");
    });
    benchmark::DoNotOptimize(sums);
  }
}
BENCHMARK(ReadSum)
    ->ArgNames({"board_us", "ranging"})
    ->ArgsProduct({{0, kBoardMicros}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);

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
      plot_.Curve(points.Column(0), points.Column(1), kLightBlue);
    } else {
      plot_.Point(x, y, kLightBlue);
    }
  }
  bool Full() const { return run_.points().size() > 20000; }

 private:
  inline static const AxisLook kLook{"0.00", "0.0e+0", "/V"};
  Run run_;
  LivePlot plot_;
};

// 500 rounds of 5 channels, averaged, scaled, kept and drawn as one more point.
void RingDiskTick(benchmark::State& state) {
  BoardTime time(state, state.range(0));
  VirtualHost machine;
  Workstation ws;
  ws.settings.ADBoard = 2;
  Instruments instruments(ws, machine.host, Tables());
  machine.desktop.Register("Graph1",
                           [&] { return std::make_unique<Graph>(machine.host, "Graph1"); });
  PaperView window;
  machine.desktop.Load("Graph1")->SetView(&window);
  if (instruments.analog_input.Open() != 0) state.SkipWithError("the board did not open");
  DrawnRun run(ws, machine.host, instruments);
  run.Start();
  for (auto _ : state) {
    time.Count([&] { run.Tick(); });
    if (!run.Full()) continue;
    state.PauseTiming();
    ws.end_active_run();
    run.Start();
    state.ResumeTiming();
  }
  machine.desktop.Find("Graph1")->SetView(nullptr);
}
BENCHMARK(RingDiskTick)->BOARD;

// A tick of the multichannel monitor: 100 rounds of 20 inputs, averaged, scaled, kept, its ten
// currents shown as numbers and drawn as ten more points; full redraws of the growing plot are part
// of it.
constexpr std::int64_t kSecond = 1'000'000;
constexpr int kMonitorRounds = 100;

void BareCallsOfTwentyInputs(benchmark::State& state) {
  BareCalls<20>(state, kMonitorRounds);
}
BENCHMARK(BareCallsOfTwentyInputs)->BOARD;

void MonitorTick(benchmark::State& state) {
  BoardTime time(state, state.range(0));
  VirtualHost machine;
  Workstation ws;
  ApplyDefaultSettings(ws);
  ws.settings.ADBoard = 2;
  ws.settings.MMAccum = kMonitorRounds;
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
    time.Count([&] { form->timer.on_tick(); });
    if (ws.running_flag != 0) continue;
    state.PauseTiming();  // 20001 points: the run has ended
    form->StartMeasurement();
    state.ResumeTiming();
  }
  form->SetView(nullptr);
  machine.desktop.Find("Graph1")->SetView(nullptr);
}
BENCHMARK(MonitorTick)->BOARD;

}  // namespace
