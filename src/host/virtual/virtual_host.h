#pragma once

#include <cstdint>
#include <functional>

#include "host/desktop.h"
#include "host/host.h"
#include "host/timer_queue.h"
#include "host/virtual/memory_services.h"
#include "host/virtual/virtual_dialogs.h"
#include "host/virtual/virtual_time.h"

namespace zento {

// A whole machine without a person, a screen or waiting: virtual time, scripted answers, a
// clipboard, files and mails in memory. What tests and dry runs stand on.
//
//   VirtualHost machine;
//   machine.desktop.Register("frmX", [&] { return std::make_unique<FormX>(machine.host); });
//   Form* form = machine.desktop.Show("frmX");
//   machine.dialogs.Answer("yes");
//   form->Find("cmdStart")->UserClick();
//   machine.RunFor(2'500'000);
//
// Answers and other posted work run in RunFor, RunUntil or Settle, not inside UserClick.
class VirtualHost {
 public:
  // `own_files` = null: files in memory, see `files`.
  explicit VirtualHost(Files* own_files = nullptr)
      : host{clock, timers, desktop, dialogs, clipboard, own_files ? *own_files : files,
             sound, mail} {}
  VirtualHost(const VirtualHost&) = delete;
  VirtualHost& operator=(const VirtualHost&) = delete;

  // Members in the order in which they need each other; forms go first.
  VirtualClock clock;
  TimerQueue timers{clock};
  VirtualLoop loop{clock, timers};
  VirtualDialogs dialogs{timers};
  MemoryClipboard clipboard;
  MemoryFiles files;
  SilentSound sound;
  MemoryMail mail{timers};
  Desktop desktop{timers};
  Host host;

  // Lets exactly so much time pass.
  void RunFor(std::int64_t micros) { loop.RunFor(micros); }
  // Whether `done` came true within the limit; false too when nothing is left that could make it.
  bool RunUntil(const std::function<bool()>& done, std::int64_t limit_micros) {
    return loop.RunUntil(done, limit_micros) == Waited::kDone;
  }
  // Runs what is due now without letting time pass: posted answers, the sweep of unloaded forms.
  void Settle() { loop.Settle(); }
};

}  // namespace zento
