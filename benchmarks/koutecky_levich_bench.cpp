// A whole Koutecky-Levich calculation of the fullest store: 21 tracks of 40001 points, plot and
// report included, with half of the points and with all of them inside the potential window. Beside
// it the means alone, by a plain loop that asks the store for every value; plot, fit and report are
// not in its time. Both see the same points, and their results are held against each other first.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "analysis/kl_form.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "core/track_store.h"
#include "host/virtual/virtual_host.h"

namespace {

using namespace zento;

// Ring-disk sweeps from 1.2 to 0.2 V and back. The window begins at 0.2 V: half a volt of it holds
// half of the points, one above 1 V all of them.
void Fill(Workstation& ws, double window) {
  ws.tracks.kl.Resize();
  for (int track = 0; track < kTracks; ++track) {
    TrackRecord& record = ws.tracks.Record(track);
    record.Mode = kModeRDE;
    record.RPM = 400 + 100 * track;
    record.pnum = kMaxPoints;
    for (std::int32_t i = 0; i < kMaxPoints; ++i) {
      const double volts = 0.2 + std::abs(1 - i / 20000.0);
      ws.tracks.SetValue(0, track, i, volts);
      ws.tracks.SetValue(1, track, i, -1e-4 * std::sqrt(record.RPM) - 1e-9 * (i % 17));
    }
    ws.tracks.kl.KLUseFlag[static_cast<std::size_t>(track)] = 1;
  }
  ws.settings.KLVuse = 0.2 + window / 2;
  ws.settings.KLVrange = window / 2;
  ws.settings.KLMethod = 1;  // its y is the mean current over the area
}

std::vector<double> PlainMeans(const Workstation& ws) {
  const double low = ws.settings.KLVuse - ws.settings.KLVrange;
  const double high = ws.settings.KLVuse + ws.settings.KLVrange;
  std::vector<double> means;
  for (int track = 0; track < kTracks; ++track) {
    double sum = 0;
    int count = 0;
    for (std::int32_t i = 0; i < ws.tracks.PointCount(track); ++i) {
      const double volts = ws.tracks.Value(0, track, i);
      if (volts < low || volts >= high) continue;
      sum += ws.tracks.Value(1, track, i);
      ++count;
    }
    means.push_back(sum / count);
  }
  return means;
}

bool SameMeans(const Workstation& ws, const AnalysisForm& form) {
  const std::vector<double> means = PlainMeans(ws);
  if (form.result().columns.empty()) return false;
  const std::vector<double>& densities = form.result().columns.back().values;
  if (densities.size() != means.size()) return false;
  for (std::size_t i = 0; i < means.size(); ++i) {
    const double expected = std::abs(means[i]) / ws.settings.KLElectrodeArea;
    if (!(std::abs(densities[i] / expected - 1) < 1e-12)) return false;
  }
  return true;
}

double Volts(const benchmark::State& state) {
  return static_cast<double>(state.range(0)) / 1000;
}

void Calculation(benchmark::State& state) {
  VirtualHost machine;
  Workstation ws;
  ApplyDefaultSettings(ws);
  Fill(ws, Volts(state));
  machine.desktop.Register("frmKoutecky_Levich",
                           [&] { return std::make_unique<frmKoutecky_Levich>(ws, machine.host); });
  auto* form = machine.desktop.LoadAs<frmKoutecky_Levich>("frmKoutecky_Levich");
  for (auto _ : state) form->Calculate();
  if (!SameMeans(ws, *form)) state.SkipWithError("other means than those of the plain loop");
}
BENCHMARK(Calculation)->ArgName("window_mV")->Arg(500)->Arg(1010)->Unit(benchmark::kMillisecond);

void PeerPlainLoop(benchmark::State& state) {
  Workstation ws;
  Fill(ws, Volts(state));
  for (auto _ : state) benchmark::DoNotOptimize(PlainMeans(ws));
}
BENCHMARK(PeerPlainLoop)->ArgName("window_mV")->Arg(500)->Arg(1010)->Unit(benchmark::kMillisecond);

}  // namespace
