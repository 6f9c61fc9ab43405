#include "devices/rotation.h"

#include <algorithm>

#include "core/settings.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/lines.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::size_t kFewestPoints = 2;
constexpr std::int16_t kMotorChannel = 0;

bool ByRate(const CalibrationPoint& a, const CalibrationPoint& b) {
  return a.rpm < b.rpm;
}

// `points` ascend in rpm.
MotorPoint InterpolateAscending(std::span<const CalibrationPoint> points, double rpm) {
  const double rate = std::clamp(rpm, points.front().rpm, points.back().rpm);
  const auto upper = std::find_if(points.begin() + 1, points.end() - 1,
                                  [&](const CalibrationPoint& point) { return point.rpm >= rate; });
  const auto lower = upper - 1;
  const double width = upper->rpm - lower->rpm;
  if (width <= 0) return {rate, lower->volts};
  return {rate, lower->volts + (rate - lower->rpm) * (upper->volts - lower->volts) / width};
}

}  // namespace

Result<std::vector<CalibrationPoint>> ParseCalibration(std::string_view bytes) {
  std::vector<CalibrationPoint> points;
  LineReader lines(bytes);
  std::string_view line;
  while (lines.Next(line)) {
    const std::size_t tab = line.find('\t');
    if (tab == line.npos) continue;
    const std::string_view second = line.substr(tab + 1);
    points.push_back(
        {ParseLenient(line.substr(0, tab)), ParseLenient(second.substr(0, second.find('\t')))});
  }
  if (points.size() < kFewestPoints) {
    return Status::Failure("fewer than two lines with a rate, a TAB and a voltage");
  }
  return points;
}

std::string FormatCalibration(std::span<const CalibrationPoint> points) {
  std::string text;
  for (const CalibrationPoint& point : points) {
    text += PlainNumber(point.rpm) + "\t" + PlainNumber(point.volts) + "\r\n";
  }
  return text;
}

std::filesystem::path CalibrationFile(const Workstation& workstation) {
  return workstation.home / PathFromText(workstation.settings.RPMvsVoltageFile);
}

Status ReadCalibration(Workstation& workstation, Host& host) {
  workstation.rpm_calibration.clear();
  const std::string& name = workstation.settings.RPMvsVoltageFile;
  if (name.empty()) return Status::Failure("no calibration file is set");
  const Result<std::string> bytes = host.files.Read(CalibrationFile(workstation));
  if (!bytes.ok()) return bytes.status();
  Result<std::vector<CalibrationPoint>> points = ParseCalibration(bytes.value());
  if (!points.ok()) return points.status().Within(name);
  workstation.rpm_calibration = std::move(points.value());
  return Status::Ok();
}

bool LoadCalibration(Workstation& workstation, Host& host) {
  if (workstation.settings.DABoard <= 0) return false;
  if (ReadCalibration(workstation, host).ok()) return true;
  workstation.settings.DABoard = 0;
  host.dialogs.Message(
      "RPM vs. Voltage file cannot be found or invalid. You cannot use RPM control.");
  return false;
}

Status SaveCalibration(const Workstation& workstation, Host& host) {
  // An empty table was never read: writing it would destroy the file.
  if (workstation.rpm_calibration.size() < kFewestPoints) {
    return Status::Failure("there is no calibration to save");
  }
  return host.files.Replace(CalibrationFile(workstation),
                            FormatCalibration(workstation.rpm_calibration));
}

std::optional<MotorPoint> InterpolateCalibration(std::span<const CalibrationPoint> points,
                                                 double rpm) {
  if (points.size() < kFewestPoints) return std::nullopt;
  if (std::is_sorted(points.begin(), points.end(), ByRate)) {
    return InterpolateAscending(points, rpm);
  }
  std::vector<CalibrationPoint> sorted(points.begin(), points.end());
  std::stable_sort(sorted.begin(), sorted.end(), ByRate);
  return InterpolateAscending(sorted, rpm);
}

double LowestRate(std::span<const CalibrationPoint> points) {
  const auto lowest = std::min_element(points.begin(), points.end(), ByRate);
  return lowest == points.end() ? 0 : lowest->rpm;
}

std::optional<double> RateAsApplied(const Workstation& workstation, double rpm) {
  if (workstation.settings.DABoard == 0) return std::nullopt;
  const auto& calibration = workstation.rpm_calibration;
  const std::optional<MotorPoint> point = InterpolateCalibration(calibration, rpm);
  const bool off = workstation.settings.PowerControl > 0 && rpm < LowestRate(calibration);
  return point && !off ? point->rpm : 0;
}

std::int32_t RpmControl::SetRotation(std::int32_t rpm) {
  return ToLong(SetRate(rpm));
}

double RpmControl::SetRate(double rpm) {
  if (output_.Board() == 0) return rpm;
  const std::optional<MotorPoint> point = InterpolateCalibration(workstation_.rpm_calibration, rpm);
  const bool too_slow = !point || rpm < LowestRate(workstation_.rpm_calibration);
  if (outlets_.Control() > 0 && too_slow) {
    Stop();
    return rpm;
  }
  if (!point) return rpm;
  SwitchMotor(true);
  SetVoltage(point->volts);
  return point->rpm;
}

void RpmControl::Stop() {
  if (!SwitchMotor(false)) SetVoltage(0);
}

void RpmControl::Nudge(double delta) {
  SetVoltage(std::clamp(workstation_.motor_voltage + delta, 0.0, AnalogOutput::kMostVolts));
}

double RpmControl::SetVoltage(double volts) {
  workstation_.motor_voltage = output_.Write(kMotorChannel, volts);
  return workstation_.motor_voltage;
}

bool RpmControl::SwitchMotor(bool on) {
  return outlets_.Power(Outlets::kMotor, on ? 1 : 0);
}

}  // namespace zento
