#pragma once

#include <functional>

#include "core/workstation.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// frmSettings: the devices, the preview's style, the sound. Every change takes effect on the
// settings at once; they are written when the program ends, and devices are opened after them when
// it starts. An option's index is the stored value.
class frmSettings : public Form {
 public:
  frmSettings(Workstation& workstation, Host& host);

  bool Load() override;
  LayoutNode Layout() override;

  OptionGroup opnDevice;
  TextBox txtDevice;
  TextBox txtCardNumber;
  CheckBox chkDynamicRange;
  OptionGroup opnFGControl;
  TextBox txtGPIBAddr;
  UpDown updAddr;
  OptionGroup opnMotor;
  TextBox txtRPMvsVoltageFile;
  Button cmdRPMvsVoltOpen;
  OptionGroup opnPowerControl;
  OptionGroup opnDrawMethod;
  TextBox txtSoundFileName;
  Button cmdOK;

 private:
  void ConnectDevices();
  void ConnectRest();
  void ChooseBoard(int index);
  void StepAddress(int direction);
  void AskForCalibration();

  Settings& settings_;
};

}  // namespace zento
