// What a person waits for with the largest file, 21 tracks of 40001 points in 3 columns: opening,
// saving, taking back and doing again, as the windows do them, in a whole program without a screen
// on files of this machine. The peers are the parts that cannot be spared: the bytes read and
// parsed, or formatted and written, without any window; and the points copied there and back.

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "analysis/smoothing_form.h"
#include "core/track_file.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "host/desktop.h"
#include "host/native/native_files.h"
#include "host/services.h"
#include "program/headless_program.h"
#include "text/status.h"
#include "ui/main/control_panel.h"

namespace {

using namespace zento;
namespace fs = std::filesystem;

void FillAll(TrackStore& tracks) {
  std::minstd_rand random(1);
  const auto noise = [&] { return static_cast<double>(random()) / 2147483647.0 - 0.5; };
  for (int track = 0; track < kTracks; ++track) {
    TrackRecord& record = tracks.Record(track);
    record.Mode = kModeRDE;
    record.Title = "Pt in 0.1 M HClO4, track " + std::to_string(track);
    record.V = {1, -0.4, 1};
    record.pnum = kMaxPoints;
    for (std::int32_t i = 0; i < kMaxPoints; ++i) {
      const double phase = 6 * M_PI * i / kMaxPoints;
      tracks.SetValue(0, track, i, 0.3 + 0.7 * std::cos(phase) + 6e-4 * noise());
      tracks.SetValue(1, track, i, 1e-3 * std::sin(phase) + 1e-6 * noise());
      tracks.SetValue(2, track, i, 1e-5 * (1 - std::cos(phase)) + 1e-8 * noise());
    }
  }
}

// A started program with a home and a file of its own, gone again at the end.
struct Session {
  Session() {
    fs::create_directories(home);
    TrackStore tracks;
    FillAll(tracks);
    if (!files.Replace(file, FormatTracks(tracks)).ok()) std::abort();
    if (!program.Start().ok()) std::abort();
    panel = program.desktop().FindAs<frmControlPanel>(kMainForm);
    if (panel == nullptr) std::abort();
  }
  ~Session() {
    program.program().EndSafely({.rescue = false});
    std::error_code ignored;
    fs::remove_all(home, ignored);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void Open() {
    if (!panel->OpenFile(file).complete()) std::abort();
  }
  void Click(const char* menu) {
    Control* const entry = panel->Find(menu);
    if (entry == nullptr || !entry->UserClick().ok()) std::abort();
    program.loop().Settle();
  }

  const fs::path home =
      fs::temp_directory_path() / ("zento-session-" + std::to_string(std::random_device()()));
  const fs::path file = home / "large.znt";
  NativeFiles files;
  HeadlessProgram program{{.program = {.simulated = sim::Parameters(), .home = home}}};
  frmControlPanel* panel = nullptr;
};

void Open(benchmark::State& state) {
  Session session;
  for (auto _ : state) session.Open();
}
BENCHMARK(Open)->Unit(benchmark::kMillisecond)->UseRealTime();

void PeerReadAndParse(benchmark::State& state) {
  Session session;
  for (auto _ : state) {
    auto tracks = std::make_unique<TrackStore>();
    const auto bytes = session.files.Read(session.file);
    if (!ReadTracks(bytes.value(), *tracks).complete()) std::abort();
    benchmark::DoNotOptimize(tracks->Column(2, 20).data());
  }
}
BENCHMARK(PeerReadAndParse)->Unit(benchmark::kMillisecond)->UseRealTime();

void Save(benchmark::State& state) {
  Session session;
  session.Open();
  for (auto _ : state) {
    if (!session.panel->SaveFile(session.home / "saved.znt").ok()) std::abort();
  }
}
BENCHMARK(Save)->Unit(benchmark::kMillisecond)->UseRealTime();

void PeerFormatAndWrite(benchmark::State& state) {
  Session session;
  session.Open();
  for (auto _ : state) {
    const std::string bytes = FormatTracks(session.program.workstation().tracks);
    if (!session.files.Replace(session.home / "saved.znt", bytes).ok()) std::abort();
  }
}
BENCHMARK(PeerFormatAndWrite)->Unit(benchmark::kMillisecond)->UseRealTime();

// All 21 tracks smoothed in one step of the history; that step there and back again.
void UndoAndRedoAll(benchmark::State& state) {
  Session session;
  session.Open();
  auto* const smoothing =
      dynamic_cast<frmSmoothing*>(session.program.desktop().Show(frmSmoothing::kName));
  if (smoothing == nullptr || !smoothing->chkApplyAllTrack.UserClick().ok()) std::abort();
  smoothing->Calculate();
  smoothing->UpdateData();
  session.program.desktop().Unload(frmSmoothing::kName);
  session.program.loop().Settle();
  const TrackHistory& history = session.program.workstation().history;
  if (history.UndoName() != "Smoothing of all tracks") {
    return state.SkipWithError("nothing to take back");
  }
  for (auto _ : state) {
    session.Click("mnuUndo");
    session.Click("mnuRedo");
  }
  if (history.UndoName().empty()) state.SkipWithError("the step was refused");
}
BENCHMARK(UndoAndRedoAll)->Unit(benchmark::kMillisecond)->UseRealTime();

void PeerCopyThereAndBack(benchmark::State& state) {
  TrackStore tracks;
  FillAll(tracks);
  std::vector<std::array<std::vector<double>, kTrackColumns>> copies(kTracks);
  for (auto _ : state) {
    for (int track = 0; track < kTracks; ++track) {
      for (int column = 0; column < kTrackColumns; ++column) {
        copies[track][column] = tracks.Column(column, track);
        tracks.Column(column, track) = copies[track][column];
      }
    }
    benchmark::ClobberMemory();
  }
}
BENCHMARK(PeerCopyThereAndBack)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
