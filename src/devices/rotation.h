#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/workstation.h"
#include "devices/analog_output.h"
#include "devices/outlets.h"
#include "text/status.h"

namespace zento {

struct CalibrationPoint;
struct Host;
struct Workstation;

// The table that relates the motor's control voltage to its rotation rate, and the text file that
// keeps it: one point a line, the rate in rpm, a TAB, the voltage in V.

// Lines with fewer than two fields (fields are cut at TABs) are skipped, fields after the second
// ignored; numbers are read leniently. A text with fewer than two points is a failure.
Result<std::vector<CalibrationPoint>> ParseCalibration(std::string_view bytes);

// Reads back to the same points, lines ended by CR LF.
std::string FormatCalibration(std::span<const CalibrationPoint> points);

// Settings::RPMvsVoltageFile; a relative path starts at the program's folder.
std::filesystem::path CalibrationFile(const Workstation& workstation);

// Reads that file into Workstation::rpm_calibration; after a failure the table is empty.
Status ReadCalibration(Workstation& workstation, Host& host);

// To be called when the settings have been read: with rotation control configured, reads the file;
// on failure tells the person and switches rotation control off until the program ends. Returns
// whether rotation control can be used.
bool LoadCalibration(Workstation& workstation, Host& host);

Status SaveCalibration(const Workstation& workstation, Host& host);

struct MotorPoint {
  double rpm = 0;
  double volts = 0;
};

// The voltage for `rpm`, linear between the table's points, `rpm` clamped to the table. A table
// that is not in ascending order is used as if it were, and of several points at one rate the first
// counts. Nothing with fewer than two points.
std::optional<MotorPoint> InterpolateCalibration(std::span<const CalibrationPoint> points,
                                                 double rpm);
// The lowest rate of the table, 0 when it is empty.
double LowestRate(std::span<const CalibrationPoint> points);

// The rate (rpm) at which the motor turns once it is told `rpm`: after the calibration's limits, 0
// when it is switched off, nothing when the settings name no rotation control.
std::optional<double> RateAsApplied(const Workstation& workstation, double rpm);

// The rotating electrode's motor: its voltage on analog output 0, its supply on the motor's outlet.
// Does nothing without rotation control.
class RpmControl {
 public:
  RpmControl(Workstation& workstation, AnalogOutput& output, Outlets& outlets)
      : workstation_(workstation), output_(output), outlets_(outlets) {}
  RpmControl(const RpmControl&) = delete;
  RpmControl& operator=(const RpmControl&) = delete;

  // Turns at `rpm`, clamped to the calibration, and returns the rate that was applied (rounded). A
  // rate below the calibration, 0 as a rule, switches the motor's outlet off and writes no voltage;
  // without outlets the motor then runs at the lowest calibrated rate. When the outlets cannot be
  // opened, the motor voltage goes to 0 instead.
  std::int32_t SetRotation(std::int32_t rpm);
  // The same for rates that are not whole.
  double SetRate(double rpm);

  // Adds `delta` V to the motor voltage, clamped to 0 to 5, and writes it.
  void Nudge(double delta);
  // Writes `volts` as the motor voltage and returns what was sent.
  double SetVoltage(double volts);
  // The motor's outlet. False when the outlets cannot be opened.
  bool SwitchMotor(bool on);

 private:
  void Stop();

  Workstation& workstation_;
  AnalogOutput& output_;
  Outlets& outlets_;
};

}  // namespace zento
