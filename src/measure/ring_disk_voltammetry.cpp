#include "measure/ring_disk_voltammetry.h"

#include <algorithm>
#include <cmath>

#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

// Disk potential and current, ring potential and current, rotation.
constexpr std::array<std::uint8_t, 5> kChannels = {0, 1, 2, 3, 4};
constexpr double kRestingStepsPerVolt = 500;

// A rotor below this (rpm) stands still or gives no signal: nothing to steer by.
constexpr double kLowestSteered = 100;
constexpr double kRotationBand = 10;   // rpm
constexpr double kMotorStep = 0.0005;  // V

}  // namespace

std::int32_t PlannedRotatingSweepMillis(const std::array<double, 3>& v, double cycles,
                                        double scan_rate) {
  const double once = std::abs(v[1] - v[0]) + std::abs(v[2] - v[1]);
  const double further =
      cycles == 1 ? std::abs(v[0] - v[2]) : 2 * (cycles - 1) * std::abs(v[1] - v[2]);
  return SweepMillis(once + further, scan_rate);
}

RingDiskVoltammetry::RingDiskVoltammetry(const SweepValues& values, const Electrode& electrode,
                                         const RunChoices& choices)
    : Sweep("Ring-disk voltammetry", values, kRestingStepsPerVolt), electrode_(electrode) {
  values_.sampling_rate = Adjusted("Sampling rate", values.sampling_rate,
                                   SomeRate(values.sampling_rate), "points are taken in time");
  electrode_.rpm_scale = Adjusted("Rotation signal", electrode.rpm_scale,
                                  AtLeastOne(electrode.rpm_scale), "at least 1 rpm/V");
  SetDuration(PlannedRotatingSweepMillis(values_.v, values_.cycles, values_.scan_rate));
  AddCurve(EmptyRange(values_.disk_scale, choices));
  AddCurve(EmptyRange(values_.ring_scale, choices));
}

std::vector<RunParameter> RingDiskVoltammetry::Parameters(const RunChoices& choices) const {
  std::vector<RunParameter> parameters = Sweep::Parameters(choices);
  parameters.push_back(
      {"Disk scales", WithUnit(values_.x_scale, " V/V, ") + WithUnit(values_.disk_scale, " A/V")});
  parameters.push_back({"Ring scales", WithUnit(electrode_.ring_x_scale, " V/V, ") +
                                           WithUnit(values_.ring_scale, " A/V")});
  parameters.push_back({"Rotation signal", WithUnit(electrode_.rpm_scale, " rpm/V")});
  return parameters;
}

bool RingDiskVoltammetry::Read(Run& run, std::int64_t& elapsed) {
  std::array<double, 5> sums{};
  const bool read = run.ReadSums(kChannels, rounds_, sums);
  elapsed = run.ReadTime();
  if (!read) {
    run.ReadingFailed();
    return false;
  }
  rotation_.volts = sums[4] / rounds_;
  rotation_.rpm = rotation_.volts * electrode_.rpm_scale;
  rotation_.measured = true;
  point_ = {sums[0] / rounds_ * values_.x_scale, sums[1] / rounds_ * values_.disk_scale,
            sums[3] / rounds_ * values_.ring_scale};
  return CheckPoint(run);
}

void RingDiskVoltammetry::Take(Run& run, std::int64_t) {
  HoldRotation(run);
  rotation_.sum += rotation_.rpm;
  Include(0, point_[0], point_[1]);
  Include(1, point_[0], point_[2]);
}

// Steers towards the rate that was applied: one that the calibration does not reach must not drive
// the motor beyond its highest calibrated voltage step by step.
void RingDiskVoltammetry::HoldRotation(Run& run) {
  Instruments& instruments = run.instruments();
  if (!(rotation_.rpm > kLowestSteered) || instruments.analog_output.Board() <= 0) return;
  double step = 0;
  if (rotation_.rpm < applied_rpm_ - kRotationBand) {
    if (instruments.analog_input.AtUpperLimit(rotation_.volts)) {
      LogHold(run);
      return;
    }
    step = kMotorStep;
  } else if (rotation_.rpm > applied_rpm_ + kRotationBand) {
    step = -kMotorStep;
  } else {
    return;
  }
  instruments.rotation.Nudge(step);
}

void RingDiskVoltammetry::LogHold(Run& run) {
  if (rotation_.held) return;
  rotation_.held = true;
  run.LogEvent("The rotation signal is at the input board's limit (" + Format(rotation_.rpm, "0") +
               " rpm): the motor voltage is held at " +
               Format(run.workstation().motor_voltage, "0.0000") + " V instead of raised");
}

void RingDiskVoltammetry::Conclude(Run& run) {
  if (run.points().size() == 0) return;
  const char* unit = rotation_.held ? " rpm or more" : " rpm";
  run.LogEvent("Rotation measured: mean " + Format(rotation_.sum / run.points().size(), "0.0") +
               unit + ", at the last point " + Format(rotation_.rpm, "0.0") +
               " rpm; motor voltage " + Format(run.workstation().motor_voltage, "0.0000") + " V");
}

void RingDiskVoltammetry::Describe(RunState& state, const RunChoices& choices) const {
  Sweep::Describe(state, choices);
  if (state.last.potential) state.last.ring_current = point_[2];
  if (rotation_.measured) state.last.rpm = rotation_.rpm;
}

// A stored track is shown with both curves on the same axes.
void RingDiskVoltammetry::Store(Run& run) {
  const PlotRange& disk = Range(0);
  const PlotRange& ring = Range(1);
  StoreSweep(run, kModeRDE, {0, 1, 2},
             {std::min(disk.x1, ring.x1), std::min(disk.y1, ring.y1), std::max(disk.x2, ring.x2),
              std::max(disk.y2, ring.y2)});
}

}  // namespace zento
