#pragma once

#include <QPointer>
#include <filesystem>
#include <map>
#include <memory>

#include "host/desktop.h"
#include "host/host.h"
#include "host/timer_queue.h"
#include "qt/qt_dialogs.h"

namespace zento {

class FormWindow;

// One window for each form that has been shown.
class QtDesktop : public DesktopView {
 public:
  ~QtDesktop() override;
  void FormShown(Form& form) override;
  void FormHidden(Form& form) override;
  void FormUnloaded(Form& form) override;
  // Null while the form has not been shown.
  FormWindow* WindowOf(const Form& form) const;

 private:
  std::map<const Form*, QPointer<FormWindow>> windows_;
};

// The graphical host: windows, dialogs, clipboard and timers by Qt, the rest as given. A
// QApplication must exist before it and outlive it; what is passed in must outlive it too.
//
// On X11 what was copied is handed to the desktop's clipboard manager when the program ends;
// without a manager it ends with the program.
class QtHost {
 public:
  // `home` holds the settings of the mail; without one no mail is sent.
  QtHost(Clock& clock, Files& files, Sound& sound, const std::filesystem::path& home = {});
  ~QtHost();

  Host& host() { return host_; }
  QtDesktop& windows() { return windows_; }
  QtDialogs& dialogs() { return dialogs_; }

 private:
  TimerQueue timers_;
  QtDialogs dialogs_;
  std::unique_ptr<Clipboard> clipboard_;
  std::unique_ptr<Mail> mail_;
  Desktop desktop_;
  // Goes before the forms it shows.
  QtDesktop windows_;
  std::unique_ptr<QObject> timer_driver_;
  Host host_;
};

}  // namespace zento
