// The graphical program.

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <cstdio>

#include "app/gui_options.h"
#include "app/home_setup.h"
#include "app/main_program.h"
#include "app/rescue.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/native/native_sound.h"
#include "host/native/termination.h"
#include "host/path_text.h"
#include "qt/appearance.h"
#include "qt/qt_host.h"
#include "qt/qt_text.h"
#include "qt/start_dialog.h"

namespace {

using namespace zento;

constexpr int kPollMs = 100;
constexpr int kSignalStatus = 128;

int Refuse(const std::string& why) {
  std::fprintf(stderr, "zento: %s\n", why.c_str());
  QMessageBox box(QMessageBox::Critical, QStringLiteral("Zento"), ToQt(why), QMessageBox::Ok);
  box.setTextFormat(Qt::PlainText);
  box.exec();
  return 1;
}

int Run(const GuiOptions& options, bool simulated) {
  const auto home = TakeHome(options.home, simulated, "the graphical program");
  if (!home.ok()) return Refuse(home.why());

  NativeClock clock;
  NativeFiles files;
  const auto sound = MakeNativeSound();
  QtHost host(clock, files, *sound);
  MainOptions main_options;
  if (simulated) main_options.simulated = options.bench;
  main_options.home = home.value().folder;
  MainProgram program(host.host(), main_options);
  if (const Status started = program.Start(); !started.ok()) return Refuse(started.why());

  // The program ends when its main window has closed and nothing it said is unread; when the system
  // asks it to end, at once, but never before an active run is safe.
  bool told = false;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    if (Termination::Requested() && !told) {
      told = true;
      program.End();
    }
    // Not quit(), which would ask every window once more.
    if (program.Ended() && (told || !host.dialogs().Open())) QApplication::exit();
  });
  watch.start(kPollMs);
  QApplication::exec();
  program.End();
  if (!told) return 0;
  // Nobody was there to read, or to be asked whether to save.
  for (const std::string& text : host.dialogs().Unread()) {
    std::fprintf(stderr, "zento: message: %s\n", text.c_str());
  }
  const auto rescued = RescueTracks(program.workstation(), files);
  if (!rescued.ok()) {
    std::fprintf(stderr, "zento: %s\n", rescued.why().c_str());
  } else if (rescued.value()) {
    std::fprintf(stderr, "zento: the tracks were saved to %s\n",
                 TextFromPath(*rescued.value()).c_str());
  }
  return kSignalStatus + Termination::Signal();
}

int Answer(const GuiOptions& options) {
  std::fputs(options.answer->c_str(), options.exit_status == 0 ? stdout : stderr);
  return options.exit_status;
}

// Help and version need no display.
bool IsQuestion(const std::string& argument) {
  return argument == "-h" || argument == "--help" || argument == "--version";
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> given(argv, argv + argc);
  if (std::any_of(given.begin(), given.end(), IsQuestion)) return Answer(ParseGuiOptions(given));
  QApplication application(argc, argv);
  // Qt has set the locale from the environment; numbers look the same everywhere.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setQuitOnLastWindowClosed(false);
  ApplyAppearance(application);

  std::vector<std::string> arguments;
  for (const QString& argument : QApplication::arguments()) arguments.push_back(FromQt(argument));
  const GuiOptions options = ParseGuiOptions(arguments);
  if (options.answer) return Answer(options);
  const Termination termination;
  std::optional<bool> simulated = options.simulated;
  if (!simulated) simulated = AskForBench(&Termination::Requested);
  if (!simulated) return Termination::Requested() ? kSignalStatus + Termination::Signal() : 0;
  return Run(options, *simulated);
}
