#include "devices/gpib.h"

#include <array>

#include "text/status.h"
namespace zento {
namespace {

// A converter from the serial port to the bus.
class SerialConverter final : public BusLink {
 public:
  explicit SerialConverter(vendor::SerialLine& serial) : serial_(serial) {}

  bool Initialise(std::string& text) override {
    if (!serial_.Open || !serial_.IsOpen || !serial_.Write) {
      text = WhyMissing(serial_.missing, kIts);
      return false;
    }
    if (serial_.IsOpen()) return true;
    Status status = serial_.Open(kPort, kLineSettings);
    // Set-up of the converter itself: clear the interface, remote enable, no timeout.
    for (const std::string_view line : {"SIC .01\r", "sre 1\r", "tmo 0\r"}) {
      if (status.ok()) status = serial_.Write(line);
    }
    text = status.why();
    // A line left open would pass for a working link at the next attempt.
    if (!status.ok()) Reset();
    return status.ok();
  }

  void Reset() override {
    if (serial_.Close) serial_.Close();
  }

  bool Send(std::int32_t address, std::string_view command, std::string& text) override {
    if (!serial_.Write) {
      text = WhyMissing(serial_.missing, kIts);
      return false;
    }
    // The count is of the bytes behind the first line, the command's own line end included.
    const std::string line = "WRT #" + std::to_string(command.size() + 2) + "," +
                             std::to_string(address) + "\n" + std::string(command) + "\r\n";
    const Status status = serial_.Write(line);
    text = status.why();
    return status.ok();
  }

 private:
  static constexpr int kPort = 1;
  static constexpr std::string_view kLineSettings = "9600,N,8,1";
  static constexpr const char* kIts = "serial port: its";

  vendor::SerialLine& serial_;
};

}  // namespace

std::unique_ptr<BusLink> MakeSerialConverter(const DeviceParts& parts) {
  return std::make_unique<SerialConverter>(parts.libraries.serial);
}

std::int32_t GpibLink::InitialiseLink() {
  const std::int32_t control = settings_.GPIBControl;
  BusLink* const link = link_.Get(control);
  if (link != nullptr && !link->Initialise(status_text_)) return 1;
  link_.Keep(control);
  return 0;
}

bool GpibLink::Recover() {
  BusLink* const link = link_.Get();
  if (link == nullptr) return true;
  link->Reset();
  return link->Initialise(status_text_);
}

bool GpibLink::Send(std::int32_t address, std::string_view command) {
  BusLink* const link = link_.Get();
  if (link == nullptr) return false;
  if (on_command) on_command(command);
  const bool sent = link->Send(address, command, status_text_);
  if (!sent && on_failure) on_failure(command, status_text_);
  return sent;
}

}  // namespace zento
