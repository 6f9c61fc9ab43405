#include "devices/instruments.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "devices/adjust_rpm_form.h"
#include "devices/power_form.h"

namespace zento {

Instruments::Instruments(Workstation& workstation, Host& host, vendor::Libraries vendor_tables)
    : libraries(std::move(vendor_tables)),
      card(workstation, libraries.dask),
      analog_input(workstation, libraries, card),
      analog_output(workstation, libraries, card),
      digital_output(workstation, libraries, card),
      gpib(workstation, libraries),
      generator(workstation, gpib),
      rotation(workstation, host, analog_output, digital_output) {
  RunLog& log = workstation.run_log;
  gpib.on_command = [&log](std::string_view command) { log.BusCommand(command); };
  gpib.on_failure = [&log](std::string_view command, const std::string& why) {
    log.Event("bus: " + std::string(command) + " FAILED: " + why);
  };
}

void Instruments::Release() {
  analog_input.Close();
  analog_output.Release();
  digital_output.Release();
}

void RegisterDeviceForms(Desktop& desktop, Workstation& workstation, Host& host,
                         Instruments& instruments) {
  desktop.Register("frmPower", [&host, &instruments] {
    return std::make_unique<PowerForm>(host, instruments.digital_output);
  });
  desktop.Register("frmAdjustRPM", [&workstation, &host, &instruments] {
    return std::make_unique<AdjustRpmForm>(workstation, host, instruments);
  });
}

}  // namespace zento
