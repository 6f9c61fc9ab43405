#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/mail.h"
#include "host/services.h"
#include "host/timer_queue.h"
#include "text/status.h"

namespace zento {

// A clipboard of the program's own.
class MemoryClipboard : public Clipboard {
 public:
  void SetText(const std::string& text) override { text_ = text; }
  std::string Text() const override { return text_; }
  // Replaces the text, as another kind of content does; `pictures` counts them.
  void SetPicture(Size size, const std::function<void(Surface&)>& paint) override;

  int pictures = 0;
  Size picture_size;                            // of the last one
  std::function<void(Surface&)> paint_picture;  // draws the last one again; may outlive its form

 private:
  std::string text_;
};

// Keeps what was played.
class SilentSound : public Sound {
 public:
  void Play(const std::string& wave_file) override { played.push_back(wave_file); }
  std::vector<std::string> played;
};

// Files that live in memory, with faults on demand. Folders come into being with their files. A
// fault of kRead also hits Open.
class MemoryFiles : public Files {
 public:
  enum class Operation { kRead, kReplace, kAppend, kRename, kCreateFolder, kListFolder };

  Result<std::string> Read(const std::filesystem::path& path) override;
  Status Replace(const std::filesystem::path& path, std::string_view bytes) override;
  Status Append(const std::filesystem::path& path, std::string_view bytes) override;
  Status AppendFlushed(const std::filesystem::path& path, std::string_view bytes) override;
  Status Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  bool Exists(const std::filesystem::path& path) override;
  Status CreateFolder(const std::filesystem::path& path) override;
  Result<std::unique_ptr<FileReader>> Open(const std::filesystem::path& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::filesystem::path& path) override;
  std::vector<std::filesystem::path> Drives() override;

  // The next such operation fails with `why`, and nothing is changed by it.
  void FailNext(Operation operation, std::string why = "input/output error");
  // From now on a write that brings all files together above `bytes` fails: the disk is full.
  void SetCapacity(std::size_t bytes) { capacity_ = bytes; }

  // Paths of all files, in order.
  std::vector<std::filesystem::path> List() const;

 private:
  std::optional<Status> Fault(Operation operation, const std::string& doing);
  std::size_t BytesWithout(const std::filesystem::path& path) const;

  std::map<std::filesystem::path, std::string> files_;
  std::map<std::filesystem::path, bool> folders_;
  std::map<Operation, std::string> faults_;
  std::optional<std::size_t> capacity_;
};

// Keeps mails instead of sending them. Each takes a millisecond to arrive, or as long as it is
// told to.
class MemoryMail : public Mail {
 public:
  explicit MemoryMail(TimerQueue& timers);

  void Send(const MailMessage& message, std::function<void(const Status&)> done) override;
  int UnderWay() const override { return static_cast<int>(on_the_way_.size()); }
  void Finish() override;

  // The next mail fails with `why`.
  void FailNext(std::string why = "the server does not answer") { fault_ = std::move(why); }
  // What each mail takes from now on; one at a time, in order.
  void SetDuration(std::int64_t millis) { duration_ms_ = millis; }

  // What arrived since the last call, oldest first.
  std::vector<MailMessage> TakeSent() { return std::exchange(sent, {}); }

  std::vector<MailMessage> sent;  // what arrived

 private:
  struct OnTheWay {
    MailMessage message;
    std::function<void(const Status&)> done;
    Status status;
  };
  void DeliverFirst();

  TimerQueue::PeriodicTimer arrival_;
  std::deque<OnTheWay> on_the_way_;
  std::optional<std::string> fault_;
  std::int64_t duration_ms_ = 0;
};

}  // namespace zento
