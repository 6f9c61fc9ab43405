#pragma once

namespace zento {

class Clipboard;
class Clock;
class Desktop;
class Dialogs;
class Files;
class Mail;
class Sound;
class TimerQueue;

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
