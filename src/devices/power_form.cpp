#include "devices/power_form.h"

#include "host/host.h"

namespace zento {

PowerForm::PowerForm(Host& host, Outlets& outlets)
    : Form(host, "frmPower", "Power Control"), outlets_(outlets) {
  for (int i = 0; i < Outlets::kCount; ++i) {
    chkPower[i].on_click = [this, i](int value) {
      outlets_.Power(i, static_cast<std::uint8_t>(value));
    };
  }
  cmdPowerOff.on_click = [this] { outlets_.PowerOff(); };
}

bool PowerForm::Load() {
  if (!outlets_.Open()) return false;
  ShowOutlets();
  return true;
}

void PowerForm::CloseRequested() {
  host().desktop.Hide(name());
}

LayoutNode PowerForm::Layout() {
  std::vector<LayoutNode> boxes;
  for (int i = 0; i < Outlets::kCount; ++i) boxes.push_back(layout::Item(chkPower[i]));
  return layout::Rows(
      {layout::Group("Outlets", std::move(boxes)), layout::Item(cmdPowerOff), layout::Stretch()});
}

void PowerForm::ShowOutlets() {
  for (int i = 0; i < Outlets::kCount; ++i) chkPower[i].SetValue(outlets_.IsOn(i) ? 1 : 0);
}

}  // namespace zento
