#include <dlfcn.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "devices/vendor/platform.h"

#include "text/status.h"

namespace zento::vendor {
namespace {

class PortDevice {
 public:
  explicit PortDevice(int file) : file_(file) {}
  ~PortDevice() { close(file_); }
  PortDevice(const PortDevice&) = delete;
  PortDevice& operator=(const PortDevice&) = delete;

  // A failed access reads as 0: no board is ever "done" with its conversion then.
  std::uint8_t Input(std::uint16_t port) const {
    std::uint8_t value = 0;
    ssize_t count = 0;
    do {
      count = pread(file_, &value, 1, port);
    } while (count < 0 && errno == EINTR);
    return count == 1 ? value : 0;
  }

  void Output(std::uint16_t port, std::uint8_t value) const {
    while (pwrite(file_, &value, 1, port) < 0 && errno == EINTR) {
    }
  }

 private:
  int file_;
};

std::string WhyNotOpened(const std::string& name, int error) {
  if (name.front() != '/') return "ZENTO_PORT_IO: " + name + " is not a full path";
  std::string why = "port device " + name + " cannot be opened: " + SystemErrorText(error);
  if (error == EACCES || error == EPERM) {
    why += " (access to I/O ports needs the rights of the system's administrator)";
  }
  return why;
}

}  // namespace

Result<SharedLibrary> SharedLibrary::Open(const std::filesystem::path& file) {
  if (void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    return SharedLibrary(file, handle);
  }
  const char* const error = dlerror();
  std::string why = error != nullptr ? error : "unknown cause";
  if (why.find("wrong ELF class") != why.npos) {
    why += sizeof(void*) == 8 ? "; this program needs the 64-bit library"
                              : "; this program needs the 32-bit library";
  }
  return Status::Failure(file.string() + " cannot be loaded: " + why);
}

SharedLibrary::Function SharedLibrary::Find(const std::string& name) const {
  return reinterpret_cast<Function>(dlsym(handle_, name.c_str()));
}

std::vector<std::filesystem::path> SystemLibraryFolders() {
  return {
    "/usr/local/lib",
#if defined(__x86_64__)
        "/usr/lib/x86_64-linux-gnu",
#elif defined(__i386__)
        "/usr/lib/i386-linux-gnu",
#elif defined(__aarch64__)
        "/usr/lib/aarch64-linux-gnu",
#endif
        sizeof(void*) == 8 ? "/usr/lib64" : "/usr/lib32", "/usr/lib",
        sizeof(void*) == 8 ? "/lib64" : "/lib32", "/lib",
  };
}

std::optional<std::string> EnvironmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

PortIo LoadPortIo(const Surroundings& surroundings) {
  const std::string name = surroundings.environment("ZENTO_PORT_IO").value_or("/dev/port");
  PortIo table;
  // Opening touches no port; whoever may open the device may use all ports.
  const int file = name.front() == '/' ? open(name.c_str(), O_RDWR | O_CLOEXEC) : -1;
  if (file < 0) {
    table.missing = WhyNotOpened(name, errno);
    return table;
  }
  const auto device = std::make_shared<PortDevice>(file);
  table.PortInputByte = [device](std::uint16_t port) { return device->Input(port); };
  table.PortOutputByte = [device](std::uint16_t port, std::uint8_t value) {
    device->Output(port, value);
  };
  return table;
}

std::string SerialDevice(int port) {
  return "/dev/ttyS" + std::to_string(port - 1);
}

void RaiseModemLines(std::intptr_t native_handle) {
  int lines = TIOCM_DTR | TIOCM_RTS;
  ioctl(static_cast<int>(native_handle), TIOCMBIS, &lines);
}

void DiscardOutput(std::intptr_t native_handle) {
  tcflush(static_cast<int>(native_handle), TCOFLUSH);
}

std::string SystemErrorText(int code) {
  return std::error_code(code, std::generic_category()).message();
}

}  // namespace zento::vendor
