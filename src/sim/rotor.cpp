#include "sim/rotor.h"

#include <cmath>
#include <numbers>

namespace zento::sim {

Rotor::Rotor(const Parameters& parameters)
    : scale_(parameters.motor_scale),
      gain_(parameters.rotor_gain),
      lag_(parameters.rotor_lag),
      noise_(parameters.noise > 0.0 ? parameters.rotor_noise : 0.0) {}

void Rotor::Advance(double dt, Random& random) {
  const double target = power_ ? volts_ * scale_ * gain_ : 0.0;
  if (target == 0.0 && rpm_ == 0.0) return;
  if (dt != dt_) {
    dt_ = dt;
    kept_ = std::exp(-dt / lag_);
  }
  rpm_ = target + (rpm_ - target) * kept_;
  const double noise = target > 0.0 ? noise_ : 0.0;
  // What the wandering forgets in a step it gains anew, so that its variance stays noise^2.
  wander_ *= kept_;
  if (noise > 0.0) wander_ += noise * std::sqrt(1.0 - kept_ * kept_) * random.Gaussian();
  // A bearing's friction ends what an exponential would not.
  if (target == 0.0 && rpm_ < 0.05) rpm_ = wander_ = 0.0;
}

double Rotor::omega() const {
  return std::fmax(rpm(), 0.0) * (2.0 * std::numbers::pi / 60.0);
}

std::vector<CalibrationPoint> RotorCalibration(const Parameters& parameters) {
  constexpr double kLowest = 100.0;  // rpm
  constexpr double kHighestVolts = 5.0;
  constexpr int kIntervals = 10;
  std::vector<CalibrationPoint> points;
  const double highest = kHighestVolts * parameters.motor_scale;
  if (highest > 2 * kLowest) points.push_back({kLowest, kLowest / parameters.motor_scale});
  for (int i = highest > kLowest * kIntervals ? 1 : kIntervals / 2; i <= kIntervals; ++i) {
    const double volts = kHighestVolts * i / kIntervals;
    points.push_back({volts * parameters.motor_scale, volts});
  }
  return points;
}

}  // namespace zento::sim
