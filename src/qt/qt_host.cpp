#include "qt/qt_host.h"

#include "host/native/native_mail.h"

namespace zento {

QtHost::QtHost(Clock& clock, Files& files, Sound& sound, const std::filesystem::path& home)
    : timers_(clock),
      mail_(MakeNativeMail(timers_, {.home = home})),
      desktop_(timers_),
      driver_(timers_, clock),
      host_{clock, timers_, desktop_, dialogs_, clipboard_, files, sound, *mail_} {
  desktop_.SetView(&windows_);
}

QtHost::~QtHost() {
  desktop_.SetView(nullptr);
}

}  // namespace zento
