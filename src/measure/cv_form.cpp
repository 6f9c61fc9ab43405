#include "measure/cv_form.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/palette.h"
#include "core/tables.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {0, 1};  // potential, current
constexpr int kByButton = 1;
constexpr int kCurveColour = 12;
// From this sampling rate on (Hz) nothing is drawn while a run records.
constexpr double kLiveDrawingBelow = 20;

constexpr char kIdle[] = "Voltage Monitor";

const AxisLook kEmptyLook{"0.0", "0.00e+0", "/V"};
const AxisLook kCurveLook{"0.00", "0.0e+0", "/V"};

// The 2.5 mV step that a potential lies in, by its lower edge.
double Step(double potential) {
  return std::floor(potential * 400) / 400;
}

}  // namespace

std::int32_t PlannedSweepMillis(const std::array<double, 3>& v, std::int32_t cycles,
                                double scan_rate) {
  const double path = std::abs(v[1] - v[0]) + std::abs(v[2] - v[1]) +
                      (2.0 * cycles - 2) * std::abs(v[1] - v[2]) + std::abs(v[0] - v[2]);
  return std::max(ToLong(path * 1000 / (scan_rate * 0.001)), 0);
}

frmMeasureCV::frmMeasureCV(Workstation& workstation, Host& host, Instruments& instruments)
    : MeasureForm(workstation, host, instruments, "frmMeasureCV", "CV Meaurement"),
      txtCVNum(*this, "txtCVNum", "0"),
      UpDown2(*this, "UpDown2"),
      txtCVTitle(*this, "txtCVTitle"),
      txtXScale(*this, "txtXScale"),
      txtYScale(*this, "txtYScale", "1e-3"),
      txtRPMScale(*this, "txtRPMScale", "1000"),
      txtVoltSetting(*this, "txtVoltSetting", {"-0.2", "1.2", "0.6"}),
      txtScanrate(*this, "txtScanrate"),
      txtCycleNum(*this, "txtCycleNum"),
      txtRetainTime(*this, "txtRetainTime"),
      cbxReference(*this, "cbxReference"),
      txtRPM(*this, "txtRPM"),
      txtSamplingrate(*this, "txtSamplingrate"),
      txtAccum(*this, "txtAccum"),
      OpnCVMeas(*this, "OpnCVMeas", {"by cycle num.", "button"}, 0),
      txtDataNum(*this, "txtDataNum", "0"),
      UpDown1(*this, "UpDown1"),
      txtTitle(*this, "txtTitle"),
      picVMon(*this, "picVMon", {360, 240}),
      lblVoltage(*this, "lblVoltage"),
      cmdClearVMon(*this, "cmdClearVMon", "Clear V mon."),
      lblMode(*this, "lblMode"),
      lblTimeRemain(*this, "lblTimeRemain"),
      cmdStart(*this, "cmdStart", "Start"),
      cmdStop(*this, "cmdStop", "Stop"),
      CVTimer(*this, "CVTimer"),
      target_(txtDataNum, UpDown1),
      monitor_(picVMon, QBColor(kCurveColour)),
      plot_(host.desktop, "Graph1") {
  Attach(CVTimer, cmdStart);
  WireBoxes();
  cmdStart.on_click = [this] { StartMeasurement(); };
  cmdStop.on_click = [this] { RequestStop(); };
  cmdClearVMon.on_click = [this] {
    if (!Measuring()) monitor_.Clear();
  };
}

bool frmMeasureCV::Load() {
  cbxReference.SetItems({RefName.begin(), RefName.end()});
  ShowPreset();
  lblMode.SetText(kIdle);
  monitor_.Clear();
  if (!OpenDevices({"AD Board Trouble!", "GPIB Trouble!", "DA Board Trouble!"})) return false;
  CVTimer.SetInterval(PeriodCut(ParseLenient(txtSamplingrate.text())));
  CVTimer.SetEnabled(true);
  return true;
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

void frmMeasureCV::StartMeasurement() {
  if (!BeginRun()) return;
  MakePlan();
  LogBegin("Cyclic voltammetry");
  ShowEmptyGraph();
  lblTimeRemain.SetText("");
  lblMode.SetText("Waiting for the sweep");
  const CVPreset& preset = plan_.preset;
  CVTimer.SetInterval(PeriodCut(preset.CVSamplingRate));
  if (plan_.generator) {
    const std::array potentials = {preset.CVV0, preset.CVV1, preset.CVV2};
    instruments().generator.ProgrammeCyclicSweep(1, potentials, preset.CVScanrate,
                                                 preset.CVRetainTime);
    StartGenerator();
  }
  SetRotation(preset.CVRPM);
  RestartTime();
  resting_ = RestingPotential();
  CVTimer.SetEnabled(true);
}

bool frmMeasureCV::ByButton() const {
  return OpnCVMeas.selected() == kByButton;
}

void frmMeasureCV::MakePlan() {
  target_.Commit();
  LimitEntries();
  plan_.generator = settings().GPIBControl > 0;
  if (plan_.generator) LimitRetainTime();
  StorePreset();
  plan_.preset = CurrentPreset();
  plan_.rpm = ParseLenient(txtRPM.text());
  plan_.rounds = AccumulationRounds(plan_.preset.CVAccum);
  const CVPreset& p = plan_.preset;
  planned_ =
      ByButton() ? 0 : PlannedSweepMillis({p.CVV0, p.CVV1, p.CVV2}, p.CVCyclenum, p.CVScanrate);
  progress_ = {};
}

std::optional<double> frmMeasureCV::RestingPotential() {
  double sum = 0;
  if (!ReadSums(std::span(kChannels).first(1), plan_.rounds, {&sum, 1})) return std::nullopt;
  return Step(sum * plan_.preset.CVXScale / plan_.rounds);
}

void frmMeasureCV::ShowEmptyGraph() {
  const CVPreset& p = plan_.preset;
  const auto [low, high] = std::minmax({p.CVV0, p.CVV1, p.CVV2});
  const double left = ByButton() ? -0.1 : low;
  const double right = ByButton() ? 0.1 : high;
  plot_.Begin("Cyclic Voltammogram",
              {left * p.CVXScale, -0.01 * p.CVYScale, right * p.CVXScale, 0.01 * p.CVYScale},
              kEmptyLook);
}

void frmMeasureCV::MeasureTick() {
  std::int64_t elapsed = ReadTime();
  const bool read = ReadPoint();
  if (!Recording()) {
    if (!SweepBegan(elapsed, read)) return;
    StartRecording();
    lblMode.SetText("Recording");
    progress_ = {};
    elapsed = 0;
  }
  if (read) Record(elapsed);
  CheckPlannedTime(elapsed);
}

bool frmMeasureCV::ReadPoint() {
  std::array<double, 2> sums{};
  if (!ReadSums(kChannels, plan_.rounds, sums)) {
    TickFailed();
    return false;
  }
  const double potential = sums[0] * plan_.preset.CVXScale / plan_.rounds;
  const double current = sums[1] * plan_.preset.CVYScale / plan_.rounds;
  if (!std::isfinite(potential) || !std::isfinite(current)) {
    TickFailed("Overflow");
    return false;
  }
  TickSucceeded();
  Point(PointIndex()) = {potential, current, 0};
  return true;
}

bool frmMeasureCV::SweepBegan(std::int64_t elapsed, bool read) {
  if (plan_.generator) return elapsed > std::int64_t{1000} * plan_.preset.CVRetainTime;
  if (!read) return false;
  const double step = Step(Point(0)[0]);
  if (!resting_) resting_ = step;
  return step != *resting_;
}

void frmMeasureCV::Record(std::int64_t elapsed) {
  const std::int32_t index = PointIndex();
  const AcquiredPoint& point = Point(index);
  const bool changed = plot_.Include(point[0], point[1]);
  if (plan_.preset.CVSamplingRate < kLiveDrawingBelow) {
    if (changed) {
      DrawCurve();
    } else {
      plot_.Point(point[0], point[1], QBColor(kCurveColour));
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
  plot_.Curve(RecordedPoints(), 1, QBColor(kCurveColour));
}

void frmMeasureCV::CheckPlannedTime(std::int64_t elapsed) {
  if (ByButton()) {
    planned_ = elapsed;
    return;
  }
  if (elapsed > planned_) StopWithSound();
  const std::int32_t remaining = ToLong(static_cast<double>(planned_ - elapsed) / 1000);
  if (remaining == progress_.shown_remaining) return;
  progress_.shown_remaining = remaining;
  lblTimeRemain.SetText(PlainNumber(remaining) +
                        "s remain Scan Rate:" + Format(progress_.scan_rate, "###0.#"));
}

void frmMeasureCV::FinishRun() {
  if (PointIndex() > 0) {
    DrawCurve();
    Store();
    target_.Advance();
  }
  StopDevices();
  lblMode.SetText(kIdle);
}

void frmMeasureCV::Store() {
  const int track = target_.number();
  const CVPreset& preset = plan_.preset;
  TrackRecord& record = StoreRun(track, kModeCV, txtTitle.text(), 2);
  record.Scanrate = preset.CVScanrate;
  record.V = {preset.CVV0, preset.CVV1, preset.CVV2};
  record.Vxmin = plot_.Range().x1;
  record.Vymin = plot_.Range().y1;
  record.Vxmax = plot_.Range().x2;
  record.Vymax = plot_.Range().y2;
  record.MaxTime = static_cast<double>(planned_);
  record.RPM = plan_.rpm;
  record.DiskYscale = preset.CVYScale;
  record.RingYscale = 0;
  record.ref = preset.CVRef;
  workstation().ShowTrack(track);
}

}  // namespace zento
