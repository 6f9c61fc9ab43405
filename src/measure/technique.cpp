#include "measure/technique.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/track.h"
#include "devices/rotation.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr double kLongestPeriod = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMostRounds = 1'000'000;

std::int64_t Period(double millis) {
  // Written so that a rate of 0 or none at all gives a period too.
  if (!(millis < kLongestPeriod)) return static_cast<std::int64_t>(kLongestPeriod);
  return static_cast<std::int64_t>(std::max(millis, 1.0));
}

}  // namespace

std::int64_t PeriodCut(double rate) {
  return Period(std::floor(1000 / rate));
}

std::int64_t PeriodRounded(double rate) {
  return Period(RoundHalfEven(1000 / rate));
}

std::int32_t AccumulationRounds(double accumulation) {
  return std::clamp(ToLong(accumulation), 1, kMostRounds);
}

std::int32_t HoldableSeconds(double seconds) {
  return std::clamp(ToLong(seconds), 0, 999);
}

std::string WithUnit(double number, const char* unit) {
  return PlainNumber(number) + unit;
}

RunParameter SamplingParameter(double rate, std::int32_t rounds) {
  return {"Sampling", WithUnit(rate, " Hz, ") + PlainNumber(rounds) + " readings a point"};
}

void SetRange(TrackRecord& record, const PlotRange& range) {
  record.Vxmin = range.x1;
  record.Vymin = range.y1;
  record.Vxmax = range.x2;
  record.Vymax = range.y2;
}

double Technique::Adjusted(const char* what, double asked, double used, const char* why) {
  if (asked != used) adjusted_.push_back({what, asked, used, why});
  return used;
}

Plan Technique::PlanOf(double sampling_rate, std::int64_t interval, std::int32_t rounds,
                       const RunChoices& choices) const {
  Plan plan;
  plan.technique = name_;
  plan.end = PlannedEnd::kPerson;
  plan.sampling_rate = sampling_rate;
  plan.interval = interval;
  plan.rounds = rounds;
  plan.first_target = plan.last_target = choices.target;
  plan.adjusted = adjusted_;
  return plan;
}

PlannedRate Technique::RateFor(const Workstation& workstation, double rpm) {
  return {rpm, RateAsApplied(workstation, rpm)};
}

void Technique::EndByTime(Plan& plan, std::int64_t millis, LastTick last, int first_tick) {
  plan.end = PlannedEnd::kTime;
  plan.duration = millis;
  plan.points = millis / plan.interval + (last == LastTick::kAfterEnd ? 2 : 1) - first_tick;
}

void Technique::AddCurve(const PlotRange& range) {
  ranges_.push_back({std::min(range.x1, range.x2), std::min(range.y1, range.y2),
                     std::max(range.x1, range.x2), std::max(range.y1, range.y2)});
}

}  // namespace zento
