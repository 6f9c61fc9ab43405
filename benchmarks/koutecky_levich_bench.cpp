// A whole Koutecky-Levich calculation of the fullest store: 21 tracks of 40001 points, plot and
// report included. Beside it what any way of doing it needs at least, one look at every point.

#include <benchmark/benchmark.h>

#include <cmath>

#include "analysis/kl_form.h"
#include "core/settings_file.h"
#include "host/virtual/virtual_host.h"

namespace {

using namespace zento;

// Ring-disk sweeps from 1.2 to 0.2 V and back; half of each lies inside the window.
void Fill(Workstation& ws) {
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
  ws.settings.KLVuse = 0.45;
  ws.settings.KLVrange = 0.25;
}

void Calculation(benchmark::State& state) {
  VirtualHost machine;
  Workstation ws;
  ApplyDefaultSettings(ws);
  Fill(ws);
  machine.desktop.Register("frmKoutecky_Levich",
                           [&] { return std::make_unique<frmKoutecky_Levich>(ws, machine.host); });
  auto* form = machine.desktop.LoadAs<frmKoutecky_Levich>("frmKoutecky_Levich");
  for (auto _ : state) form->Calculate();
  if (!form->outcome().refusal.empty()) state.SkipWithError(form->outcome().refusal.c_str());
}
BENCHMARK(Calculation)->Unit(benchmark::kMillisecond);

void PeerSumOfEveryPoint(benchmark::State& state) {
  Workstation ws;
  Fill(ws);
  for (auto _ : state) {
    double sum = 0;
    for (int track = 0; track < kTracks; ++track) {
      for (const double x : ws.tracks.Points(0, track)) sum += x;
      for (const double y : ws.tracks.Points(1, track)) sum += y;
    }
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(PeerSumOfEveryPoint)->Unit(benchmark::kMillisecond);

}  // namespace
