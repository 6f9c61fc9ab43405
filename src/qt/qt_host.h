#pragma once

#include <filesystem>
#include <memory>

#include "host/host.h"
#include "qt/qt_clipboard.h"
#include "qt/qt_desktop.h"
#include "qt/qt_dialogs.h"
#include "qt/timer_driver.h"

namespace zento {

// The graphical host: windows, dialogs, clipboard and timers by Qt, the rest as given. A
// QApplication must exist before it and outlive it; what is passed in must outlive it too.
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
  QtClipboard clipboard_;
  std::unique_ptr<Mail> mail_;
  Desktop desktop_;
  // Goes before the forms it shows.
  QtDesktop windows_;
  TimerDriver driver_;
  Host host_;
};

}  // namespace zento
