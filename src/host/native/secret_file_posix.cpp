#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "host/native/secret_file.h"
#include "host/native/system_failure.h"
#include "host/path_text.h"

namespace zento {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

}  // namespace

Result<std::optional<std::string>> ReadSecretFile(const std::filesystem::path& path) {
  // Without waiting for the writer of a pipe, should it be one.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file.number() < 0) {
    if (errno == ENOENT) return std::optional<std::string>();
    return SystemFailure("read " + TextFromPath(path));
  }
  struct stat what {};
  if (::fstat(file.number(), &what) != 0) return SystemFailure("read " + TextFromPath(path));
  if (!S_ISREG(what.st_mode)) return Status::Failure(TextFromPath(path) + " is no file");
  if (what.st_uid != ::geteuid() || (what.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    return Status::Failure(TextFromPath(path) +
                           " is open to others; make it yours alone (chmod 600) and, if others "
                           "may have read it, change the password");
  }
  std::array<char, 4096> bytes{};
  const ssize_t count = ::read(file.number(), bytes.data(), bytes.size());
  if (count < 0) return SystemFailure("read " + TextFromPath(path));
  const std::string text(bytes.data(), static_cast<std::size_t>(count));
  return std::optional(text.substr(0, text.find_first_of("\r\n")));
}

}  // namespace zento
