#include "program/headless_program.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/native/native_mail.h"
#include "host/native/native_sound.h"
#include "host/native/real_time_loop.h"
#include "host/native/termination.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

// Reads the files of another and keeps in memory whatever is written.
class DryFiles : public Files {
 public:
  explicit DryFiles(Files& real) : real_(real) {}

  Result<std::string> Read(const std::filesystem::path& path) override {
    return kept_.Exists(path) ? kept_.Read(path) : real_.Read(path);
  }
  Status Replace(const std::filesystem::path& path, std::string_view bytes) override {
    return kept_.Replace(path, bytes);
  }
  Status Append(const std::filesystem::path& path, std::string_view bytes) override {
    if (Status taken = TakeOver(path); !taken.ok()) return taken;
    return kept_.Append(path, bytes);
  }
  Status AppendFlushed(const std::filesystem::path& path, std::string_view bytes) override {
    return Append(path, bytes);
  }
  Status Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
    if (Status taken = TakeOver(from); !taken.ok()) return taken;
    return kept_.Rename(from, to);
  }
  bool Exists(const std::filesystem::path& path) override {
    return kept_.Exists(path) || real_.Exists(path);
  }
  Status CreateFolder(const std::filesystem::path& path) override {
    return kept_.CreateFolder(path);
  }
  Result<std::unique_ptr<FileReader>> Open(const std::filesystem::path& path) override {
    return kept_.Exists(path) ? kept_.Open(path) : real_.Open(path);
  }
  // What is there, and what was written since.
  Result<std::vector<FolderEntry>> ListFolder(const std::filesystem::path& path) override {
    auto kept = kept_.ListFolder(path);
    auto real = real_.ListFolder(path);
    if (!kept.ok()) return real;
    if (!real.ok()) return kept;
    for (FolderEntry& entry : real.value()) {
      const auto same = [&](const FolderEntry& other) { return other.name == entry.name; };
      if (std::none_of(kept->begin(), kept->end(), same)) kept->push_back(std::move(entry));
    }
    return kept;
  }
  std::vector<std::filesystem::path> Drives() override { return real_.Drives(); }

 private:
  Status TakeOver(const std::filesystem::path& path) {
    if (kept_.Exists(path) || !real_.Exists(path)) return Status::Ok();
    const auto bytes = real_.Read(path);
    return bytes.ok() ? kept_.Replace(path, bytes.value()) : bytes.status();
  }

  Files& real_;
  MemoryFiles kept_;
};

// The files that the options choose.
class ChosenFiles {
 public:
  explicit ChosenFiles(const HeadlessOptions& options)
      : chosen_(options.files != nullptr ? options.files : &native_) {
    if (options.dry) chosen_ = &dry_.emplace(*chosen_);
  }
  ChosenFiles(const ChosenFiles&) = delete;
  ChosenFiles& operator=(const ChosenFiles&) = delete;
  Files& files() { return *chosen_; }

 private:
  NativeFiles native_;
  std::optional<DryFiles> dry_;
  Files* chosen_;
};

}  // namespace

class HeadlessProgram::VirtualMachine : public Machine {
 public:
  explicit VirtualMachine(const HeadlessOptions& options) : files_(options) {
    if (!options.interruptible) return;
    termination_.emplace();
    machine_.loop.interrupted = &Termination::Requested;
  }
  Host& host() override { return machine_.host; }
  VirtualDialogs& dialogs() override { return machine_.dialogs; }
  EventLoop& loop() override { return machine_.loop; }
  MemoryMail* kept_mails() override { return &machine_.mail; }

 private:
  ChosenFiles files_;
  VirtualHost machine_{&files_.files()};
  std::optional<Termination> termination_;
};

class HeadlessProgram::RealMachine : public Machine {
 public:
  explicit RealMachine(const HeadlessOptions& options)
      : files_(options), mail_(MakeNativeMail(timers_, {.home = options.program.home})) {
    if (!options.interruptible) return;
    termination_.emplace([this] { loop_.Wake(); });
  }
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
  ChosenFiles files_;
  std::unique_ptr<Sound> sound_ = MakeNativeSound();
  std::unique_ptr<Mail> mail_;
  Desktop desktop_{timers_};
  Host host_{clock_, timers_, desktop_, dialogs_, clipboard_, files_.files(), *sound_, *mail_};
  std::optional<Termination> termination_;
};

std::unique_ptr<HeadlessProgram::Machine> HeadlessProgram::MakeMachine(
    const HeadlessOptions& options) {
  if (options.time == HeadlessOptions::Time::kReal) return std::make_unique<RealMachine>(options);
  return std::make_unique<VirtualMachine>(options);
}

HeadlessProgram::HeadlessProgram(HeadlessOptions options)
    : machine_(MakeMachine(options)), program_(machine_->host(), std::move(options.program)) {}

HeadlessProgram::~HeadlessProgram() = default;

std::vector<std::string> HeadlessProgram::TakeMessages() {
  loop().Settle();
  return dialogs().TakeMessages();
}

}  // namespace zento
