#include "measure/cv_form.h"

#include <array>
#include <cmath>

#include "core/palette.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {0, 1};  // potential, current
constexpr Colour kCurveColour = kLightRed;
constexpr double kLiveDrawingBelow = 20;

constexpr double kRestingStepsPerVolt = 400;

const AxisLook kEmptyLook{"0.0", "0.00e+0", "/V"};
const AxisLook kCurveLook{"0.00", "0.0e+0", "/V"};

}  // namespace

std::int32_t PlannedSweepMillis(const std::array<double, 3>& v, std::int32_t cycles,
                                double scan_rate) {
  const double path = std::abs(v[1] - v[0]) + std::abs(v[2] - v[1]) +
                      (2.0 * cycles - 2) * std::abs(v[1] - v[2]) + std::abs(v[0] - v[2]);
  return SweepMillis(path, scan_rate);
}

frmMeasureCV::frmMeasureCV(Workstation& workstation, Host& host, Instruments& instruments)
    : SweepForm(workstation, host, instruments, "frmMeasureCV", "CV Meaurement",
                "Cyclic voltammetry", kRestingStepsPerVolt),
      monitor_(picVMon, kCurveColour),
      plot_(host.desktop, "Graph1") {
  AttachSweep(CVTimer, OpnCVMeas);
  OnCommit(Boxes(), [this] { LeaveBox(); });
  txtCVTitle.on_commit = [this] { LeaveBox(); };
  txtCVNum.on_commit = [this] { SettingNum(txtCVNum.text()); };
  UpDown2.on_up = [this] { StepPreset(1); };
  UpDown2.on_down = [this] { StepPreset(-1); };
  cmdClearVMon.on_click = [this] {
    if (!Measuring()) monitor_.Clear();
  };
}

bool frmMeasureCV::Load() {
  monitor_.Clear();
  return LoadSweep({"AD Board Trouble!", "GPIB Trouble!", "DA Board Trouble!"});
}

void frmMeasureCV::MonitorTick() {
  const std::int32_t rounds = AccumulationRounds(CurrentPreset().CVAccum);
  std::array<double, 2> sums{};
  if (!ReadSums(kChannels, rounds, sums)) {
    lblVoltage.SetText("no reading");
    return;
  }
  const double volts = sums[0] / rounds;
  monitor_.Add(volts, sums[1] / rounds);
  lblVoltage.SetText(Format(volts, "0.000000") + "V");
}

void frmMeasureCV::ShowEmptyGraphs() {
  progress_ = {};
  plot_.Begin("Cyclic Voltammogram", EmptyRange(SweepValues().disk_scale), kEmptyLook);
}

bool frmMeasureCV::ReadPoint(std::int64_t& elapsed) {
  const SweepPlan& plan = SweepValues();
  elapsed = ReadTime();
  std::array<double, 2> sums{};
  if (!ReadSums(kChannels, plan.rounds, sums)) {
    TickFailed();
    return false;
  }
  return TakePoint(
      {sums[0] * plan.x_scale / plan.rounds, sums[1] * plan.disk_scale / plan.rounds, 0});
}

void frmMeasureCV::Record(std::int64_t elapsed) {
  const std::int32_t index = PointIndex();
  const AcquiredPoint& point = Point(index);
  const bool changed = plot_.Include(point[0], point[1]);
  if (SweepValues().sampling_rate < kLiveDrawingBelow) {
    if (changed) {
      DrawCurve();
    } else {
      plot_.Point(point[0], point[1], kCurveColour);
    }
  }
  if (index > 0 && elapsed > 0) {
    progress_.path += std::abs(point[0] - Point(index - 1)[0]);
    progress_.scan_rate = progress_.path / static_cast<double>(elapsed) * 1e6;
  }
  KeepPoint();
}

void frmMeasureCV::DrawCurve() {
  plot_.Redraw(kCurveLook);
  plot_.Curve(RecordedPoints(), 1, kCurveColour);
}

void frmMeasureCV::ShowRemaining(std::int32_t seconds) {
  if (seconds == progress_.shown_remaining) return;
  progress_.shown_remaining = seconds;
  lblTimeRemain.SetText(PlainNumber(seconds) +
                        "s remain Scan Rate:" + Format(progress_.scan_rate, "###0.#"));
}

void frmMeasureCV::FinishRun() {
  if (PointIndex() > 0) {
    DrawCurve();
    StoreSweep(kModeCV, 2, plot_.Range());
  }
  StopDevices();
  ShowIdle();
}

}  // namespace zento
