#include "devices/rpm_control.h"

#include <algorithm>
#include <optional>

#include "devices/calibration.h"
#include "devices/power_form.h"
#include "host/host.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::int16_t kMotorChannel = 0;
constexpr int kMotorOutlet = 0;
constexpr double kMostVolts = 5.0;

}  // namespace

std::optional<double> RateAsApplied(const Workstation& workstation, double rpm) {
  if (workstation.settings.DABoard == 0) return std::nullopt;
  const auto& calibration = workstation.rpm_calibration;
  const std::optional<MotorPoint> point = InterpolateCalibration(calibration, rpm);
  const bool off = workstation.settings.PowerControl > 0 && rpm < LowestRate(calibration);
  return point && !off ? point->rpm : 0;
}

void RpmControl::SetRotation(std::int32_t& rpm) {
  double rate = rpm;
  SetRate(rate);
  rpm = ToLong(rate);
}

void RpmControl::SetRate(double& rpm) {
  if (output_.Board() == 0) return;
  const std::optional<MotorPoint> point = InterpolateCalibration(workstation_.rpm_calibration, rpm);
  const bool too_slow = !point || rpm < LowestRate(workstation_.rpm_calibration);
  if (outlets_.Control() > 0 && too_slow) {
    Stop();
    return;
  }
  if (!point) return;
  rpm = point->rpm;
  workstation_.motor_voltage = point->volts;
  SwitchMotor(true);
  output_.Write(kMotorChannel, workstation_.motor_voltage);
}

void RpmControl::Stop() {
  if (SwitchMotor(false)) return;
  double none = 0;
  SetVoltage(none);
}

void RpmControl::Nudge(double& delta) {
  double volts = std::clamp(workstation_.motor_voltage + delta, 0.0, kMostVolts);
  SetVoltage(volts);
}

void RpmControl::SetVoltage(double& volts) {
  output_.Write(kMotorChannel, volts);
  workstation_.motor_voltage = volts;
}

bool RpmControl::SwitchMotor(bool on) {
  auto* const power = host_.desktop.LoadAs<PowerForm>("frmPower");
  if (power == nullptr) return false;
  std::uint8_t sw = on ? 1 : 0;
  power->Power(kMotorOutlet, sw);
  return true;
}

}  // namespace zento
