// The graphical program.

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "core/rescue.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/native/native_sound.h"
#include "host/native/termination.h"
#include "host/path_text.h"
#include "program/gui_options.h"
#include "program/home_setup.h"
#include "program/main_program.h"
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
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    if (Termination::Requested()) box.reject();
  });
  watch.start(kPollMs);
  box.exec();
  return 1;
}

// Keeps an error that a handler throws (memory that runs out, say) from ending the program on the
// spot, with the motor turning and the points unsaved.
class Application : public QApplication {
 public:
  using QApplication::QApplication;
  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const std::exception& error) {
      if (failure_.empty()) failure_ = std::string("internal error: ") + error.what();
      return false;
    }
  }
  // What was thrown first; empty while nothing was.
  const std::string& failure() const { return failure_; }

 private:
  std::string failure_;
};

// Watches over a started program until it has ended: by its main window, by the system's request,
// or because of an error inside.
class Session {
 public:
  Session(const Application& application, QtHost& host, MainProgram& program, Files& files)
      : application_(application), host_(host), program_(program), files_(files) {}

  int Run() {
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [this] { Watch(); });
    watch.start(kPollMs);
    QApplication::exec();
    if (!told_) return 0;
    // Nobody was there to read.
    for (const std::string& text : host_.dialogs().Unread()) {
      std::fprintf(stderr, "zento: message: %s\n", text.c_str());
    }
    if (!application_.failure().empty()) {
      std::fprintf(stderr, "zento: %s\n", application_.failure().c_str());
      return 1;
    }
    return kSignalStatus + Termination::Signal();
  }

 private:
  void Watch() {
    if ((Termination::Requested() || !application_.failure().empty()) && !told_) {
      told_ = true;
      program_.End();
    }
    if (!program_.Ended()) return;
    // What nobody saved, or could save because the end came first.
    if (!rescued_) Rescue();
    // A message is read before the program goes, unless the system is in a hurry. Not quit(), which
    // would ask every window once more.
    if (told_ || !host_.dialogs().Open()) QApplication::exit();
  }

  void Rescue() {
    rescued_ = true;
    const auto saved = RescueTracks(program_.workstation(), files_);
    if (!saved.ok()) {
      host_.dialogs().Message("The tracks could not be saved: " + saved.why());
    } else if (saved.value()) {
      host_.dialogs().Message("The program was ended before the tracks were saved. They are in " +
                              TextFromPath(*saved.value()));
    }
  }

  const Application& application_;
  QtHost& host_;
  MainProgram& program_;
  Files& files_;
  bool told_ = false;  // by the system or an error, to end
  bool rescued_ = false;
};

int Run(const Application& application, const GuiOptions& options, bool simulated) {
  const auto home = TakeHome(options.home, simulated, "the graphical program");
  if (!home.ok()) return Refuse(home.why());

  NativeClock clock;
  NativeFiles files;
  const auto sound = MakeNativeSound();
  QtHost host(clock, files, *sound, home.value().folder);
  MainOptions main_options;
  if (simulated) main_options.simulated = options.bench;
  main_options.home = home.value().folder;
  main_options.data_folders = DataFolders();
  MainProgram program(host.host(), main_options);
  if (const Status started = program.Start(); !started.ok()) return Refuse(started.why());
  return Session(application, host, program, files).Run();
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
  Application application(argc, argv);
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
  return Run(application, options, *simulated);
}
