#pragma once

#include <cstddef>
#include <cstdint>

#include "devices/digital_output.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// frmPower: the five switched outlets. Outlet 0 feeds the motor of the rotating electrode.
//
// Stays loaded from its first use to the program's end: a person who closes its window only hides
// it, because a form made anew would believe that all outlets are off.
class PowerForm : public Form {
 public:
  static constexpr std::size_t kOutlets = 5;

  PowerForm(Host& host, DigitalOutput& output);

  bool Load() override;
  void CloseRequested() override;
  LayoutNode Layout() override;

  // Switches outlet `ch`, 0 to 4, on when `sw` is odd, off when it is even, and leaves the outlet's
  // bit (0 or 2^ch) in `sw`. Any other outlet does nothing.
  void Power(int ch, std::uint8_t& sw);
  // All outlets off.
  void PowerOff();
  // Sends `b` straight to the outlet port when any power control is configured. The state kept
  // here does not change; `x` is not used.
  void Powerb(int x, std::uint8_t b);

  std::uint8_t state() const { return state_; }

  ControlArray<CheckBox, kOutlets> chkPower{
      *this, "chkPower", {"Outlet 0 (motor)", "Outlet 1", "Outlet 2", "Outlet 3", "Outlet 4"}};
  Button cmdPowerOff{*this, "cmdPowerOff", "All Off"};

 private:
  void Send();

  DigitalOutput& output_;
  std::uint8_t state_ = 0;  // bit i = outlet i, 1 = on
};

}  // namespace zento
