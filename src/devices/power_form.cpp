#include "devices/power_form.h"

#include "host/host.h"

namespace zento {

PowerForm::PowerForm(Host& host, DigitalOutput& output)
    : Form(host, "frmPower", "Power Control"), output_(output) {
  for (std::size_t i = 0; i < kOutlets; ++i) {
    chkPower[i].on_click = [this, i](int value) {
      auto sw = static_cast<std::uint8_t>(value);
      Power(static_cast<int>(i), sw);
    };
  }
  cmdPowerOff.on_click = [this] { PowerOff(); };
}

bool PowerForm::Load() {
  state_ = 0;
  if (output_.Open() == 0) return true;
  host().dialogs.Message("DigitalOut Board Trouble!");
  return false;
}

void PowerForm::CloseRequested() {
  host().desktop.Hide(name());
}

LayoutNode PowerForm::Layout() {
  std::vector<LayoutNode> boxes;
  for (std::size_t i = 0; i < kOutlets; ++i) boxes.push_back(layout::Item(chkPower[i]));
  return layout::Rows(
      {layout::Group("Outlets", std::move(boxes)), layout::Item(cmdPowerOff), layout::Stretch()});
}

void PowerForm::Power(int ch, std::uint8_t& sw) {
  if (ch < 0 || ch >= static_cast<int>(kOutlets)) return;
  const auto mask = static_cast<std::uint8_t>(1 << ch);
  sw = (sw & 1) != 0 ? mask : 0;
  state_ = static_cast<std::uint8_t>((state_ & ~mask) | sw);
  Send();
}

void PowerForm::PowerOff() {
  state_ = 0;
  Send();
}

void PowerForm::Powerb(int, std::uint8_t b) {
  output_.WritePort(b);
}

void PowerForm::Send() {
  for (std::size_t i = 0; i < kOutlets; ++i) chkPower[i].SetValue((state_ >> i) & 1);
  output_.Write(state_);
}

}  // namespace zento
