#include "ui/main/device_forms.h"

#include <cstdint>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include "devices/rotation.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/format.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr double kVoltageStep = 0.002;  // V
constexpr double kMostTried = 4.9;      // V
constexpr int kReadings = 500;
constexpr std::uint8_t kRateChannel = 4;
constexpr std::int64_t kMeasuringPeriod = 250;  // ms

}  // namespace

frmPower::frmPower(Host& host, Outlets& outlets)
    : Form(host, "frmPower", "Power Control"), outlets_(outlets) {
  for (int i = 0; i < Outlets::kCount; ++i) {
    chkPower[i].on_click = [this, i](int value) {
      outlets_.Power(i, static_cast<std::uint8_t>(value));
    };
  }
  cmdPowerOff.on_click = [this] { outlets_.PowerOff(); };
}

bool frmPower::Load() {
  if (!outlets_.Open()) return false;
  ShowOutlets();
  return true;
}

void frmPower::CloseRequested() {
  host().desktop.Hide(name());
}

LayoutNode frmPower::Layout() {
  std::vector<LayoutNode> boxes;
  for (int i = 0; i < Outlets::kCount; ++i) boxes.push_back(layout::Item(chkPower[i]));
  return layout::Rows(
      {layout::Group("Outlets", std::move(boxes)), layout::Item(cmdPowerOff), layout::Stretch()});
}

void frmPower::ShowOutlets() {
  for (int i = 0; i < Outlets::kCount; ++i) chkPower[i].SetValue(outlets_.IsOn(i) ? 1 : 0);
}

frmAdjustRPM::frmAdjustRPM(Workstation& workstation, Host& host, Instruments& instruments)
    : Form(host, "frmAdjustRPM", "RPM Adjustment"),
      workstation_(workstation),
      instruments_(instruments) {
  // The arrows change these; typing would have no effect.
  txtRPM.read_only = true;
  txtVoltage.read_only = true;
  UpdRPM.on_up = [this] { StepPoint(+1); };
  UpdRPM.on_down = [this] { StepPoint(-1); };
  UpdVoltage.on_up = [this] { StepVoltage(+1); };
  UpdVoltage.on_down = [this] { StepVoltage(-1); };
  cmdMotorOn.on_click = [this] { MotorOn(); };
  cmdMotorOff.on_click = [this] { MotorOff(); };
  cmdUpdate.on_click = [this] { Update(); };
  cmdSave.on_click = [this] { Save(); };
  Timer1.SetInterval(kMeasuringPeriod);
  Timer1.on_tick = [this] { Tick(); };
}

bool frmAdjustRPM::Load() {
  if (instruments_.analog_input.Open() != 0) {
    host().dialogs.Message("AD Board不良です");
    return false;
  }
  if (instruments_.analog_output.Board() > 0 && instruments_.analog_output.Open() != 0) {
    host().dialogs.Message("DA Board Trouble!");
    return false;
  }
  EnableDrive(false);
  const bool usable = workstation_.rpm_calibration.size() >= 2;
  cmdMotorOn.SetEnabled(usable);
  cmdUpdate.SetEnabled(usable);
  cmdSave.SetEnabled(usable);
  if (!usable) return true;
  tried_voltage_ = workstation_.rpm_calibration[point_].volts;
  ShowPoint();
  ShowVoltage();
  return true;
}

void frmAdjustRPM::Unload() {
  if (motor_on_ && workstation_.running_flag == 0) MotorOff();
}

LayoutNode frmAdjustRPM::Layout() {
  using namespace layout;
  return Rows({
      Group("Calibration point", {Fields({Field("RPM", txtRPM, &UpdRPM),
                                          Field("Voltage /V", txtVoltage, &UpdVoltage)})}),
      Group("Motor", {Columns({Item(cmdMotorOn), Item(cmdMotorOff)}),
                      Fields({Field("Meas. RPM", lblRPM), Field("Ave. RPM", lblRPMAverage)})}),
      Stretch(),
      Columns({Item(cmdUpdate), Item(cmdSave)}),
  });
}

void frmAdjustRPM::EnableDrive(bool on) {
  UpdRPM.SetEnabled(on);
  UpdVoltage.SetEnabled(on);
  Timer1.SetEnabled(on);
}

void frmAdjustRPM::MotorOn() {
  motor_on_ = true;
  EnableDrive(true);
  instruments_.rotation.SwitchMotor(true);
  tried_voltage_ = instruments_.rotation.SetVoltage(tried_voltage_);
}

void frmAdjustRPM::MotorOff() {
  motor_on_ = false;
  EnableDrive(false);
  instruments_.rotation.SwitchMotor(false);
}

void frmAdjustRPM::StepPoint(int direction) {
  const std::vector<CalibrationPoint>& points = workstation_.rpm_calibration;
  if (direction < 0 && point_ > 0) --point_;
  if (direction > 0 && point_ + 1 < points.size()) ++point_;
  ShowPoint();
  instruments_.rotation.SetRate(points[point_].rpm);
  tried_voltage_ = workstation_.motor_voltage;
  ShowVoltage();
}

void frmAdjustRPM::StepVoltage(int direction) {
  if (direction < 0 ? tried_voltage_ > 0 : tried_voltage_ < kMostTried) {
    // To the microvolt, so that many steps leave no tail of digits in the file.
    tried_voltage_ = RoundHalfEven((tried_voltage_ + direction * kVoltageStep) * 1e6) / 1e6;
  }
  tried_voltage_ = instruments_.rotation.SetVoltage(tried_voltage_);
  ShowVoltage();
}

void frmAdjustRPM::Update() {
  workstation_.rpm_calibration[point_].volts = tried_voltage_;
}

void frmAdjustRPM::Save() {
  const Status saved = SaveCalibration(workstation_, host());
  if (!saved.ok()) host().dialogs.Message(saved.why());
}

void frmAdjustRPM::Tick() {
  double sum = 0;
  if (!instruments_.analog_input.ReadSum({&kRateChannel, 1}, kReadings, {&sum, 1})) {
    lblRPM.SetText("no reading");
    return;
  }
  const double rpm = sum / kReadings * workstation_.settings.RPMScale;
  lblRPM.SetText(Format(rpm, "###0"));
  measured_[ring_index_] = rpm;
  ring_index_ = (ring_index_ + 1) % kRing;
  const double total = std::accumulate(measured_.begin(), measured_.end(), 0.0);
  lblRPMAverage.SetText(Format(total / kRing, "###0"));
}

void frmAdjustRPM::ShowPoint() {
  txtRPM.SetText(Format(workstation_.rpm_calibration[point_].rpm, "###0"));
}

void frmAdjustRPM::ShowVoltage() {
  txtVoltage.SetText(Format(tried_voltage_, "0.000"));
}

void RegisterDeviceForms(Desktop& desktop, Workstation& workstation, Host& host,
                         Instruments& instruments) {
  // The motor is switched without its window, which then has to follow.
  instruments.outlets.on_change = [&desktop] {
    if (auto* const power = desktop.FindAs<frmPower>("frmPower")) power->ShowOutlets();
  };
  desktop.Register("frmPower", [&host, &instruments] {
    return std::make_unique<frmPower>(host, instruments.outlets);
  });
  desktop.Register("frmAdjustRPM", [&workstation, &host, &instruments] {
    return std::make_unique<frmAdjustRPM>(workstation, host, instruments);
  });
}

}  // namespace zento
