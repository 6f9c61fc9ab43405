#include "devices/instruments.h"

#include <utility>

#include "core/run_log.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"

namespace zento {
namespace {

template <std::size_t count, typename Device>
std::string Names(const DeviceRow<Device> (&rows)[count]) {
  std::string names;
  for (std::size_t i = 0; i < count; ++i) {
    names += (i == 0 ? "" : ", ") + std::to_string(i) + " " + std::string(rows[i].name);
  }
  return names;
}

}  // namespace

std::string DeviceNames(std::int32_t Settings::*setting) {
  if (setting == &Settings::ADBoard) return Names(kInputBoards);
  if (setting == &Settings::DABoard) return Names(kMotorOutputs);
  if (setting == &Settings::PowerControl) return Names(kOutletOutputs);
  if (setting == &Settings::GPIBControl) return Names(kBusLinks);
  return {};
}

Instruments::Instruments(Workstation& workstation, Host& host, vendor::Libraries vendor_tables)
    : libraries(std::move(vendor_tables)),
      card(workstation.settings, libraries.dask),
      analog_input({workstation.settings, libraries, card}),
      analog_output({workstation.settings, libraries, card}),
      outlets({workstation.settings, libraries, card}),
      gpib({workstation.settings, libraries, card}),
      generator(workstation.settings, gpib),
      rotation(workstation, analog_output, outlets) {
  outlets.on_refused = [&host] { host.dialogs.Message("DigitalOut Board Trouble!"); };
  RunLog& log = workstation.run_log;
  gpib.on_command = [&log](std::string_view command) { log.BusCommand(command); };
  gpib.on_failure = [&log](std::string_view command, const std::string& why) {
    log.Event("bus: " + std::string(command) + " FAILED: " + why);
  };
}

void Instruments::Release() {
  analog_input.Close();
  analog_output.Release();
  outlets.Release();
}

}  // namespace zento
