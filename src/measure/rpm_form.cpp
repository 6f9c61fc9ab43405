#include "measure/rpm_form.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/palette.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {4, 1};         // rotation, current
constexpr std::array<std::uint8_t, 2> kInitialChannels = {0, 4};  // potential, rotation
constexpr int kByLimit = 0;
constexpr int kRamp = 2;
constexpr Colour kCurveColour = kLightRed;
constexpr double kLiveDrawingBelow = 20;
// A ramp that commands more (rpm) switches the motor off.
constexpr double kHighestCommand = 5000;

constexpr char kIdle[] = "Monitor";

const AxisLook kLook{"0", "0.0#e+00", "/rpm"};

// The 5 rpm that a rate lies in, by their lower edge.
double Step(double rpm) {
  return std::floor(rpm / 5) * 5;
}

}  // namespace

std::int32_t RotationRamp::DurationMillis() const {
  const double distance = std::abs(end - start);
  return distance == 0 ? 0 : ToLong(distance / std::abs(speed) * 1000);
}

double RotationRamp::At(double millis) const {
  const double seconds = RoundHalfEven(millis / 10) / 100;
  return start + std::copysign(speed, end - start) * seconds;
}

bool RotationRamp::Reached(double rpm) const {
  return end >= start ? rpm >= end : rpm <= end;
}

frmMeasureRPMvsj::frmMeasureRPMvsj(Workstation& workstation, Host& host, Instruments& instruments)
    : MeasureForm(workstation, host, instruments, "frmMeasureRPMvsj", "RPM vs. i"),
      target_(txtDataNum, UpDown1),
      monitor_(picVMon, kCurveColour),
      plot_(host.desktop, "Graph1") {
  Attach(RPjTimer, cmdStart);
  OnCommit(Boxes(), [this] { LeaveBox(); });
  cmdStart.on_click = [this] { StartMeasurement(); };
  cmdStop.on_click = [this] { RequestStop(); };
  cmdClearVMon.on_click = [this] {
    if (!Measuring()) monitor_.Clear();
  };
}

bool frmMeasureRPMvsj::Load() {
  ShowSettings();
  lblMode.SetText(kIdle);
  monitor_.Clear();
  if (!OpenDevices({"AD Board不良です", "GPIB Trouble!", "DA Board Trouble!"})) return false;
  RPjTimer.SetInterval(PeriodRounded(NumberIn(txtSamplingrate)));
  RPjTimer.SetEnabled(true);
  return true;
}

void frmMeasureRPMvsj::MonitorTick() {
  const std::int32_t rounds = AccumulationRounds(settings().RPjAccum);
  std::array<double, 2> sums{};
  if (!ReadSums(kChannels, rounds, sums)) {
    lblVoltage.SetText("no reading");
    return;
  }
  const double volts = sums[0] / rounds;
  monitor_.Add(volts, sums[1] / rounds);
  lblVoltage.SetText(Format(volts * settings().RPjRPMScale, "###0") + "rpm");
}

void frmMeasureRPMvsj::StartMeasurement() {
  if (!BeginRun()) return;
  MakePlan();
  LogBegin("Rotation-rate sweep");
  ShowEmptyGraph();
  lblMode.SetText("Waiting for the start");
  RPjTimer.SetInterval(PeriodRounded(plan_.rate));
  RestartTime();
  if (plan_.generator) Programme();
  ReadInitialRate();
  SetRotation(ToLong(std::floor(plan_.ramp.start)));
  RPjTimer.SetEnabled(true);
}

// Both levels are the same, so it does not matter when the generator goes on to the second.
void frmMeasureRPMvsj::Programme() {
  const std::array potentials = {plan_.potential, plan_.potential};
  instruments().generator.ProgrammePotentialStep(1, potentials, ToLong(plan_.retain_seconds),
                                                 ToLong(plan_.ramp.DurationMillis() / 1000.0 + 1));
  StartGenerator();
}

Plan frmMeasureRPMvsj::CurrentPlan() const {
  Plan plan;
  plan.technique = "Rotation-rate sweep";
  plan.generator = plan_.generator;
  plan.potentials = {{plan_.potential, PotentialAsSent(plan_.potential)}};
  plan.rotation = {PlanRate(plan_.ramp.start)};
  plan.retain_seconds = plan_.retain_seconds;
  plan.end = plan_.mode == kByLimit ? PlannedEnd::kRate : PlannedEnd::kPerson;
  if (plan_.mode == kRamp) {
    plan.rotation.push_back(PlanRate(plan_.ramp.end));
    plan.ramp_speed = plan_.ramp.speed;
    plan.end = PlannedEnd::kTime;
    plan.duration = plan_.ramp.DurationMillis();
  }
  plan.sampling_rate = plan_.rate;
  plan.interval = PeriodRounded(plan_.rate);
  plan.rounds = plan_.rounds;
  plan.points = PlanPoints(plan);
  plan.first_target = plan.last_target = target_.number();
  return plan;
}

// By the button nothing is known of the rates: the range grows from next to nothing.
void frmMeasureRPMvsj::ShowEmptyGraph() {
  const double y = 0.01 * plan_.y_scale;
  const double x = 0.1 * plan_.x_scale;
  PlotRange range{-x, -y, x, y};
  if (plan_.mode == kByLimit) {
    range = {0, -y, plan_.limit, y};
  } else if (plan_.mode == kRamp) {
    range = {plan_.ramp.start, -y, plan_.ramp.end, y};
  }
  plot_.Begin("RPM vs. j Plot", range, kLook);
}

void frmMeasureRPMvsj::ReadInitialRate() {
  initial_.reset();
  std::array<double, 2> sums{};
  if (!ReadSums(kInitialChannels, plan_.rounds, sums)) return;
  const double potential = sums[0] * plan_.x_scale / plan_.rounds;
  const double rpm = sums[1] * plan_.rpm_scale / plan_.rounds;
  initial_ = Step(rpm);
  LogEvent("At the start " + PlainNumber(potential, 4) + " V, " + Format(rpm, "0") + " rpm");
}

void frmMeasureRPMvsj::MeasureTick() {
  const std::optional<Sample> read = ReadSample();
  Sample sample = read.value_or(Sample{0, 0, static_cast<double>(ReadTime()) - time_zero_});
  if (!Recording()) {
    if (!Began(read, sample.millis)) return;
    lblMode.SetText("Recording");
    // The ramp began in the middle of this tick's readings; without it, time counts from their end.
    if (plan_.mode == kRamp) time_zero_ = sample.millis - static_cast<double>(ReadTime());
    StartRecording();
    sample.millis = 0;
  }
  if (plan_.mode == kRamp && FollowRamp(sample.millis)) StopWithSound(EndReason::kTime);
  if (read) Record(sample);
}

std::optional<frmMeasureRPMvsj::Sample> frmMeasureRPMvsj::ReadSample() {
  std::array<double, 2> sums{};
  double millis = 0;
  for (std::int32_t round = 0; round < plan_.rounds; ++round) {
    std::array<double, 2> readings{};
    if (!ReadSums(kChannels, 1, readings)) {
      TickFailed();
      return std::nullopt;
    }
    sums[0] += readings[0];
    sums[1] += readings[1];
    millis += static_cast<double>(ReadTime());
  }
  Sample sample;
  sample.rpm = sums[0] * plan_.rpm_scale / plan_.rounds;
  sample.current = sums[1] * plan_.y_scale / plan_.rounds;
  sample.millis = millis / plan_.rounds - time_zero_;
  if (!std::isfinite(sample.rpm) || !std::isfinite(sample.current)) {
    TickFailed("Overflow");
    return std::nullopt;
  }
  TickSucceeded();
  lblVoltage.SetText(Format(sample.rpm, "###0") + "rpm");
  return sample;
}

bool frmMeasureRPMvsj::Began(const std::optional<Sample>& sample, double millis) {
  if (plan_.mode == kRamp) return millis > plan_.retain_seconds * 1000;
  if (!sample) return false;
  if (!initial_) initial_ = Step(sample->rpm);
  return Step(sample->rpm) != *initial_;
}

// Commands the rate of the moment. True once the ramp is over. What the motor is told may differ
// from the ramp, whose own course decides about the end.
bool frmMeasureRPMvsj::FollowRamp(double millis) {
  const double rpm = plan_.ramp.At(millis);
  const bool allowed = rpm >= 0 && rpm <= kHighestCommand;
  const std::int32_t command = allowed ? ToLong(std::floor(rpm)) : 0;
  // Not through the run, whose log would hold every step of it.
  instruments().rotation.SetRotation(command);
  return millis > plan_.ramp.DurationMillis() || plan_.ramp.Reached(rpm);
}

void frmMeasureRPMvsj::Record(const Sample& sample) {
  Point(PointIndex()) = {sample.rpm, sample.current, sample.millis};
  const bool changed = plot_.Include(sample.rpm, sample.current);
  if (plan_.rate < kLiveDrawingBelow) {
    if (changed) DrawCurve();
    plot_.Point(sample.rpm, sample.current, kCurveColour);
  }
  if (plan_.mode == kByLimit && sample.rpm > plan_.limit) StopWithSound(EndReason::kLimit);
  KeepPoint();
}

void frmMeasureRPMvsj::DrawCurve() {
  plot_.Redraw(kLook);
  plot_.Curve(RecordedPoints(), 1, kCurveColour);
}

void frmMeasureRPMvsj::FinishRun() {
  StopDevices();
  if (PointIndex() > 0) {
    DrawCurve();
    Store();
  }
  lblMode.SetText(kIdle);
  RPjTimer.SetInterval(PeriodRounded(NumberIn(txtSamplingrate)));
}

void frmMeasureRPMvsj::Store() {
  const int track = target_.number();
  TrackRecord& record = StoreRun(track, kModeRPMvsj, txtTitle.text(), 3);
  const PlotRange& range = plot_.Range();
  record.Vxmin = range.x1;
  record.Vymin = range.y1;
  record.Vxmax = range.x2;
  record.Vymax = range.y2;
  record.MaxTime = RoundHalfEven(Point(PointIndex() - 1)[2]);
  record.DiskYscale = plan_.y_scale;
  // There is one potential, no one rate and no ring: what an earlier curve said of that is not true
  // of this one.
  record.V = {plan_.potential, 0, 0};
  record.Scanrate = record.RPM = record.RingXValue = record.RingYscale = 0;
  record.TimeRecording = chkRecordTime.value();
  workstation().ShowTrack(track);
}

}  // namespace zento
