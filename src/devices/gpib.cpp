#include "devices/gpib.h"

#include <array>

#include "devices/gpib_status.h"

namespace zento {
namespace {

constexpr std::int32_t kSerialConverter = 1;
constexpr std::int32_t kBusBoard = 2;
constexpr std::int32_t kTimeout = 10000;
constexpr int kSerialPort = 1;
constexpr std::string_view kSerialSettings = "9600,N,8,1";

std::string Missing(const std::string& why, const char* what) {
  return why.empty() ? std::string(what) + ": its library is not there" : why;
}

bool Complete(const vendor::Gpib& bus) {
  return bus.GpIni && bus.GpIfc && bus.GpRen && bus.GpTimeout && bus.GpBoardsts && bus.GpTalk &&
         bus.GpExit;
}

}  // namespace

std::int32_t GpibLink::InitialiseLink() {
  const std::int32_t control = workstation_.settings.GPIBControl;
  const std::int32_t failed = Initialise(control);
  if (failed == 0) control_ = control;
  return failed;
}

bool GpibLink::Recover() {
  if (Control() == kSerialConverter && serial_.Close) serial_.Close();
  return Initialise(Control()) == 0;
}

std::int32_t GpibLink::Initialise(std::int32_t control) {
  if (control == kSerialConverter) return InitialiseSerial();
  if (control == kBusBoard) return InitialiseBoard(status_text_);
  return 0;
}

std::int32_t GpibLink::InitialiseSerial() {
  if (!serial_.Open || !serial_.IsOpen || !serial_.Write) {
    status_text_ = Missing(serial_.missing, "serial port");
    return 1;
  }
  if (serial_.IsOpen()) return 0;
  Status status = serial_.Open(kSerialPort, kSerialSettings);
  // Set-up of the converter itself: clear the interface, remote enable, no timeout.
  for (const std::string_view line : {"SIC .01\r", "sre 1\r", "tmo 0\r"}) {
    if (status.ok()) status = serial_.Write(line);
  }
  status_text_ = status.why();
  if (status.ok()) return 0;
  // A line left open would pass for a working link at the next attempt.
  if (serial_.Close) serial_.Close();
  return 1;
}

std::int32_t GpibLink::InitialiseBoard(std::string& text) {
  if (!Complete(bus_)) {
    text = Missing(bus_.missing, "bus board");
    return 1;
  }
  bus_.GpExit();
  if (CheckGpibStatus("GpIni", bus_.GpIni(), text) != 0) return 1;
  std::array<std::int32_t, 4> status{};
  constexpr std::array<std::int32_t, 4> kItems = {10, 8, 12, 13};
  for (std::size_t i = 0; i < kItems.size(); ++i) bus_.GpBoardsts(kItems[i], &status[i]);
  if (status[0] == 0) {  // the board is the system's controller
    if (CheckGpibStatus("GpIfc", bus_.GpIfc(1), text) != 0) return 1;
    if (CheckGpibStatus("GpRen", bus_.GpRen(), text) != 0) return 1;
  }
  if (CheckGpibStatus("GpTimeout", bus_.GpTimeout(kTimeout), text) != 0) return 1;
  text = "初期化を終了しました。";
  return 0;
}

bool GpibLink::Send(std::int32_t address, std::string_view command) {
  const std::int32_t control = Control();
  if (control != kSerialConverter && control != kBusBoard) return false;
  if (on_command) on_command(command);
  const bool sent =
      control == kBusBoard ? SendOnBoard(address, command) : SendOnSerial(address, command);
  if (!sent && on_failure) on_failure(command, status_text_);
  return sent;
}

bool GpibLink::SendOnBoard(std::int32_t address, std::string_view command) {
  if (command.empty()) return true;
  if (!bus_.GpTalk) {
    status_text_ = Missing(bus_.missing, "bus board");
    return false;
  }
  // The count of entries that follow, the board itself as talker, the listener.
  const std::array<std::int32_t, 3> addresses = {2, 0, address};
  const std::string text(command);
  const std::int32_t code =
      bus_.GpTalk(addresses.data(), static_cast<std::int32_t>(text.size()), text.c_str());
  return CheckGpibStatus("GpTalk", code, status_text_) == 0;
}

bool GpibLink::SendOnSerial(std::int32_t address, std::string_view command) {
  if (!serial_.Write) {
    status_text_ = Missing(serial_.missing, "serial port");
    return false;
  }
  const std::string line = "WRT #" + std::to_string(command.size() + 2) + "," +
                           std::to_string(address) + "\n" + std::string(command) + "\r\n";
  const Status status = serial_.Write(line);
  status_text_ = status.why();
  return status.ok();
}

}  // namespace zento
