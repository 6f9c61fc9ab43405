// A track of 40001 points as a table for the clipboard and back. Peers: the same table out of
// QString::number, and QString::split with toDouble. What the progress window costs, which comes up
// for tables that take longer than a person notices, is seen with eighty of these tables at once.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QClipboard>
#include <QString>
#include <QStringList>
#include <cmath>
#include <memory>
#include <string>

#include "core/track_store.h"
#include "core/workstation.h"
#include "exchange/paste_text.h"
#include "exchange/table_text.h"
#include "host/desktop.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/services.h"
#include "qt/qt_host.h"
#include "qt/qt_text.h"
#include "ui/main/clipboard_copy.h"

namespace {

using namespace zento;

constexpr int kPoints = 40'001;

// Mode 2 has three columns of numbers as measured, with all their digits; mode 1 two.
TrackStore Measured(std::int32_t mode) {
  TrackStore tracks;
  TrackRecord& record = tracks.Record(0);
  record.Mode = mode;
  record.Title = "40001 points";
  record.pnum = kPoints;
  for (int i = 0; i < kPoints; ++i) {
    const double e = std::sin(i * 1.57e-4);
    tracks.SetValue(0, 0, i, e);
    tracks.SetValue(1, 0, i, 1.2345e-5 * std::sin(3 * e) + 1e-8 * std::cos(17.0 * i));
    tracks.SetValue(2, 0, i, 2.3e-7 * std::cos(2 * e) + 1e-9 * std::cos(13.0 * i));
  }
  return tracks;
}

void Copy(benchmark::State& state) {
  const TrackStore tracks = Measured(static_cast<std::int32_t>(state.range(0)));
  for (auto _ : state) {
    const std::string text =
        TrackInfoText(tracks, 0, "bench.znt") + "\r\n" + DataTableText(tracks, 0);
    benchmark::DoNotOptimize(ToQt(text));
  }
}
BENCHMARK(Copy)->Arg(kModeCV)->Arg(kModeRDE)->Unit(benchmark::kMillisecond);

void PeerCopy(benchmark::State& state) {
  const TrackStore tracks = Measured(static_cast<std::int32_t>(state.range(0)));
  const bool ring = state.range(0) == kModeRDE;
  for (auto _ : state) {
    QString text = ToQt(TrackInfoText(tracks, 0, "bench.znt")) + "\r\n";
    for (int i = 0; i < kPoints; ++i) {
      text += QString::number(tracks.Value(0, 0, i), 'f', 4);
      text += '\t';
      if (ring) {
        text += QString::number(tracks.Value(1, 0, i), 'e', 4);
        text += '\t';
      }
      text += QString::number(tracks.Value(ring ? 2 : 1, 0, i), 'g', 15);
      text += "\r\n";
    }
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(PeerCopy)->Arg(kModeCV)->Arg(kModeRDE)->Unit(benchmark::kMillisecond);

class SilentSound : public Sound {
 public:
  void Play(const std::string&) override {}
};

struct Machine {
  Machine() {
    host.host().desktop.Register(frmProgressWindow::kName, [this] {
      return std::make_unique<frmProgressWindow>(host.host());
    });
  }
  NativeClock clock;
  NativeFiles files;
  SilentSound sound;
  QtHost host{clock, files, sound};
};

// So much that a person would wait for it: the same table again and again.
class LongTable : public TableJob {
 public:
  LongTable(const TrackStore& tracks, int times) : tracks_(tracks) { total_ = times * kPoints; }

 protected:
  void WriteRows(std::int32_t begin, std::int32_t end) override {
    if (!table_) table_ = std::make_unique<DataTable>(tracks_, 0, TableOptions());
    if (table_->Continue(end - begin)) return;
    text += table_->text;
    table_.reset();
  }

 private:
  const TrackStore& tracks_;
  std::unique_ptr<DataTable> table_;
};

// From the menu entry to the text on the clipboard, with the window that comes up after a while or
// without it.
void CopyToClipboard(benchmark::State& state, bool window) {
  const TrackStore tracks = Measured(kModeRDE);
  Machine machine;
  ClipboardCopy copy(machine.host.host());
  if (!window) copy.patience = 1'000'000'000;
  for (auto _ : state) {
    copy.Start(std::make_unique<LongTable>(tracks, static_cast<int>(state.range(0))), [](bool) {});
    while (copy.Active()) QApplication::processEvents();
  }
}
void CopyWithoutWindow(benchmark::State& state) {
  CopyToClipboard(state, false);
}
BENCHMARK(CopyWithoutWindow)->Arg(1)->Arg(80)->Unit(benchmark::kMillisecond)->UseRealTime();
void CopyWithWindow(benchmark::State& state) {
  CopyToClipboard(state, true);
}
BENCHMARK(CopyWithWindow)->Arg(1)->Arg(80)->Unit(benchmark::kMillisecond)->UseRealTime();

void Paste(benchmark::State& state) {
  const TrackStore tracks = Measured(static_cast<std::int32_t>(state.range(0)));
  const std::string text =
      TrackInfoText(tracks, 0, "bench.znt") + "\r\n" + DataTableText(tracks, 0);
  TrackStore pasted;
  for (auto _ : state) benchmark::DoNotOptimize(PasteText(text, pasted, 0));
  if (pasted.PointCount(0) != kPoints) state.SkipWithError("not all points were pasted");
}
BENCHMARK(Paste)->Arg(kModeCV)->Arg(kModeRDE)->Unit(benchmark::kMillisecond);

void PeerPaste(benchmark::State& state) {
  const TrackStore tracks = Measured(static_cast<std::int32_t>(state.range(0)));
  const QString text =
      ToQt(TrackInfoText(tracks, 0, "bench.znt") + "\r\n" + DataTableText(tracks, 0));
  TrackStore pasted;
  int points = 0;
  for (auto _ : state) {
    points = 0;
    for (const QString& line : text.split(QStringLiteral("\r\n"))) {
      const QStringList cells = line.split('\t');
      bool number = false;
      const double x = cells[0].toDouble(&number);
      if (cells.size() < 2 || !number) continue;
      pasted.SetValue(0, 0, points, x);
      for (int c = 1; c < cells.size(); ++c) pasted.SetValue(c, 0, points, cells[c].toDouble());
      ++points;
    }
    benchmark::DoNotOptimize(pasted);
  }
  if (points != kPoints) state.SkipWithError("not all points were pasted");
}
BENCHMARK(PeerPaste)->Arg(kModeCV)->Arg(kModeRDE)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
