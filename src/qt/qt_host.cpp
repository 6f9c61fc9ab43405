#include "qt/qt_host.h"

namespace zento {

QtHost::QtHost(Clock& clock, Files& files, Sound& sound)
    : timers_(clock), desktop_(timers_), driver_(timers_, clock), host_{clock,      timers_,
                                                                        desktop_,   dialogs_,
                                                                        clipboard_, files,
                                                                        sound} {
  desktop_.SetView(&windows_);
}

QtHost::~QtHost() {
  desktop_.SetView(nullptr);
}

}  // namespace zento
