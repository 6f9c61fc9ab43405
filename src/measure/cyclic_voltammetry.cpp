#include "measure/cyclic_voltammetry.h"

#include <cmath>
#include <utility>

#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {0, 1};  // potential, current
constexpr double kRestingStepsPerVolt = 400;

}  // namespace

std::int32_t PlannedSweepMillis(const std::array<double, 3>& v, std::int32_t cycles,
                                double scan_rate) {
  const double path = std::abs(v[1] - v[0]) + std::abs(v[2] - v[1]) +
                      (2.0 * cycles - 2) * std::abs(v[1] - v[2]) + std::abs(v[0] - v[2]);
  return SweepMillis(path, scan_rate);
}

double CyclicVoltammetry::LimitedScanRate(double millivolts_per_second) {
  return millivolts_per_second <= 0 ? 0.01 : millivolts_per_second;
}

double CyclicVoltammetry::LimitedSamplingRate(double hertz) {
  return hertz > 1000 ? 1000 : SomeRate(hertz);
}

CyclicVoltammetry::CyclicVoltammetry(const SweepValues& values, std::string setting,
                                     const RunChoices& choices)
    : Sweep("Cyclic voltammetry", values, kRestingStepsPerVolt), setting_(std::move(setting)) {
  const auto limit = [this](const char* what, double& number, double used, const char* why) {
    number = Adjusted(what, number, used, why);
  };
  limit("Scan rate", values_.scan_rate, LimitedScanRate(values.scan_rate), "a sweep moves");
  limit("Cycles", values_.cycles, AtLeastOne(ToLong(values.cycles)), "whole cycles are swept");
  limit("Sampling rate", values_.sampling_rate, LimitedSamplingRate(values.sampling_rate),
        "0.1 to 1000 Hz can be had");
  SetDuration(PlannedSweepMillis(values_.v, ToLong(values_.cycles), values_.scan_rate));
  AddCurve(EmptyRange(values_.disk_scale, choices));
}

std::vector<RunParameter> CyclicVoltammetry::Parameters(const RunChoices& choices) const {
  std::vector<RunParameter> parameters = Sweep::Parameters(choices);
  parameters.insert(parameters.begin() + 2, {"Setting", setting_});
  parameters.insert(parameters.end() - 1, {"Scales", WithUnit(values_.x_scale, " V/V, ") +
                                                         WithUnit(values_.disk_scale, " A/V")});
  return parameters;
}

bool CyclicVoltammetry::Read(Run& run, std::int64_t& elapsed) {
  elapsed = run.ReadTime();
  std::array<double, 2> sums{};
  if (!run.ReadSums(kChannels, rounds_, sums)) {
    run.ReadingFailed();
    return false;
  }
  point_ = {sums[0] * values_.x_scale / rounds_, sums[1] * values_.disk_scale / rounds_, 0};
  return CheckPoint(run);
}

void CyclicVoltammetry::Take(Run& run, std::int64_t elapsed) {
  Include(0, point_[0], point_[1]);
  const std::int32_t index = run.points().size();
  if (index == 0 || elapsed <= 0) return;
  path_ += std::abs(point_[0] - run.points().At(0, index - 1));
  scan_rate_ = path_ / static_cast<double>(elapsed) * 1e6;
}

void CyclicVoltammetry::Describe(RunState& state, const RunChoices& choices) const {
  Sweep::Describe(state, choices);
  state.scan_rate = scan_rate_;
}

void CyclicVoltammetry::Store(Run& run) {
  StoreSweep(run, kModeCV, {0, 1}, Range());
}

}  // namespace zento
