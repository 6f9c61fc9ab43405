#include "program/console_machine.h"

#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/native/native_mail.h"
#include "host/native/native_sound.h"
#include "host/native/real_time_loop.h"
#include "host/native/termination.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

class VirtualMachine : public ConsoleMachine {
 public:
  VirtualMachine() { machine_.loop.interrupted = &Termination::Requested; }
  Host& host() override { return machine_.host; }
  VirtualDialogs& dialogs() override { return machine_.dialogs; }
  EventLoop& loop() override { return machine_.loop; }
  MemoryMail* kept_mails() override { return &machine_.mail; }

 private:
  NativeFiles files_;
  VirtualHost machine_{&files_};
  Termination termination_;
};

class RealMachine : public ConsoleMachine {
 public:
  explicit RealMachine(const std::filesystem::path& home)
      : mail_(MakeNativeMail(timers_, {.home = home})) {}
  Host& host() override { return host_; }
  VirtualDialogs& dialogs() override { return dialogs_; }
  EventLoop& loop() override { return loop_; }
  MemoryMail* kept_mails() override { return nullptr; }

 private:
  NativeClock clock_;
  TimerQueue timers_{clock_};
  RealTimeLoop loop_{clock_, timers_, &Termination::Requested};
  VirtualDialogs dialogs_{timers_};
  MemoryClipboard clipboard_;
  NativeFiles files_;
  std::unique_ptr<Sound> sound_ = MakeNativeSound();
  std::unique_ptr<Mail> mail_;
  Desktop desktop_{timers_};
  Host host_{clock_, timers_, desktop_, dialogs_, clipboard_, files_, *sound_, *mail_};
  Termination termination_{[](void* loop) { static_cast<RealTimeLoop*>(loop)->Wake(); }, &loop_};
};

}  // namespace

std::unique_ptr<ConsoleMachine> ConsoleMachine::Make(Time time, const std::filesystem::path& home) {
  if (time == Time::kVirtual) return std::make_unique<VirtualMachine>();
  return std::make_unique<RealMachine>(home);
}

}  // namespace zento
