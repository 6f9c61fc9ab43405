// The single-track editor with 40001 points of three columns on the screen: what it costs to fill
// the grid, and to type a value, from the key to the picture. The peer is the toolkit's own table
// of items, filled with the same texts.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QTableWidget>
#include <memory>
#include <string>

#include "core/track_store.h"
#include "core/workstation.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "qt/qt_host.h"
#include "qt/qt_text.h"
#include "text/format.h"
#include "text/status.h"
#include "ui/main/edit_a_track_form.h"

namespace {

using namespace zento;

constexpr int kPoints = 40'001;

class SilentSound : public Sound {
 public:
  void Play(const std::string&) override {}
};

// A potential that only rises is one cycle.
void Fill(TrackStore& tracks) {
  TrackRecord& record = tracks.Record(0);
  record.Mode = kModeRDE;
  record.V = {0, 4, 0};
  record.pnum = kPoints;
  for (int i = 0; i < kPoints; ++i) {
    tracks.SetValue(0, 0, i, 1e-4 * i);
    tracks.SetValue(1, 0, i, 1e-9 * i);
    tracks.SetValue(2, 0, i, -2e-10 * i);
  }
}

struct Editor {
  Editor() {
    Fill(ws.tracks);
    host.host().desktop.Register(
        frmEditATrack::kName, [this] { return std::make_unique<frmEditATrack>(ws, host.host()); });
    form = dynamic_cast<frmEditATrack*>(host.host().desktop.Show(frmEditATrack::kName));
    QApplication::processEvents();
  }
  NativeClock clock;
  NativeFiles files;
  SilentSound sound;
  QtHost host{clock, files, sound};
  Workstation ws;
  frmEditATrack* form = nullptr;
};

void EditorFill(benchmark::State& state) {
  Editor editor;
  if (editor.form->DataGrid.rows() != kPoints) state.SkipWithError("not one cycle");
  for (auto _ : state) {
    static_cast<void>(editor.form->cbxCycleNum.UserSet("0"));
    QApplication::processEvents();
  }
}
BENCHMARK(EditorFill)->Unit(benchmark::kMillisecond);

void PeerFill(benchmark::State& state) {
  TrackStore tracks;
  Fill(tracks);
  QTableWidget table(kPoints, 3);
  table.resize(400, 500);
  table.show();
  for (auto _ : state) {
    table.clearContents();
    for (int row = 0; row < kPoints; ++row) {
      for (int c = 0; c < 3; ++c) {
        const std::string text = Format(tracks.Value(c, 0, row), "0.000e+0");
        table.setItem(row, c, new QTableWidgetItem(ToQt(text)));
      }
    }
    QApplication::processEvents();
  }
}
BENCHMARK(PeerFill)->Unit(benchmark::kMillisecond);

void EditorTypeAValue(benchmark::State& state) {
  Editor editor;
  static_cast<void>(editor.form->DataGrid.UserClickCell(20'000, 1));
  for (auto _ : state) {
    static_cast<void>(editor.form->DataGrid.UserKey({KeyCode::kCharacter, U'5'}));
    QApplication::processEvents();
    static_cast<void>(editor.form->txtEdit.UserKey({KeyCode::kEnter}));
    QApplication::processEvents();
  }
}
BENCHMARK(EditorTypeAValue)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
