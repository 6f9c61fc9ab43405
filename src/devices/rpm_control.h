#pragma once

#include <cstdint>
#include <optional>

#include "core/workstation.h"
#include "devices/analog_output.h"
#include "devices/digital_output.h"

namespace zento {

struct Host;

// The rotating electrode's motor: its voltage on analog output 0, its supply on outlet 0. Does
// nothing without rotation control.
class RpmControl {
 public:
  RpmControl(Workstation& workstation, Host& host, AnalogOutput& output, DigitalOutput& outlets)
      : workstation_(workstation), host_(host), output_(output), outlets_(outlets) {}
  RpmControl(const RpmControl&) = delete;
  RpmControl& operator=(const RpmControl&) = delete;

  // Turns at `rpm`, clamped to the calibration, and leaves the rate that was applied (rounded) in
  // it. A rate below the calibration, 0 as a rule, switches the motor's outlet off and writes no
  // voltage; without outlets the motor then runs at the lowest calibrated rate. When the outlet
  // cannot be switched off, the motor voltage goes to 0 instead.
  void SetRotation(std::int32_t& rpm);
  // The same for rates that are not whole.
  void SetRate(double& rpm);

  // Adds `delta` V to the motor voltage, clamped to 0 to 5, and writes it.
  void Nudge(double& delta);
  // Writes `volts` as the motor voltage and leaves what was sent in it.
  void SetVoltage(double& volts);
  // Outlet 0. False when the power form cannot be loaded.
  bool SwitchMotor(bool on);

 private:
  void Stop();

  Workstation& workstation_;
  Host& host_;
  AnalogOutput& output_;
  DigitalOutput& outlets_;
};

// The rate (rpm) at which the motor turns once it is told `rpm`: after the calibration's limits, 0
// when it is switched off, nothing when the settings name no rotation control.
std::optional<double> RateAsApplied(const Workstation& workstation, double rpm);

}  // namespace zento
