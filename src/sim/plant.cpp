#include "sim/plant.h"

#include <algorithm>
#include <cmath>

#include "sim/couple_cell.h"

namespace zento::sim {
namespace {

constexpr double kShortest = 2e-5;  // s
constexpr double kWatched = 1e-3;   // s
constexpr double kSweep = 4e-4;     // V of sweep in one step
constexpr double kUnwatched = 0.1;  // s behind, from which on longer steps are taken
constexpr double kRelaxed = 0.02;   // longest step, as a share of the time since the last event
constexpr double kSettling = 0.05;  // s after a jump in which steps grow slowly
constexpr double kSlowGrowth = 1.05;
constexpr double kGrowth = 2.0;  // below 1 + sqrt(2), where variable second-order steps are stable

CoupleCell::Settings CoupleSettings(const Parameters& p) {
  CoupleCell::Settings settings;
  settings.electrons = p.electrons;
  settings.formal_potential = p.formal_potential;
  settings.rate_constant = p.rate_constant;
  settings.transfer = p.transfer;
  settings.diffusion_red = p.diffusion_red;
  settings.diffusion_ox = p.diffusion_ox;
  settings.bulk_red = p.bulk_red * 1e-6;
  settings.bulk_ox = p.bulk_ox * 1e-6;
  settings.area = p.area;
  settings.capacitance = p.capacitance * 1e-6;
  settings.resistance = p.resistance;
  settings.viscosity = p.viscosity;
  settings.temperature = p.temperature;
  return settings;
}

}  // namespace

Plant::Plant(const Parameters& parameters, Random& random)
    : disk_range_(parameters.disk_range),
      ring_range_(parameters.ring_range),
      tach_scale_(parameters.tach_scale),
      random_(random),
      potentiostat_(parameters),
      rotor_(parameters),
      step_(kShortest) {
  const double volts = potentiostat_.VoltsAfter(0.0);
  cell_ = std::make_unique<CoupleCell>(CoupleSettings(parameters), volts);
  last_[kPotential] = now_[kPotential] = volts;
}

void Plant::SetMotorVolts(double volts) {
  rotor_.SetVolts(volts);
  since_event_ = 0.0;
}

void Plant::SetMotorPower(bool on) {
  rotor_.SetPower(on);
  since_event_ = 0.0;
}

double Plant::ChooseStep(double behind) {
  ends_on_corner_ = false;
  const double soon = potentiostat_.VoltsAfter(kShortest);
  if (std::abs(soon - now_[kPotential]) > Cell::kJump) {
    since_jump_ = since_event_ = 0.0;
    return kShortest;
  }
  const double slope = std::abs(soon - potentiostat_.VoltsAfter(0.0)) / kShortest;
  double longest = kWatched;
  if (behind > kUnwatched) {
    longest = std::max(longest, std::min(kRelaxed * since_event_, 0.25 * behind));
  }
  if (slope * longest > kSweep) longest = std::max(kSweep / slope, kShortest);
  double dt = std::min(step_ * (since_jump_ < kSettling ? kSlowGrowth : kGrowth), longest);
  // Equal steps are cheaper than ones that differ in the last digit.
  if (dt > 0.99 * longest) dt = longest;
  const double corner = potentiostat_.UntilCorner();
  if (corner >= kShortest && corner < dt + kShortest) {
    dt = corner;
    since_event_ = -dt;
    ends_on_corner_ = true;
  }
  return dt;
}

void Plant::Step(double behind) {
  const double dt = ChooseStep(behind);
  // The command may jump at a corner: the step that ends there still sees what was before.
  const double command = potentiostat_.VoltsAfter(ends_on_corner_ ? dt - Programme::kInstant : dt);
  const Drive drive{command, rotor_.omega()};
  const Currents currents = cell_->Step(dt, drive);
  potentiostat_.Advance(dt);
  rotor_.Advance(dt, random_);
  step_ = dt;
  time_ += dt;
  since_jump_ += dt;
  since_event_ += dt;
  std::copy(now_, now_ + kSignals, last_);
  now_[kPotential] = command;
  now_[kDiskCurrent] = currents.disk / disk_range_;
  now_[kRingCurrent] = currents.ring / ring_range_;
  now_[kRotation] = rotor_.rpm() / tach_scale_;
}

double Plant::VoltsAt(int signal, double seconds) const {
  if (signal < 0 || signal >= kSignals) return 0.0;
  const double back = std::clamp((time_ - seconds) / step_, 0.0, 1.0);
  return now_[signal] + back * (last_[signal] - now_[signal]);
}

}  // namespace zento::sim
