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
#include "core/settings_file.h"
#include "core/workstation.h"
#include "devices/analog_input.h"
#include "devices/pci_card.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/live_plot.h"
#include "measure/measure_forms.h"
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
  Plan CurrentPlan() const override { return {}; }
  LayoutNode Layout() override { return layout::Stretch(); }

  void Start() {
    BeginRun();
    plot_.Begin("Voltammogram", {-1, -1, 1, 1}, kLook);
    StartRecording();
  }
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
      plot_.Curve(RecordedPoints(), 1, QBColor(9));
    } else {
      plot_.Point(point[0], point[1], QBColor(9));
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

// 500 rounds of 5 channels, averaged, scaled, kept and drawn as one more point.
void RingDiskTick(benchmark::State& state) {
  BoardTime time(state, state.range(0));
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
    time.Count([&] { form->RunTick(); });
    if (!form->Full()) continue;
    state.PauseTiming();
    ws.end_active_run();
    form->Start();
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
    time.Count([&] { form->MMTimer.on_tick(); });
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
