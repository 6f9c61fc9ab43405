#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>

#include "host/native/home.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::size_t kLargest = std::size_t{1} << 30;

// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  explicit operator bool() const { return fd_ >= 0; }
  int get() const { return fd_; }
  // False when the system reports a write that failed late.
  bool Close() {
    const int fd = fd_;
    fd_ = -1;
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_;
};

int OpenFile(const std::filesystem::path& path, int flags, mode_t mode = 0) {
  int fd;
  do {
    fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
  } while (fd < 0 && errno == EINTR);
  return fd;
}

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool Flush(int fd) {
  int result;
  do {
    result = ::fsync(fd);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

// The file a chain of symbolic links ends at, whether or not it exists yet.
std::filesystem::path FollowLinks(std::filesystem::path path) {
  constexpr int kLinksAtMost = 40;
  for (int links = 0; links < kLinksAtMost; ++links) {
    std::error_code failed;
    const auto target = std::filesystem::read_symlink(path, failed);
    if (failed) break;
    path = path.parent_path() / target;
  }
  return path;
}

std::filesystem::path FolderOf(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

// A file beside `target` that is gone again unless it was put into place.
class Temporary {
 public:
  explicit Temporary(const std::filesystem::path& target) : target_(target), file_(Create()) {}
  ~Temporary() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  Descriptor& file() { return file_; }

  bool PutInPlace() {
    if (::rename(path_.c_str(), target_.c_str()) != 0) return false;
    path_.clear();
    return true;
  }

 private:
  int Create() {
    static std::atomic<unsigned> count{0};
    for (int attempt = 0; attempt < 100; ++attempt) {
      path_ = FolderOf(target_) /
              (".zento-" + std::to_string(::getpid()) + "-" + std::to_string(count++) + ".tmp");
      const int fd = OpenFile(path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0666);
      if (fd >= 0 || errno != EEXIST) {
        if (fd < 0) path_.clear();
        return fd;
      }
    }
    path_.clear();
    return -1;
  }

  std::filesystem::path target_;
  std::filesystem::path path_;
  Descriptor file_;
};

// Gives the new file the permissions of the old one; the owner too where that is allowed.
bool Inherit(int fd, const struct stat& old) {
  if (::fchown(fd, old.st_uid, old.st_gid) != 0 && errno != EPERM) return false;
  return ::fchmod(fd, old.st_mode & 07777) == 0;
}

// A device or a pipe cannot be replaced; it is written to.
Status WriteThrough(const std::filesystem::path& path, std::string_view bytes,
                    const std::string& doing) {
  Descriptor file(OpenFile(path, O_WRONLY));
  if (!file || !WriteAll(file.get(), bytes) || !file.Close()) return SystemFailure(doing);
  return Status::Ok();
}

// Makes the rename itself survive a power cut. File systems that cannot flush a folder, and folders
// that may be written but not read, are left to the system.
Status FlushFolder(const std::filesystem::path& folder, const std::string& doing) {
  const Descriptor descriptor(OpenFile(folder, O_RDONLY | O_DIRECTORY));
  if (!descriptor || Flush(descriptor.get())) return Status::Ok();
  if (errno == EINVAL || errno == ENOTSUP || errno == EROFS) return Status::Ok();
  return SystemFailure(doing + ": written, but its folder could not be flushed");
}

Status AppendTo(const std::filesystem::path& path, std::string_view bytes, bool flush) {
  const std::string doing = "append to " + TextFromPath(path);
  Descriptor file(OpenFile(path, O_WRONLY | O_APPEND | O_CREAT, 0666));
  if (!file) return SystemFailure(doing);
  struct stat before {};
  const bool regular = ::fstat(file.get(), &before) == 0 && S_ISREG(before.st_mode);
  if (!WriteAll(file.get(), bytes) || (flush && regular && !Flush(file.get()))) {
    Status failed = SystemFailure(doing);
    if (regular && ::ftruncate(file.get(), before.st_size) != 0) {
      return Status::Failure(failed.why() + "; part of it was written");
    }
    return failed;
  }
  return file.Close() ? Status::Ok() : SystemFailure(doing);
}

class PosixReader : public FileReader {
 public:
  PosixReader(int fd, std::uint64_t size, std::string doing)
      : file_(fd), size_(size), doing_(std::move(doing)) {}
  Result<std::size_t> Read(std::span<char> room) override {
    ssize_t got;
    do {
      got = ::read(file_.get(), room.data(), room.size());
    } while (got < 0 && errno == EINTR);
    if (got < 0) return SystemFailure(doing_);
    return static_cast<std::size_t>(got);
  }
  std::uint64_t Size() const override { return size_; }

 private:
  Descriptor file_;
  std::uint64_t size_;
  std::string doing_;
};

// Folders in which plugged-in media appear.
void AddMedia(const std::filesystem::path& folder, std::vector<std::filesystem::path>& drives) {
  std::error_code failed;
  std::filesystem::directory_iterator entry(folder, failed);
  for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
    std::error_code unknown;
    if (entry->is_directory(unknown)) drives.push_back(entry->path());
  }
}

}  // namespace

Result<std::unique_ptr<FileReader>> NativeFiles::Open(const std::filesystem::path& path) {
  std::string doing = "read " + TextFromPath(path);
  // Opening a pipe would else wait for somebody to write into it.
  const int fd = OpenFile(path, O_RDONLY | O_NONBLOCK);
  if (fd < 0) return SystemFailure(doing);
  struct stat about {};
  const bool regular = ::fstat(fd, &about) == 0 && S_ISREG(about.st_mode);
  const auto size = static_cast<std::uint64_t>(about.st_size);
  auto reader = std::make_unique<PosixReader>(fd, size, doing);
  if (!regular) return Status::Failure("not a file").Within(doing);
  return std::unique_ptr<FileReader>(std::move(reader));
}

std::vector<std::filesystem::path> NativeFiles::Drives() {
  std::vector<std::filesystem::path> drives = {"/"};
  const auto home = EnvironmentVariable("HOME");
  if (home && std::filesystem::path(*home).is_absolute() && Exists(*home)) drives.push_back(*home);
  if (const auto user = EnvironmentVariable("USER")) {
    AddMedia(std::filesystem::path("/media") / *user, drives);
    AddMedia(std::filesystem::path("/run/media") / *user, drives);
  }
  return drives;
}

Result<std::string> NativeFiles::Read(const std::filesystem::path& path) {
  const std::string doing = "read " + TextFromPath(path);
  const Descriptor file(OpenFile(path, O_RDONLY));
  if (!file) return SystemFailure(doing);
  struct stat about {};
  std::string bytes;
  if (::fstat(file.get(), &about) == 0 && S_ISREG(about.st_mode) &&
      static_cast<std::size_t>(about.st_size) <= kLargest) {
    bytes.resize(static_cast<std::size_t>(about.st_size));
  }
  std::size_t size = 0;
  for (;;) {
    // One byte more than is known, so that a file of the expected size is read in one go.
    if (bytes.size() <= size) bytes.resize(size + (size == 0 ? 1 << 16 : size / 2 + 1));
    const ssize_t got = ::read(file.get(), bytes.data() + size, bytes.size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return SystemFailure(doing);
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
    if (size > kLargest) return Status::Failure("larger than 1 GiB").Within(doing);
  }
  bytes.resize(size);
  return bytes;
}

Status NativeFiles::Replace(const std::filesystem::path& path, std::string_view bytes) {
  const std::string doing = "write " + TextFromPath(path);
  const std::filesystem::path target = FollowLinks(path);
  struct stat old {};
  const bool exists = ::stat(target.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return SystemFailure(doing);
  if (exists && S_ISDIR(old.st_mode)) {
    errno = EISDIR;
    return SystemFailure(doing);
  }
  if (exists && !S_ISREG(old.st_mode)) return WriteThrough(target, bytes, doing);
  if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
    return SystemFailure(doing);

  Temporary temporary(target);
  Descriptor& file = temporary.file();
  if (!file) return SystemFailure(doing + ": create a file beside it");
  if (exists && !Inherit(file.get(), old)) return SystemFailure(doing + ": set its permissions");
  if (!WriteAll(file.get(), bytes) || !Flush(file.get()) || !file.Close()) {
    return SystemFailure(doing);
  }
  if (!temporary.PutInPlace()) return SystemFailure(doing + ": rename into place");
  return FlushFolder(FolderOf(target), doing);
}

Status NativeFiles::Append(const std::filesystem::path& path, std::string_view bytes) {
  return AppendTo(path, bytes, false);
}

Status NativeFiles::AppendFlushed(const std::filesystem::path& path, std::string_view bytes) {
  return AppendTo(path, bytes, true);
}

Status NativeFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  const std::string doing = "rename " + TextFromPath(from) + " to " + TextFromPath(to);
#ifdef RENAME_NOREPLACE
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
    return Status::Ok();
  }
  if (errno != EINVAL && errno != ENOSYS) return SystemFailure(doing);
#endif
  struct stat there {};
  if (::lstat(to.c_str(), &there) == 0) {
    errno = EEXIST;
    return SystemFailure(doing);
  }
  return ::rename(from.c_str(), to.c_str()) == 0 ? Status::Ok() : SystemFailure(doing);
}

Result<std::optional<std::string>> ReadSecretFile(const std::filesystem::path& path) {
  // Without waiting for the writer of a pipe, should it be one.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) {
    if (errno == ENOENT) return std::optional<std::string>();
    return SystemFailure("read " + TextFromPath(path));
  }
  struct stat what {};
  if (::fstat(file.get(), &what) != 0) return SystemFailure("read " + TextFromPath(path));
  if (!S_ISREG(what.st_mode)) return Status::Failure(TextFromPath(path) + " is no file");
  if (what.st_uid != ::geteuid() || (what.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    return Status::Failure(TextFromPath(path) +
                           " is open to others; make it yours alone (chmod 600) and, if others "
                           "may have read it, change the password");
  }
  std::array<char, 4096> bytes{};
  const ssize_t count = ::read(file.get(), bytes.data(), bytes.size());
  if (count < 0) return SystemFailure("read " + TextFromPath(path));
  const std::string text(bytes.data(), static_cast<std::size_t>(count));
  return std::optional(text.substr(0, text.find_first_of("\r\n")));
}

Status SystemFailure(const std::string& doing) {
  return Status::Failure(std::generic_category().message(errno)).Within(doing);
}

}  // namespace zento
