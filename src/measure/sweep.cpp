#include "measure/sweep.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/tables.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 1> kPotential = {0};

std::string ReferenceName(std::int32_t ref) {
  const bool known = ref > 0 && ref < static_cast<std::int32_t>(RefName.size());
  return known ? std::string(RefName[static_cast<std::size_t>(ref)]) : "none";
}

}  // namespace

std::int32_t SweepMillis(double path, double scan_rate) {
  return std::max(ToLong(path * 1000 / (scan_rate * 0.001)), 0);
}

Sweep::Sweep(std::string name, SweepValues values, double steps_per_volt)
    : Technique(std::move(name)),
      values_(values),
      steps_per_volt_(steps_per_volt),
      retain_(ToLong(values.retain_seconds)) {
  values_.accumulation = Adjusted("Accumulation", values_.accumulation,
                                  AtLeastOne(values_.accumulation), "a point has a reading");
  rounds_ = AccumulationRounds(values_.accumulation);
  if (values_.generator) {
    retain_ = static_cast<std::int32_t>(
        Adjusted("Retain time", retain_, HoldableSeconds(retain_), "the generator takes 3 digits"));
  }
}

Plan Sweep::MakePlan(const RunChoices& choices, const Workstation& workstation) const {
  Plan plan = PlanOf(values_.sampling_rate, PeriodCut(values_.sampling_rate), rounds_, choices);
  plan.generator = values_.generator;
  for (const double volts : values_.v) plan.potentials.push_back({volts, PotentialAsSent(volts)});
  plan.scan_rate = PlannedNumber{values_.scan_rate, RateAsSent(values_.scan_rate)};
  plan.rotation = {RateFor(workstation, values_.rpm)};
  plan.retain_seconds = retain_;
  if (choices.method != kUntilStopped) EndByTime(plan, planned_, LastTick::kAfterEnd);
  return plan;
}

std::vector<RunParameter> Sweep::Parameters(const RunChoices& choices) const {
  const SweepValues& s = values_;
  return {
      {"Title", choices.titles.front()},
      {"Target track", PlainNumber(choices.target)},
      {"Potentials", WithUnit(s.v[0], " V, ") + WithUnit(s.v[1], " V, ") + WithUnit(s.v[2], " V")},
      {"Scan rate", WithUnit(s.scan_rate, " mV/s")},
      {"Cycles", PlainNumber(s.cycles)},
      {"Method", choices.method == kUntilStopped
                     ? "until stopped"
                     : "by cycles, " + FormatDuration(planned_) + " planned"},
      {"Sweep from", s.generator ? "the function generator, held at the first potential for " +
                                       PlainNumber(retain_) + " s"
                                 : std::string("the potentiostat")},
      {"Rotation", PlainNumber(ToLong(s.rpm)) + " rpm"},
      SamplingParameter(s.sampling_rate, rounds_),
      {"Reference", ReferenceName(s.ref)},
  };
}

void Sweep::Begin(Run& run) {
  if (values_.generator) {
    run.instruments().generator.ProgrammeCyclicSweep(1, values_.v, values_.scan_rate, retain_);
    run.StartGenerator();
  }
  applied_rpm_ = run.SetRotation(ToLong(values_.rpm));
  run.RestartTime();
  ReadRestingPotential(run);
}

// The step that a potential lies in, by its lower edge.
double Sweep::Step(double potential) const {
  return std::floor(potential * steps_per_volt_) / steps_per_volt_;
}

void Sweep::ReadRestingPotential(Run& run) {
  double sum = 0;
  if (run.ReadSums(kPotential, rounds_, {&sum, 1})) {
    resting_ = Step(sum * values_.x_scale / rounds_);
  }
}

void Sweep::Tick(Run& run) {
  std::int64_t elapsed = 0;
  const bool read = Read(run, elapsed);
  if (!run.Recording()) {
    if (!SweepBegan(elapsed, read)) return;
    run.StartRecording();
    elapsed = 0;
  }
  if (read) {
    run.Put(point_);
    Take(run, elapsed);
    run.Keep();
  }
  CheckPlannedTime(run, elapsed);
}

bool Sweep::CheckPoint(Run& run) {
  if (!std::ranges::all_of(point_, [](double value) { return std::isfinite(value); })) {
    run.ReadingFailed("Overflow");
    return false;
  }
  run.ReadingSucceeded();
  measured_ = true;
  return true;
}

bool Sweep::SweepBegan(std::int64_t elapsed, bool read) {
  if (values_.generator) return elapsed > std::int64_t{1000} * retain_;
  if (!read) return false;
  const double step = Step(point_[0]);
  if (!resting_) resting_ = step;
  return step != *resting_;
}

void Sweep::CheckPlannedTime(Run& run, std::int64_t elapsed) {
  if (run.choices().method == kUntilStopped) {
    planned_ = elapsed;
  } else if (elapsed > planned_) {
    run.StopWithSound(EndReason::kTime);
  }
}

// By the clock: the first cycle goes from the first potential to the third, each further one to the
// second and back.
int Sweep::CycleAt(std::int64_t elapsed) const {
  const auto& v = values_.v;
  const double travelled = values_.scan_rate * 1e-6 * static_cast<double>(elapsed);
  const double first = std::abs(v[1] - v[0]) + std::abs(v[2] - v[1]);
  const double further = 2 * std::abs(v[2] - v[1]);
  if (travelled <= first || further == 0) return 1;
  return 1 + ToLong(std::ceil((travelled - first) / further));
}

void Sweep::Describe(RunState& state, const RunChoices& choices) const {
  if (choices.method != kUntilStopped) state.planned = planned_;
  if (measured_) {
    state.last.potential = point_[0];
    state.last.current = point_[1];
  }
  state.sampling_rate = values_.sampling_rate;
  if (state.phase != RunPhase::kRecording) return;
  state.cycle = std::clamp(CycleAt(state.elapsed), 1, std::max(ToLong(values_.cycles), 1));
}

PlotRange Sweep::EmptyRange(double scale, const RunChoices& choices) const {
  const auto [low, high] = std::ranges::minmax(values_.v);
  const bool known = choices.method != kUntilStopped;
  const double left = known ? low : -0.1;
  const double right = known ? high : 0.1;
  return {left * values_.x_scale, -0.01 * scale, right * values_.x_scale, 0.01 * scale};
}

void Sweep::StoreSweep(Run& run, Mode mode, std::initializer_list<std::size_t> columns,
                       const PlotRange& range) const {
  const RunChoices& choices = run.choices();
  TrackRecord& record = run.StoreTrack(choices.target, mode, choices.titles.front(), columns);
  SetRange(record, range);
  record.Scanrate = values_.scan_rate;
  record.V = values_.v;
  record.MaxTime = static_cast<double>(planned_);
  record.RPM = values_.rpm;
  record.DiskYscale = values_.disk_scale;
  record.RingYscale = values_.ring_scale;
  record.ref = values_.ref;
}

}  // namespace zento
