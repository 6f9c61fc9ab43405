#pragma once

#include "devices/outlets.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// frmPower: shows and switches the outlets. A person who closes the window only hides it.
class PowerForm : public Form {
 public:
  PowerForm(Host& host, Outlets& outlets);

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

}  // namespace zento
