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

#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/native/native_sound.h"
#include "host/native/termination.h"
#include "host/path_text.h"
#include "program/home.h"
#include "program/main_program.h"
#include "program/program_options.h"
#include "qt/qt_host.h"
#include "qt/qt_text.h"
#include "qt/start_up.h"
#include "text/status.h"

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
  Session(const Application& application, QtHost& host, MainProgram& program)
      : application_(application), host_(host), program_(program) {}

  int Run() {
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [this] { Watch(); });
    watch.start(kPollMs);
    QApplication::exec();
    if (!end_requested_) return 0;
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
    end_requested_ |= Termination::Requested() || !application_.failure().empty();
    if (!ended_ && (end_requested_ || program_.Ended())) End();
    // A message is read before the program goes, unless the system is in a hurry. Not quit(), which
    // would ask every window once more.
    if (ended_ && (end_requested_ || !host_.dialogs().Open())) QApplication::exit();
  }

  void End() {
    ended_ = true;
    // What nobody saved, or could save because the end came first.
    const auto rescued = program_.EndSafely().rescued;
    if (!rescued.ok()) {
      host_.dialogs().Message("The tracks could not be saved: " + rescued.why());
    } else if (rescued.value()) {
      host_.dialogs().Message("The program was ended before the tracks were saved. They are in " +
                              TextFromPath(*rescued.value()));
    }
  }

  const Application& application_;
  QtHost& host_;
  MainProgram& program_;
  bool end_requested_ = false;  // by the system or an error
  bool ended_ = false;
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
  return Session(application, host, program).Run();
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
