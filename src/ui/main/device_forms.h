#pragma once

#include <array>
#include <cstddef>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/controls.h"
#include "host/form.h"
#include "host/host.h"

namespace zento {

// frmPower: shows and switches the outlets. A person who closes the window only hides it.
class frmPower : public Form {
 public:
  frmPower(Host& host, Outlets& outlets);

  bool Load() override;
  void CloseRequested() override;
  LayoutNode Layout() override;

  // Whatever switched them.
  void ShowOutlets();

  ControlArray<CheckBox, Outlets::kCount> chkPower{
      *this, "chkPower", {"Outlet 0 (motor)", "Outlet 1", "Outlet 2", "Outlet 3", "Outlet 4"}};
  Button cmdPowerOff{*this, "cmdPowerOff", "All Off"};

 private:
  Outlets& outlets_;
};

// frmAdjustRPM: edits the rotation-rate calibration. Steps through its points, drives the motor at
// each, shows the measured rate, and saves the corrected table.
class frmAdjustRPM : public Form {
 public:
  frmAdjustRPM(Workstation& workstation, Host& host, Instruments& instruments);

  bool Load() override;
  // A motor that this window switched on is switched off, unless a measurement is running.
  void Unload() override;
  LayoutNode Layout() override;

  TextBox txtRPM{*this, "txtRPM"};
  UpDown UpdRPM{*this, "UpdRPM"};
  TextBox txtVoltage{*this, "txtVoltage"};
  UpDown UpdVoltage{*this, "UpdVoltage"};
  Button cmdMotorOn{*this, "cmdMotorOn", "Motor On"};
  Button cmdMotorOff{*this, "cmdMotorOff", "Motor Off"};
  Button cmdUpdate{*this, "cmdUpdate", "Update"};
  Button cmdSave{*this, "cmdSave", "Save"};
  Label lblRPM{*this, "lblRPM"};                // measured rate, rpm
  Label lblRPMAverage{*this, "lblRPMAverage"};  // mean of the last 10, rpm
  Timer Timer1{*this, "Timer1"};

 private:
  static constexpr std::size_t kRing = 10;

  void MotorOn();
  void MotorOff();
  void StepPoint(int direction);
  void StepVoltage(int direction);
  void Update();
  void Save();
  void Tick();
  void EnableDrive(bool on);
  void ShowPoint();
  void ShowVoltage();

  Workstation& workstation_;
  Instruments& instruments_;
  std::size_t point_ = 0;     // index into the calibration
  double tried_voltage_ = 0;  // V
  std::array<double, kRing> measured_{};
  std::size_t ring_index_ = 0;
  bool motor_on_ = false;  // switched on here
};

// Makes frmPower and frmAdjustRPM known to the desktop. All arguments outlive it.
void RegisterDeviceForms(Desktop& desktop, Workstation& workstation, Host& host,
                         Instruments& instruments);

}  // namespace zento
