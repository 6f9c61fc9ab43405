// The macro editor with 10,000 lines on the screen: what one typed character costs, from the key to
// the coloured line, and what it costs to open the text. The peer is the toolkit's plain text box
// without colours, checks or a form behind it.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <memory>
#include <string>

#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "macro/macro_line.h"
#include "qt/form_window.h"
#include "qt/qt_host.h"
#include "qt/qt_text.h"

namespace {

using namespace zento;

constexpr int kLines = 10'000;

std::string LongMacro() {
  std::string text;
  for (int i = 0; i < kLines / 2; ++i) text += "CV.RPM 400\n    CV.Voltage 0.6 1.25 -0.25\n";
  return text;
}

class SilentSound : public Sound {
 public:
  void Play(const std::string&) override {}
};

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

void PeerType(benchmark::State& state) {
  QPlainTextEdit edit;
  edit.setPlainText(ToQt(LongMacro()));
  edit.resize(700, 500);
  edit.show();
  TypeInto(edit, state);
}
BENCHMARK(PeerType)->Unit(benchmark::kMicrosecond);

struct Editor {
  Editor() {
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

void EditorType(benchmark::State& state) {
  Editor editor;
  editor.form->text.SetText(LongMacro());
  TypeInto(*editor.edit, state);
}
BENCHMARK(EditorType)->Unit(benchmark::kMicrosecond);

void EditorOpen(benchmark::State& state) {
  Editor editor;
  const std::string text = LongMacro();
  for (auto _ : state) {
    editor.form->text.SetText({});
    editor.form->text.SetText(text);
    QApplication::processEvents();
  }
}
BENCHMARK(EditorOpen)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
