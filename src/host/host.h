#pragma once

#include "host/clock.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/mail.h"
#include "host/services.h"
#include "host/timer_queue.h"

namespace zento {

// Everything the program needs from the machine it runs on, built once and passed by reference.
struct Host {
  Clock& clock;
  TimerQueue& timers;
  Desktop& desktop;
  Dialogs& dialogs;
  Clipboard& clipboard;
  Files& files;
  Sound& sound;
  Mail& mail;
};

}  // namespace zento
