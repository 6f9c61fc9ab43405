#pragma once

#include <functional>

#include "core/workstation.h"
#include "devices/device_table.h"
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

  OptionGroup opnDevice{*this, "opnDevice", Captions(kInputBoards)};
  TextBox txtDevice{*this, "txtDevice"};
  TextBox txtCardNumber{*this, "txtCardNumber"};
  CheckBox chkDynamicRange{*this, "chkDynamicRange", "Dynamic Range"};
  OptionGroup opnFGControl{*this, "opnFGControl", Captions(kBusLinks)};
  TextBox txtGPIBAddr{*this, "txtGPIBAddr"};
  UpDown updAddr{*this, "updAddr"};
  OptionGroup opnMotor{*this, "opnMotor", Captions(kMotorOutputs)};
  TextBox txtRPMvsVoltageFile{*this, "txtRPMvsVoltageFile"};
  Button cmdRPMvsVoltOpen{*this, "cmdRPMvsVoltOpen", "Open"};
  OptionGroup opnPowerControl{*this, "opnPowerControl", Captions(kOutletOutputs)};
  OptionGroup opnDrawMethod{*this, "opnDrawMethod", {"Line Connection", "Dots"}};
  TextBox txtSoundFileName{*this, "txtSoundFileName"};
  Button cmdOK{*this, "cmdOK", "OK"};

 private:
  void ConnectDevices();
  void ConnectRest();
  void ChooseBoard(int index);
  void StepAddress(int direction);
  void AskForCalibration();

  Settings& settings_;
};

}  // namespace zento
