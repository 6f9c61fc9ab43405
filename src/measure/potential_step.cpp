#include "measure/potential_step.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "core/track_store.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {0, 1};  // potential, current
constexpr std::array<std::uint8_t, 1> kCurrentChannel = {1};
// No timer is faster (Hz), however a division below 1 multiplies the rate.
constexpr double kFastestRate = 1000;
// 5 ms of conversions.
constexpr std::int32_t kSettlingReadings = 200;
// How long the generator holds the second potential where no time is planned.
constexpr std::int32_t kLongHoldSeconds = 30000;

double Rounded(double value, double per_unit) {
  return RoundHalfEven(value * per_unit) / per_unit;
}

bool EndsByTime(const RunChoices& choices) {
  return choices.method != PotentialStep::kUntilStopped &&
         choices.method != PotentialStep::kByCharge;
}

}  // namespace

PotentialStep::PotentialStep(const StepValues& values)
    : Technique("Potential step"),
      values_(values),
      planned_(std::max(ToLong(values.seconds * 1000), 0)),
      limit_(planned_) {
  const auto limit = [this](const char* what, double& number, double used, const char* why) {
    number = Adjusted(what, number, used, why);
  };
  const std::int32_t typed = ToLong(values.retain_seconds);
  retain_ = HoldableSeconds(values.retain_seconds);
  if (values.generator) Adjusted("Retain time", typed, retain_, "the generator takes 3 digits");
  limit("Accumulation", values_.accumulation, AtLeastOne(values.accumulation),
        "a point has a reading");
  limit("Sampling rate", values_.sampling_rate, SomeRate(values.sampling_rate),
        "points are taken in time");
  limit("Division", values_.division, values.division > 0 ? values.division : 1,
        "nothing can be divided by it: the rate stays as it is");
  rounds_ = AccumulationRounds(values_.accumulation);
  rate_ = point_rate_ = values_.sampling_rate;
  AddCurve({-2, -0.01 * values_.y_scale, 10000, 0.01 * values_.y_scale});
}

Plan PotentialStep::MakePlan(const RunChoices& choices, const Workstation& workstation) const {
  Plan plan = PlanOf(values_.sampling_rate, PeriodRounded(values_.sampling_rate), rounds_, choices);
  plan.generator = values_.generator;
  for (const double volts : {values_.first, values_.second}) {
    plan.potentials.push_back({volts, PotentialAsSent(volts)});
  }
  plan.rotation = {RateFor(workstation, values_.rpm)};
  plan.retain_seconds = retain_;
  if (choices.method == kByCharge) plan.end = PlannedEnd::kCharge;
  if (EndsByTime(choices)) EndByTime(plan, planned_, LastTick::kAfterEnd);
  // They become fewer and fewer.
  if (choices.variable_sampling) plan.points.reset();
  return plan;
}

std::vector<RunParameter> PotentialStep::Parameters(const RunChoices& choices) const {
  const StepValues& s = values_;
  const std::string method = choices.method == kUntilStopped ? "until stopped"
                             : choices.method == kByCharge
                                 ? "by charge, " + WithUnit(s.coulombs, " C")
                                 : "by time, " + FormatDuration(planned_);
  return {
      {"Title", choices.titles.front()},
      {"Target track", PlainNumber(choices.target)},
      {"Potentials", WithUnit(s.first, " V, ") + WithUnit(s.second, " V")},
      {"Method", method},
      {"Step from", s.generator ? "the function generator, held at the first potential for " +
                                      PlainNumber(retain_) + " s"
                                : std::string("the potentiostat")},
      {"Rotation", WithUnit(s.rpm, " rpm")},
      {"Sampling",
       WithUnit(s.sampling_rate, " Hz") +
           (choices.variable_sampling ? ", divided by " + PlainNumber(s.division) + " a point, "
                                      : ", ") +
           PlainNumber(rounds_) + " readings a point"},
      {"Scales", WithUnit(s.x_scale, " V/V, ") + WithUnit(s.y_scale, " A/V")},
  };
}

void PotentialStep::Begin(Run& run) {
  if (values_.generator) {
    const std::array potentials = {values_.first, values_.second};
    const std::int32_t hold =
        EndsByTime(run.choices()) ? ToLong(planned_ / 1000.0) : kLongHoldSeconds;
    run.instruments().generator.ProgrammePotentialStep(1, potentials, retain_, hold);
    run.StartGenerator();
  }
  run.SetRotation(ToLong(values_.rpm));
  ReadReference(run);
  run.RestartTime();
}

// The output was switched on a moment ago: the potentiostat gets some milliseconds to follow before
// its potential is taken as the one that the step will leave.
void PotentialStep::ReadReference(Run& run) {
  const auto potential = std::span(kChannels).first(1);
  double volts = 0;
  if (!run.ReadSums(potential, kSettlingReadings, {&volts, 1})) return;
  volts = 0;
  if (run.ReadSums(potential, 1, {&volts, 1})) reference_ = Rounded(volts, 10);
}

void PotentialStep::Tick(Run& run) {
  std::int64_t elapsed = run.ReadTime();
  const std::optional<Sample> sample = ReadSample(run);
  if (!run.Recording()) {
    if (!sample || !StepSeen(*sample, elapsed)) return;
    LogStep(run, sample->potential);
    run.StartRecording();
    elapsed = 0;
    MarkTrack(run, sample->potential);
  }
  if (sample) Record(run, *sample, elapsed);
  CheckEnd(run, elapsed);
  if (sample && run.choices().variable_sampling) ThinOut(run, elapsed);
}

// The current is read in every round. The potential is averaged too until it has shown the step;
// after that it is read once, for whoever watches.
std::optional<PotentialStep::Sample> PotentialStep::ReadSample(Run& run) {
  std::array<double, 2> sums{};
  const std::int32_t both = run.Recording() ? 1 : rounds_;
  double further = 0;
  if (!run.ReadSums(kChannels, both, sums) ||
      (both < rounds_ && !run.ReadSums(kCurrentChannel, rounds_ - both, {&further, 1}))) {
    run.ReadingFailed();
    return std::nullopt;
  }
  Sample sample;
  sample.volts = sums[0] / both;
  sample.potential = sample.volts * values_.x_scale;
  sample.current = (sums[1] + further) * values_.y_scale / rounds_;
  if (!std::isfinite(sample.potential) || !std::isfinite(sample.current)) {
    run.ReadingFailed("Overflow");
    return std::nullopt;
  }
  run.ReadingSucceeded();
  return last_ = sample;
}

bool PotentialStep::StepSeen(const Sample& sample, std::int64_t elapsed) {
  if (!reference_) reference_ = Rounded(sample.volts, 10);
  if (Rounded(sample.potential, 100) != *reference_) return true;
  resting_at_ = elapsed;
  return false;
}

void PotentialStep::LogStep(Run& run, double potential) {
  if (resting_at_) {
    run.LogEvent("The step came at most " + PlainNumber(run.ReadTime() - *resting_at_) +
                 " ms before time 0");
  } else {
    run.LogEvent("The first reading, " + PlainNumber(potential, 6) + " V, already differed from " +
                 PlainNumber(*reference_) +
                 " V, the potential at the start to one decimal: recording " +
                 "did not wait for the step");
  }
}

void PotentialStep::MarkTrack(Run& run, double potential) {
  const int track = run.choices().target;
  TrackRecord& record = run.workstation().tracks.Record(track);
  marked_ = Marked{
      track, {record.V[0], record.V[1]}, {Rounded(*reference_, 1000), Rounded(potential, 1000)}};
  record.V[0] = marked_->after[0];
  record.V[1] = marked_->after[1];
}

void PotentialStep::Record(Run& run, const Sample& sample, std::int64_t elapsed) {
  last_sample_ = elapsed;
  point_rate_ = rate_;
  const auto millis = static_cast<double>(elapsed);
  run.Put({millis, sample.current});
  Include(0, millis, sample.current);
  AddCharge(run.points());
  run.Keep();
}

// Trapezoids; A ms to C.
void PotentialStep::AddCharge(const RunPoints& points) {
  const std::int32_t n = points.size();
  if (n == 0) return;
  charge_ +=
      (points.At(1, n - 1) + points.At(1, n)) * (points.At(0, n) - points.At(0, n - 1)) / 2000;
}

void PotentialStep::CheckEnd(Run& run, std::int64_t elapsed) {
  switch (run.choices().method) {
    case kUntilStopped:
      limit_ = elapsed;
      break;
    case kByCharge:
      limit_ = planned_;
      if (values_.coulombs < charge_) run.StopWithSound(EndReason::kCharge);
      break;
    default:
      limit_ = planned_;
      if (limit_ < elapsed) run.StopWithSound(EndReason::kTime);
  }
}

// A run by time is looked at again as soon as its time is over, however far the next point would
// have been.
void PotentialStep::ThinOut(Run& run, std::int64_t elapsed) {
  if (run.StopRequested()) return;
  rate_ = std::min(rate_ / values_.division, std::max(rate_, kFastestRate));
  std::int64_t interval = PeriodRounded(rate_);
  if (EndsByTime(run.choices())) {
    interval = std::clamp<std::int64_t>(limit_ + 1 - elapsed, 1, interval);
  }
  run.SetInterval(interval);
}

void PotentialStep::Describe(RunState& state, const RunChoices& choices) const {
  if (EndsByTime(choices)) state.planned = planned_;
  if (last_) {
    state.last.potential = last_->potential;
    state.last.current = last_->current;
  }
  state.charge = charge_;
  state.sampling_rate = point_rate_;
}

void PotentialStep::Conclude(Run& run) {
  const EndReason reason = run.Reason();
  if (reason == EndReason::kPerson || reason == EndReason::kClosing ||
      reason == EndReason::kDevice) {
    limit_ = last_sample_;
  }
}

void PotentialStep::Store(Run& run) {
  const RunChoices& choices = run.choices();
  TrackStore& tracks = run.workstation().tracks;
  // The target was changed meanwhile: the other track gets back what it had.
  if (marked_->track != choices.target) {
    TrackRecord& other = tracks.Record(marked_->track);
    for (std::size_t i = 0; i < 2; ++i) {
      if (other.V[i] == marked_->after[i]) other.V[i] = marked_->before[i];
    }
  }
  TrackRecord& record = run.StoreTrack(choices.target, kModePS, choices.titles.front(), {0, 1});
  for (double& time : tracks.Column(0, choices.target)) time /= 1000;
  const PlotRange& range = Range();
  SetRange(record, {range.x1 / 1000, range.y1, range.x2 / 1000, range.y2});
  record.MaxTime = static_cast<double>(limit_);
  record.RPM = values_.rpm;
  record.DiskYscale = values_.y_scale;
  // Nothing here sweeps or has a ring: what an earlier curve said of that is not true of this one.
  record.V = {marked_->after[0], marked_->after[1], 0};
  record.Scanrate = record.RingXValue = record.RingYscale = 0;
}

}  // namespace zento
