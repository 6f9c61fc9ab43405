#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "devices/vendor/tables.h"
#include "host/virtual/virtual_host.h"

namespace zento {

// Vendor tables that write down every call, answer what they are told to and fail on demand.
struct FakeVendor {
  std::vector<std::string> calls;
  std::vector<std::string> Take() { return std::exchange(calls, {}); }
  int Count(std::string_view start) const {
    int count = 0;
    for (const std::string& call : calls) count += call.rfind(start, 0) == 0 ? 1 : 0;
    return count;
  }

  // The PCI-9112. Ranges that a value exceeds are not modelled: it is read as it is.
  std::map<int, double> volts;  // by channel
  std::int16_t register_result = 3;
  std::map<int, std::int16_t> config_result;  // by channel
  std::int16_t read_result = 0;
  std::int16_t write_result = 0;

  // The port-mapped board: the codes of successive conversions, the last for good.
  std::vector<int> codes = {0};
  bool done = true;

  std::int32_t aio_open_result = 0;
  std::int32_t aio_range_result = 0;
  std::int32_t aio_id = 7;
  std::map<int, std::uint16_t> aio_words;  // by channel

  std::map<std::string, std::int32_t> gp_result;  // by function
  std::map<int, std::int32_t> gp_status;          // by item

  bool serial_open = false;
  Status serial_open_result;
  Status serial_write_result;
  std::string serial_bytes;

  vendor::Libraries Tables();

 private:
  vendor::PortIo Ports();
  vendor::Aio AioTable();
  vendor::Dask DaskTable();
  vendor::Gpib GpibTable();
  vendor::SerialLine SerialTable();
  void Note(std::string call) { calls.push_back(std::move(call)); }

  std::size_t conversion_ = 0;
  std::vector<std::uint16_t*> words_;
};

// A workstation on fake hardware: all devices on the PCI-9112 and the bus board.
struct DeviceBench {
  explicit DeviceBench(FakeVendor setup = {}) : vendor(std::move(setup)) {
    Settings& s = workstation.settings;
    s.ADBoard = 2;
    s.CardNumber = 1;
    s.DeviceName = "AIO00";
    s.GPIBControl = 2;
    s.GPIBAddress = 7;
    s.DABoard = 1;
    s.PowerControl = 2;
    s.RPMScale = 1000;
    workstation.rpm_calibration = {{0, 0.0}, {1000, 1.0}, {3000, 2.6}};
  }
  FakeVendor vendor;
  Workstation workstation;
  VirtualHost machine;
  Instruments instruments{workstation, machine.host, vendor.Tables()};
};

}  // namespace zento
