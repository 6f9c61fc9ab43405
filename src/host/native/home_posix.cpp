#include "host/native/home.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include "host/native/native_files.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento {
std::optional<std::string> EnvironmentVariable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::filesystem::path ExecutableFolder() {
  std::error_code failed;
  const auto file = std::filesystem::read_symlink("/proc/self/exe", failed);
  return failed ? std::filesystem::path() : file.parent_path();
}

namespace {

class FileLock : public HomeLock {
 public:
  explicit FileLock(int fd) : fd_(fd) {}
  ~FileLock() override {
    // The file stays: removing it would let a third program lock a new one while a second one
    // still waits to open the old one.
    [[maybe_unused]] const int emptied = ::ftruncate(fd_, 0);
    ::close(fd_);
  }

 private:
  int fd_;
};

std::string Holder(int fd) {
  char text[256];
  const ssize_t size = ::pread(fd, text, sizeof text, 0);
  return size > 0 ? std::string(text, static_cast<std::size_t>(size)) : "another program";
}

}  // namespace

Result<std::unique_ptr<HomeLock>> HomeLock::Take(const std::filesystem::path& home,
                                                 std::string_view who) {
  const std::string doing = "use the home " + TextFromPath(home);
  if (Status made = NativeFiles().CreateFolder(home); !made.ok()) return made.Within(doing);
  const int fd = ::open((home / ".zento.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0) return SystemFailure(doing + ": open its lock file");
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    const Status failed = errno == EWOULDBLOCK
                              ? Status::Failure("it is in use by " + Holder(fd)).Within(doing)
                              : SystemFailure(doing + ": lock it");
    ::close(fd);
    return failed;
  }
  const std::string note = std::string(who) + " (process " + std::to_string(::getpid()) + ")";
  if (::ftruncate(fd, 0) != 0 ||
      ::pwrite(fd, note.data(), note.size(), 0) != static_cast<ssize_t>(note.size())) {
    const Status failed = SystemFailure(doing + ": write its lock file");
    ::close(fd);
    return failed;
  }
  return std::unique_ptr<HomeLock>(std::make_unique<FileLock>(fd));
}

}  // namespace zento
