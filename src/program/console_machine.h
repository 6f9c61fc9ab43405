#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "host/event_loop.h"
#include "host/host.h"
#include "host/virtual/memory_mail.h"
#include "host/virtual/virtual_dialogs.h"

namespace zento {

// The machine as the command-line program gives it to the windows: its real files, questions that
// are answered from a queue, a clipboard of its own; time real, or virtual and then without sound
// and with mails that are kept instead of sent.
class ConsoleMachine {
 public:
  enum class Time { kVirtual, kReal };

  // While it lives, the system's requests to end the program end its waits early and are told by
  // Termination::Requested. At most one lives at a time.
  static std::unique_ptr<ConsoleMachine> Make(Time time, const std::filesystem::path& home);
  virtual ~ConsoleMachine() = default;

  virtual Host& host() = 0;
  virtual VirtualDialogs& dialogs() = 0;
  virtual EventLoop& loop() = 0;
  // Where mails end up in virtual time; null in real time, which sends them.
  virtual MemoryMail* kept_mails() = 0;
};

}  // namespace zento
