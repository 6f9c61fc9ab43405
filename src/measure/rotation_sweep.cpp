#include "measure/rotation_sweep.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {4, 1};         // rotation, current
constexpr std::array<std::uint8_t, 2> kInitialChannels = {0, 4};  // potential, rotation
// A ramp that commands more (rpm) switches the motor off.
constexpr double kHighestCommand = 5000;

// The 5 rpm that a rate lies in, by their lower edge.
double Step(double rpm) {
  return std::floor(rpm / 5) * 5;
}

// By the button nothing is known of the rates: the range grows from next to nothing.
PlotRange EmptyRange(const RotationSweepValues& values) {
  const double y = 0.01 * values.y_scale;
  const double x = 0.1 * values.x_scale;
  if (values.method == RotationSweep::kByLimit) return {0, -y, values.limit, y};
  if (values.method == RotationSweep::kRamp) return {values.ramp.start, -y, values.ramp.end, y};
  return {-x, -y, x, y};
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

RotationSweep::RotationSweep(const RotationSweepValues& values)
    : Technique("Rotation-rate sweep"), values_(values) {
  const auto limit = [this](const char* what, double& number, double used, const char* why) {
    number = Adjusted(what, number, used, why);
  };
  limit("Retain time", values_.retain_seconds, std::max(values.retain_seconds, 0.0),
        "nothing begins before the start");
  limit("Accumulation", values_.accumulation, AtLeastOne(values.accumulation),
        "a point has a reading");
  limit("Sampling rate", values_.sampling_rate, SomeRate(values.sampling_rate),
        "points are taken in time");
  rounds_ = AccumulationRounds(values_.accumulation);
  AddCurve(EmptyRange(values_));
}

Plan RotationSweep::MakePlan(const RunChoices& choices, const Workstation& workstation) const {
  Plan plan = PlanOf(values_.sampling_rate, PeriodRounded(values_.sampling_rate), rounds_, choices);
  plan.generator = values_.generator;
  plan.potentials = {{values_.potential, PotentialAsSent(values_.potential)}};
  plan.rotation = {RateFor(workstation, values_.ramp.start)};
  plan.retain_seconds = values_.retain_seconds;
  if (values_.method == kByLimit) plan.end = PlannedEnd::kRate;
  if (values_.method == kRamp) {
    plan.rotation.push_back(RateFor(workstation, values_.ramp.end));
    plan.ramp_speed = values_.ramp.speed;
    EndByTime(plan, values_.ramp.DurationMillis(), LastTick::kAtEnd);
  }
  return plan;
}

std::vector<RunParameter> RotationSweep::Parameters(const RunChoices& choices) const {
  const RotationSweepValues& s = values_;
  const auto method = [&]() -> std::string {
    if (s.method == kByLimit) return "until the rate exceeds " + WithUnit(s.limit, " rpm");
    if (s.method == kUntilStopped) return "until stopped";
    return "ramp from " + WithUnit(s.ramp.start, " rpm to ") + WithUnit(s.ramp.end, " rpm at ") +
           WithUnit(s.ramp.speed, " rpm/s, ") + FormatDuration(s.ramp.DurationMillis()) +
           " planned, after " + WithUnit(s.retain_seconds, " s");
  };
  return {
      {"Title", choices.titles.front()},
      {"Target track", PlainNumber(choices.target)},
      {"Potential",
       WithUnit(s.potential, " V") + (s.generator ? ", held by the function generator" : "")},
      {"Method", method()},
      {"Rotation at the start", WithUnit(s.ramp.start, " rpm")},
      SamplingParameter(s.sampling_rate, rounds_),
      {"Scales", WithUnit(s.x_scale, " V/V, ") + WithUnit(s.y_scale, " A/V, ") +
                     WithUnit(s.rpm_scale, " rpm/V")},
  };
}

void RotationSweep::Begin(Run& run) {
  run.RestartTime();
  if (values_.generator) {
    // Both levels are the same, so it does not matter when the generator goes on to the second.
    const std::array potentials = {values_.potential, values_.potential};
    run.instruments().generator.ProgrammePotentialStep(
        1, potentials, ToLong(values_.retain_seconds),
        ToLong(values_.ramp.DurationMillis() / 1000.0 + 1));
    run.StartGenerator();
  }
  ReadInitialRate(run);
  run.SetRotation(ToLong(std::floor(values_.ramp.start)));
}

void RotationSweep::ReadInitialRate(Run& run) {
  std::array<double, 2> sums{};
  if (!run.ReadSums(kInitialChannels, rounds_, sums)) return;
  const double potential = sums[0] * values_.x_scale / rounds_;
  const double rpm = sums[1] * values_.rpm_scale / rounds_;
  initial_ = Step(rpm);
  run.LogEvent("At the start " + PlainNumber(potential, 4) + " V, " + Format(rpm, "0") + " rpm");
}

void RotationSweep::Tick(Run& run) {
  const std::optional<Sample> read = ReadSample(run);
  Sample sample = read.value_or(Sample{0, 0, static_cast<double>(run.ReadTime()) - time_zero_});
  if (!run.Recording()) {
    if (!Began(read, sample.millis)) return;
    // The ramp began in the middle of this tick's readings; without it, time counts from their end.
    if (values_.method == kRamp) time_zero_ = sample.millis - static_cast<double>(run.ReadTime());
    run.StartRecording();
    sample.millis = 0;
  }
  if (values_.method == kRamp && FollowRamp(run, sample.millis)) {
    run.StopWithSound(EndReason::kTime);
  }
  if (read) Record(run, sample);
}

std::optional<RotationSweep::Sample> RotationSweep::ReadSample(Run& run) {
  std::array<double, 2> sums{};
  double millis = 0;
  for (std::int32_t round = 0; round < rounds_; ++round) {
    std::array<double, 2> readings{};
    if (!run.ReadSums(kChannels, 1, readings)) {
      run.ReadingFailed();
      return std::nullopt;
    }
    sums[0] += readings[0];
    sums[1] += readings[1];
    millis += static_cast<double>(run.ReadTime());
  }
  Sample sample;
  sample.rpm = sums[0] * values_.rpm_scale / rounds_;
  sample.current = sums[1] * values_.y_scale / rounds_;
  sample.millis = millis / rounds_ - time_zero_;
  if (!std::isfinite(sample.rpm) || !std::isfinite(sample.current)) {
    run.ReadingFailed("Overflow");
    return std::nullopt;
  }
  run.ReadingSucceeded();
  return last_ = sample;
}

bool RotationSweep::Began(const std::optional<Sample>& sample, double millis) {
  if (values_.method == kRamp) return millis > values_.retain_seconds * 1000;
  if (!sample) return false;
  if (!initial_) initial_ = Step(sample->rpm);
  return Step(sample->rpm) != *initial_;
}

// Commands the rate of the moment. True once the ramp is over. What the motor is told may differ
// from the ramp, whose own course decides about the end.
bool RotationSweep::FollowRamp(Run& run, double millis) const {
  const double rpm = values_.ramp.At(millis);
  const bool allowed = rpm >= 0 && rpm <= kHighestCommand;
  std::int32_t command = allowed ? ToLong(std::floor(rpm)) : 0;
  // Not through the run, whose log would hold every step of it.
  run.instruments().rotation.SetRotation(command);
  return millis > values_.ramp.DurationMillis() || values_.ramp.Reached(rpm);
}

void RotationSweep::Record(Run& run, const Sample& sample) {
  run.Put({sample.rpm, sample.current, sample.millis});
  Include(0, sample.rpm, sample.current);
  if (values_.method == kByLimit && sample.rpm > values_.limit) {
    run.StopWithSound(EndReason::kLimit);
  }
  run.Keep();
}

void RotationSweep::Describe(RunState& state, const RunChoices&) const {
  if (last_) {
    state.last.rpm = last_->rpm;
    state.last.current = last_->current;
  }
  if (values_.method == kRamp) state.planned = values_.ramp.DurationMillis();
  state.sampling_rate = values_.sampling_rate;
}

void RotationSweep::Store(Run& run) {
  const RunChoices& choices = run.choices();
  TrackRecord& record =
      run.StoreTrack(choices.target, kModeRPMvsj, choices.titles.front(), {0, 1, 2});
  SetRange(record, Range());
  record.MaxTime = RoundHalfEven(run.points().Column(2).back());
  record.DiskYscale = values_.y_scale;
  // There is one potential, no one rate and no ring: what an earlier curve said of that is not true
  // of this one.
  record.V = {values_.potential, 0, 0};
  record.Scanrate = record.RPM = record.RingXValue = record.RingYscale = 0;
  record.TimeRecording = choices.record_time;
}

}  // namespace zento
