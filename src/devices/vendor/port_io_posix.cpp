#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "devices/vendor/library_search.h"

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

}  // namespace zento::vendor
