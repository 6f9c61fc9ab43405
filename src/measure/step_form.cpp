#include "measure/step_form.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/palette.h"
#include "core/track_store.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {0, 1};  // potential, current
constexpr std::array<std::uint8_t, 1> kCurrentChannel = {1};
constexpr int kByButton = 1;
constexpr int kByCharge = 2;
constexpr int kVariable = 1;
constexpr Colour kCurveColour = kLightRed;
constexpr double kLiveDrawingBelow = 50;
// No timer is faster (Hz), however a division below 1 multiplies the rate.
constexpr double kFastestRate = 1000;
// 5 ms of conversions.
constexpr std::int32_t kSettlingReadings = 200;
// How long the generator holds the second potential where no time is planned.
constexpr std::int32_t kLongHoldSeconds = 30000;

const AxisLook kLook{"0", "0.0#e+00", "/V"};

double Rounded(double value, double per_unit) {
  return RoundHalfEven(value * per_unit) / per_unit;
}

}  // namespace

frmPotentialStep::frmPotentialStep(Workstation& workstation, Host& host, Instruments& instruments)
    : MeasureForm(workstation, host, instruments, "frmPotentialStep", "Potential Step Measurement"),
      target_(txtDataNum, UpDown1),
      monitor_(picVMon, kCurveColour),
      plot_(host.desktop, "Graph1") {
  Attach(PSTimer, cmdStart);
  OnCommit(Boxes(), [this] { LeaveBox(); });
  chkGraphOn.on_click = [this](int) { StoreSettings(); };
  cmdStart.on_click = [this] { StartMeasurement(); };
  cmdStop.on_click = [this] { RequestStop(); };
  cmdClearVMon.on_click = [this] {
    if (!Measuring()) monitor_.Clear();
  };
}

bool frmPotentialStep::Load() {
  ShowSettings();
  monitor_.Clear();
  if (!OpenDevices({"AD Board不良です", "GPIB不良", "DA Board Trouble!"})) return false;
  PSTimer.SetInterval(PeriodRounded(NumberIn(txtInitSamplingRate)));
  PSTimer.SetEnabled(true);
  return true;
}

void frmPotentialStep::MonitorTick() {
  const std::int32_t rounds = AccumulationRounds(settings().PSAccum);
  std::array<double, 2> sums{};
  if (!ReadSums(kChannels, rounds, sums)) {
    lblVoltage.SetText("no reading");
    return;
  }
  const double volts = sums[0] / rounds;
  monitor_.Add(volts, sums[1] / rounds);
  lblVoltage.SetText(Format(volts, "0.000000") + "V");
}

void frmPotentialStep::StartMeasurement() {
  if (!BeginRun()) return;
  MakePlan();
  LogBegin("Potential step");
  ShowEmptyGraph();
  lblStatus.SetText("Waiting for the step");
  PSTimer.SetInterval(PeriodRounded(rate_));
  if (plan_.generator) Programme();
  SetRotation(ToLong(plan_.rpm));
  ReadReference();
  RestartTime();
  PSTimer.SetEnabled(true);
}

// The output was switched on a moment ago: the potentiostat gets some milliseconds to follow before
// its potential is taken as the one that the step will leave.
void frmPotentialStep::ReadReference() {
  const auto potential = std::span(kChannels).first(1);
  double volts = 0;
  reference_.reset();
  if (!ReadSums(potential, kSettlingReadings, {&volts, 1})) return;
  volts = 0;
  if (ReadSums(potential, 1, {&volts, 1})) reference_ = Rounded(volts, 10);
}

void frmPotentialStep::Programme() {
  const std::array potentials = {plan_.first, plan_.second};
  const bool by_time = opnPSMeas.selected() != kByButton && opnPSMeas.selected() != kByCharge;
  const std::int32_t hold = by_time ? ToLong(plan_.limit / 1000.0) : kLongHoldSeconds;
  instruments().generator.ProgrammePotentialStep(1, potentials, plan_.retain_seconds, hold);
  StartGenerator();
}

Plan frmPotentialStep::CurrentPlan() const {
  Plan plan;
  plan.technique = "Potential step";
  plan.generator = plan_.generator;
  for (const double volts : {plan_.first, plan_.second}) {
    plan.potentials.push_back({volts, PotentialAsSent(volts)});
  }
  plan.rotation = {PlanRate(plan_.rpm)};
  plan.retain_seconds = plan_.retain_seconds;
  const int method = opnPSMeas.selected();
  plan.end = method == kByButton   ? PlannedEnd::kPerson
             : method == kByCharge ? PlannedEnd::kCharge
                                   : PlannedEnd::kTime;
  if (plan.end == PlannedEnd::kTime) plan.duration = plan_.limit;
  plan.sampling_rate = plan_.rate;
  plan.interval = PeriodRounded(plan_.rate);
  plan.rounds = plan_.rounds;
  // With variable sampling they become fewer and fewer.
  if (opnSamplingMode.selected() != kVariable) plan.points = PlanPoints(plan);
  plan.first_target = plan.last_target = target_.number();
  return plan;
}

void frmPotentialStep::ShowEmptyGraph() {
  plot_.Begin("I-t Graph", {-2, -0.01 * plan_.y_scale, 10000, 0.01 * plan_.y_scale}, kLook);
  curve_drawn_ = true;
}

void frmPotentialStep::MeasureTick() {
  std::int64_t elapsed = ReadTime();
  const std::optional<Sample> sample = ReadSample();
  if (!Recording()) {
    if (!sample || !StepSeen(*sample, elapsed)) return;
    LogStep(sample->potential);
    StartRecording();
    elapsed = 0;
    MarkTrack(sample->potential);
  }
  if (sample) Record(*sample, elapsed);
  CheckEnd(elapsed);
  if (sample && opnSamplingMode.selected() == kVariable) ThinOut(elapsed);
}

// The current is read in every round. The potential is averaged too until it has shown the step;
// after that it is read once, for the label.
std::optional<frmPotentialStep::Sample> frmPotentialStep::ReadSample() {
  std::array<double, 2> sums{};
  const std::int32_t both = Recording() ? 1 : plan_.rounds;
  double further = 0;
  if (!ReadSums(kChannels, both, sums) ||
      (both < plan_.rounds && !ReadSums(kCurrentChannel, plan_.rounds - both, {&further, 1}))) {
    TickFailed();
    return std::nullopt;
  }
  Sample sample;
  sample.volts = sums[0] / both;
  sample.potential = sample.volts * plan_.x_scale;
  sample.current = (sums[1] + further) * plan_.y_scale / plan_.rounds;
  if (!std::isfinite(sample.potential) || !std::isfinite(sample.current)) {
    TickFailed("Overflow");
    return std::nullopt;
  }
  TickSucceeded();
  lblVoltage.SetText(Format(sample.potential, "0.000000") + "V");
  return sample;
}

bool frmPotentialStep::StepSeen(const Sample& sample, std::int64_t elapsed) {
  if (!reference_) reference_ = Rounded(sample.volts, 10);
  if (Rounded(sample.potential, 100) != *reference_) return true;
  resting_at_ = elapsed;
  return false;
}

void frmPotentialStep::LogStep(double potential) {
  if (resting_at_) {
    LogEvent("The step came at most " + PlainNumber(ReadTime() - *resting_at_) +
             " ms before time 0");
  } else {
    LogEvent("The first reading, " + PlainNumber(potential, 6) + " V, already differed from " +
             PlainNumber(*reference_) +
             " V, the potential at the start to one decimal: recording " +
             "did not wait for the step");
  }
}

void frmPotentialStep::MarkTrack(double potential) {
  const int track = target_.number();
  TrackRecord& record = workstation().tracks.Record(track);
  marked_ = Marked{
      track, {record.V[0], record.V[1]}, {Rounded(*reference_, 1000), Rounded(potential, 1000)}};
  record.V[0] = marked_->after[0];
  record.V[1] = marked_->after[1];
  lblStatus.SetText("Recording");
}

void frmPotentialStep::Record(const Sample& sample, std::int64_t elapsed) {
  last_sample_ = elapsed;
  const auto millis = static_cast<double>(elapsed);
  Point(PointIndex()) = {millis, sample.current, 0};
  Draw(millis, sample.current);
  AddCharge();
  KeepPoint();
}

void frmPotentialStep::Draw(double millis, double current) {
  const bool changed = plot_.Include(millis, current);
  if (rate_ >= kLiveDrawingBelow || chkGraphOn.value() == 0) {
    curve_drawn_ = false;
    return;
  }
  lblStatus.SetText(Format(charge_, "#0.00000") + "C " + Format(millis / 1000, "####0.0") + "s");
  if (changed || !curve_drawn_) DrawCurve();
  plot_.Point(millis, current, kCurveColour);
}

void frmPotentialStep::DrawCurve() {
  plot_.Redraw(kLook);
  plot_.Curve(RecordedPoints(), 1, kCurveColour);
  curve_drawn_ = true;
}

// Trapezoids; A ms to C.
void frmPotentialStep::AddCharge() {
  const std::int32_t n = PointIndex();
  if (n == 0) return;
  const AcquiredPoint& from = Point(n - 1);
  const AcquiredPoint& to = Point(n);
  charge_ += (from[1] + to[1]) * (to[0] - from[0]) / 2000;
}

void frmPotentialStep::CheckEnd(std::int64_t elapsed) {
  switch (opnPSMeas.selected()) {
    case kByButton:
      limit_ = elapsed;
      break;
    case kByCharge:
      limit_ = plan_.limit;
      if (plan_.coulombs < charge_) StopWithSound(EndReason::kCharge);
      break;
    default:
      limit_ = plan_.limit;
      if (limit_ < elapsed) StopWithSound(EndReason::kTime);
  }
}

// A run by time is looked at again as soon as its time is over, however far the next point would
// have been.
void frmPotentialStep::ThinOut(std::int64_t elapsed) {
  if (StopRequested()) return;
  rate_ = std::min(rate_ / plan_.division, std::max(rate_, kFastestRate));
  std::int64_t interval = PeriodRounded(rate_);
  const bool by_time = opnPSMeas.selected() != kByButton && opnPSMeas.selected() != kByCharge;
  if (by_time) interval = std::clamp<std::int64_t>(limit_ + 1 - elapsed, 1, interval);
  PSTimer.SetInterval(interval);
}

void frmPotentialStep::FinishRun() {
  const EndReason reason = Reason();
  if (reason == EndReason::kPerson || reason == EndReason::kClosing ||
      reason == EndReason::kDevice) {
    limit_ = last_sample_;
  }
  StopDevices();
  if (PointIndex() > 0) {
    DrawCurve();
    Store();
  } else {
    lblStatus.SetText("");
  }
  PSTimer.SetInterval(PeriodRounded(NumberIn(txtInitSamplingRate)));
}

void frmPotentialStep::Store() {
  const int track = target_.number();
  TrackStore& tracks = workstation().tracks;
  // The target was changed meanwhile: the other track gets back what it had.
  if (marked_->track != track) {
    TrackRecord& other = tracks.Record(marked_->track);
    for (std::size_t i = 0; i < 2; ++i) {
      if (other.V[i] == marked_->after[i]) other.V[i] = marked_->before[i];
    }
  }
  TrackRecord& record = StoreRun(track, kModePS, txtTitle.text(), 2);
  for (double& time : tracks.Column(0, track)) time /= 1000;
  record.V[0] = marked_->after[0];
  record.V[1] = marked_->after[1];
  const PlotRange& range = plot_.Range();
  record.Vxmin = range.x1 / 1000;
  record.Vymin = range.y1;
  record.Vxmax = range.x2 / 1000;
  record.Vymax = range.y2;
  record.MaxTime = static_cast<double>(limit_);
  record.RPM = plan_.rpm;
  record.DiskYscale = plan_.y_scale;
  // Nothing here sweeps or has a ring: what an earlier curve said of that is not true of this one.
  record.Scanrate = record.V[2] = record.RingXValue = record.RingYscale = 0;
  workstation().ShowTrack(track);
}

}  // namespace zento
