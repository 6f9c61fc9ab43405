#include "measure/rde_form.h"

#include <algorithm>
#include <cmath>

#include "core/palette.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

// Disk potential and current, ring potential and current, rotation.
constexpr std::array<std::uint8_t, 5> kChannels = {0, 1, 2, 3, 4};
constexpr Colour kDiskColour = kLightBlue;
constexpr Colour kRingColour = kLightRed;
constexpr double kLiveDrawingBelow = 50;
constexpr double kRestingStepsPerVolt = 500;

// A rotor below this (rpm) stands still or gives no signal: nothing to steer by.
constexpr double kLowestSteered = 100;
constexpr double kRotationBand = 10;   // rpm
constexpr double kMotorStep = 0.0005;  // V

const AxisLook kLook{"0.00", "0.0e+0", "/V"};

}  // namespace

std::int32_t PlannedRotatingSweepMillis(const std::array<double, 3>& v, double cycles,
                                        double scan_rate) {
  const double once = std::abs(v[1] - v[0]) + std::abs(v[2] - v[1]);
  const double further =
      cycles == 1 ? std::abs(v[0] - v[2]) : 2 * (cycles - 1) * std::abs(v[1] - v[2]);
  return SweepMillis(once + further, scan_rate);
}

frmMeasureRDE::frmMeasureRDE(Workstation& workstation, Host& host, Instruments& instruments)
    : SweepForm(workstation, host, instruments, "frmMeasureRDE", "RDE Measurement",
                "Ring-disk voltammetry", kRestingStepsPerVolt),
      disk_monitor_(picDiskVMon, kDiskColour),
      ring_monitor_(picRingVMon, kDiskColour),
      disk_plot_(host.desktop, "Graph1"),
      ring_plot_(host.desktop, "Graph2") {
  AttachSweep(RDETimer, opnRDEMeas);
  OnCommit(Boxes(), [this] { LeaveBox(); });
  cmdClearMon.on_click = [this] {
    if (Measuring()) return;
    disk_monitor_.Clear();
    ring_monitor_.Clear();
  };
}

bool frmMeasureRDE::Load() {
  disk_monitor_.Clear();
  ring_monitor_.Clear();
  return LoadSweep({"AD Board不良です", "GPIB不良", "DA Board Trouble!"});
}

void frmMeasureRDE::MonitorTick() {
  const std::int32_t rounds = AccumulationRounds(settings().RDEAccum);
  std::array<double, 5> sums{};
  if (!ReadSums(kChannels, rounds, sums)) {
    lblRPM.SetText("no reading");
    return;
  }
  disk_monitor_.Add(sums[0] / rounds, sums[1] / rounds);
  ring_monitor_.Add(sums[2] / rounds, sums[3] / rounds);
  ShowMeasured(sums[4] / rounds * settings().RPMScale);
}

void frmMeasureRDE::ShowMeasured(double rpm) {
  lblRPM.SetText(PlainNumber(std::floor(rpm)) + "RPM");
}

void frmMeasureRDE::ShowEmptyGraphs() {
  disk_plot_.Begin("Disk Voltammogram", EmptyRange(SweepValues().disk_scale), kLook);
  ring_plot_.Begin("Ring Voltammogram(x axis = Disk Voltage)", EmptyRange(SweepValues().ring_scale),
                   kLook);
}

bool frmMeasureRDE::ReadPoint(std::int64_t& elapsed) {
  const SweepPlan& plan = SweepValues();
  std::array<double, 5> sums{};
  const bool read = ReadSums(kChannels, plan.rounds, sums);
  elapsed = ReadTime();
  if (!read) {
    TickFailed();
    return false;
  }
  rotation_.volts = sums[4] / plan.rounds;
  rotation_.rpm = rotation_.volts * rpm_scale_;
  ShowMeasured(rotation_.rpm);
  return TakePoint({sums[0] / plan.rounds * plan.x_scale, sums[1] / plan.rounds * plan.disk_scale,
                    sums[3] / plan.rounds * plan.ring_scale});
}

void frmMeasureRDE::Record(std::int64_t) {
  HoldRotation();
  rotation_.sum += rotation_.rpm;
  Draw(Point(PointIndex()));
  KeepPoint();
}

// Steers towards the rate that was applied: one that the calibration does not reach must not drive
// the motor beyond its highest calibrated voltage step by step.
void frmMeasureRDE::HoldRotation() {
  if (!(rotation_.rpm > kLowestSteered) || instruments().analog_output.Board() <= 0) return;
  double step = 0;
  if (rotation_.rpm < AppliedRpm() - kRotationBand) {
    if (instruments().analog_input.AtUpperLimit(rotation_.volts)) {
      LogHold();
      return;
    }
    step = kMotorStep;
  } else if (rotation_.rpm > AppliedRpm() + kRotationBand) {
    step = -kMotorStep;
  } else {
    return;
  }
  instruments().rotation.Nudge(step);
}

void frmMeasureRDE::LogHold() {
  if (rotation_.held) return;
  rotation_.held = true;
  LogEvent("The rotation signal is at the input board's limit (" + Format(rotation_.rpm, "0") +
           " rpm): the motor voltage is held at " + Format(workstation().motor_voltage, "0.0000") +
           " V instead of raised");
}

void frmMeasureRDE::LogRotation() {
  const char* unit = rotation_.held ? " rpm or more" : " rpm";
  LogEvent("Rotation measured: mean " + Format(rotation_.sum / PointIndex(), "0.0") + unit +
           ", at the last point " + Format(rotation_.rpm, "0.0") + " rpm; motor voltage " +
           Format(workstation().motor_voltage, "0.0000") + " V");
}

void frmMeasureRDE::Draw(const AcquiredPoint& point) {
  const bool disk_changed = disk_plot_.Include(point[0], point[1]);
  const bool ring_changed = ring_plot_.Include(point[0], point[2]);
  if (SweepValues().sampling_rate >= kLiveDrawingBelow) return;
  if (disk_changed) DrawDisk();
  disk_plot_.Point(point[0], point[1], kDiskColour);
  if (ring_changed) DrawRing();
  ring_plot_.Point(point[0], point[2], kRingColour);
}

void frmMeasureRDE::DrawDisk() {
  disk_plot_.Redraw(kLook);
  disk_plot_.Curve(RecordedPoints(), 1, kDiskColour);
}

void frmMeasureRDE::DrawRing() {
  ring_plot_.Redraw(kLook);
  ring_plot_.Curve(RecordedPoints(), 2, kRingColour);
}

// A stored track is shown with both curves on the same axes.
PlotRange frmMeasureRDE::BothRanges() const {
  const PlotRange& disk = disk_plot_.Range();
  const PlotRange& ring = ring_plot_.Range();
  return {std::min(disk.x1, ring.x1), std::min(disk.y1, ring.y1), std::max(disk.x2, ring.x2),
          std::max(disk.y2, ring.y2)};
}

void frmMeasureRDE::ShowRemaining(std::int32_t seconds) {
  if (seconds != 0) lblTimeRemain.SetText(PlainNumber(seconds) + "s remain");
}

void frmMeasureRDE::FinishRun() {
  if (PointIndex() > 0) LogRotation();
  StopDevices();
  if (PointIndex() > 0) {
    DrawDisk();
    DrawRing();
    StoreSweep(kModeRDE, 3, BothRanges());
  }
  ShowIdle();
  disk_monitor_.ResetRange();
  ring_monitor_.ResetRange();
}

}  // namespace zento
