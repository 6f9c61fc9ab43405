// The two editors on the screen, each beside what the toolkit has for it.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTextBlock>
#include <memory>
#include <string>

#include "core/track_store.h"
#include "core/workstation.h"
#include "host/desktop.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/services.h"
#include "macro/macro_line.h"
#include "qt/form_window.h"
#include "qt/qt_host.h"
#include "qt/qt_text.h"
#include "text/format.h"
#include "ui/main/edit_a_track_form.h"

namespace {

using namespace zento;

class SilentSound : public Sound {
 public:
  void Play(const std::string&) override {}
};

// The macro editor with 10,000 lines: what one typed character costs, from the key to the coloured
// line, and what it costs to open the text. The peer is the toolkit's plain text box without
// colours, checks or a form behind it.

constexpr int kLines = 10'000;

std::string LongMacro() {
  std::string text;
  for (int i = 0; i < kLines / 2; ++i) text += "CV.RPM 400\n    CV.Voltage 0.6 1.25 -0.25\n";
  return text;
}

class EditorForm : public Form {
 public:
  explicit EditorForm(Host& host) : Form(host, "frmEditor", "Editor") {
    text.multiline = true;
    text.look = LookOfMacroLine;
    text.on_select = [this] { help.SetText(HelpForMacroLine(text.CaretLineText(), 1)); };
  }
  LayoutNode Layout() override {
    return layout::Rows({layout::Item(text, 1), layout::Item(help)}, 1);
  }
  TextBox text{*this, "txtMacro"};
  Label help{*this, "lblLine"};
};

void PutCaretInTheMiddle(QPlainTextEdit& edit) {
  edit.setTextCursor(QTextCursor(edit.document()->findBlockByNumber(kLines / 2)));
}

void TypeInto(QPlainTextEdit& edit, benchmark::State& state) {
  PutCaretInTheMiddle(edit);
  for (auto _ : state) {
    edit.insertPlainText("1");
    QApplication::processEvents();
  }
}

void PeerMacroType(benchmark::State& state) {
  QPlainTextEdit edit;
  edit.setPlainText(ToQt(LongMacro()));
  edit.resize(700, 500);
  edit.show();
  TypeInto(edit, state);
}
BENCHMARK(PeerMacroType)->Unit(benchmark::kMicrosecond);

struct MacroEditor {
  MacroEditor() {
    host.host().desktop.Register("frmEditor",
                                 [this] { return std::make_unique<EditorForm>(host.host()); });
    form = dynamic_cast<EditorForm*>(host.host().desktop.Show("frmEditor"));
    edit = host.windows().WindowOf(*form)->findChild<QPlainTextEdit*>();
  }
  NativeClock clock;
  NativeFiles files;
  SilentSound sound;
  QtHost host{clock, files, sound};
  EditorForm* form = nullptr;
  QPlainTextEdit* edit = nullptr;
};

void MacroType(benchmark::State& state) {
  MacroEditor editor;
  editor.form->text.SetText(LongMacro());
  TypeInto(*editor.edit, state);
}
BENCHMARK(MacroType)->Unit(benchmark::kMicrosecond);

void MacroOpen(benchmark::State& state) {
  MacroEditor editor;
  const std::string text = LongMacro();
  for (auto _ : state) {
    editor.form->text.SetText({});
    editor.form->text.SetText(text);
    QApplication::processEvents();
  }
}
BENCHMARK(MacroOpen)->Unit(benchmark::kMillisecond);

// The single-track editor with 40001 points of three columns: what it costs to fill the grid, and
// to type a value, from the key to the picture. The peer is the toolkit's own table of items,
// filled with the same texts.

constexpr int kPoints = 40'001;

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

struct GridEditor {
  GridEditor() {
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

void GridFill(benchmark::State& state) {
  GridEditor editor;
  if (editor.form->DataGrid.rows() != kPoints) state.SkipWithError("not one cycle");
  for (auto _ : state) {
    static_cast<void>(editor.form->cbxCycleNum.UserSet("0"));
    QApplication::processEvents();
  }
}
BENCHMARK(GridFill)->Unit(benchmark::kMillisecond);

void PeerGridFill(benchmark::State& state) {
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
BENCHMARK(PeerGridFill)->Unit(benchmark::kMillisecond);

void GridTypeAValue(benchmark::State& state) {
  GridEditor editor;
  static_cast<void>(editor.form->DataGrid.UserClickCell(20'000, 1));
  for (auto _ : state) {
    static_cast<void>(editor.form->DataGrid.UserKey({KeyCode::kCharacter, U'5'}));
    QApplication::processEvents();
    static_cast<void>(editor.form->txtEdit.UserKey({KeyCode::kEnter}));
    QApplication::processEvents();
  }
}
BENCHMARK(GridTypeAValue)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
