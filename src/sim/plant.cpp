#include "sim/plant.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

Programme OwnProgramme(const Parameters& parameters) {
  const double rate = parameters.own_rate / 1000;
  Programme programme(parameters.own_first);
  const auto cycle = [&] {
    programme.Ramp(parameters.own_second, rate);
    programme.Ramp(parameters.own_third, rate);
    programme.Ramp(parameters.own_first, rate);
  };
  if (parameters.own_cycles == 0) {
    programme.Hold(parameters.own_delay);
    programme.BeginLoop();
    cycle();
  } else {
    programme.BeginLoop();
    programme.Hold(parameters.own_delay);
    for (int i = 0; i < static_cast<int>(parameters.own_cycles); ++i) cycle();
  }
  return programme;
}

}  // namespace

Potentiostat::Potentiostat(const Parameters& parameters)
    : has_own_(parameters.own != 0), rest_(parameters.rest_potential) {
  if (has_own_) own_.Start(OwnProgramme(parameters));
}

void Potentiostat::Advance(double dt) {
  generator_.Advance(dt);
  own_.Advance(dt);
}

double Potentiostat::VoltsAfter(double dt) const {
  if (generator_.output_on()) return generator_.VoltsAfter(dt);
  return has_own_ ? own_.VoltsAfter(dt) : rest_;
}

double Potentiostat::UntilCorner() const {
  if (generator_.output_on()) return generator_.UntilCorner();
  return has_own_ ? own_.UntilCorner() : std::numeric_limits<double>::infinity();
}

Plant::Plant(const Parameters& parameters, Random& random)
    : disk_range_(parameters.disk_range),
      ring_range_(parameters.ring_range),
      tach_scale_(parameters.tach_scale),
      random_(random),
      potentiostat_(parameters),
      rotor_(parameters),
      cells_(MakeCells(parameters, potentiostat_.VoltsAfter(0.0))),
      currents_(cells_.size()),
      ring_volts_(parameters.Kind() == kOxygen ? parameters.ring_potential : 0.0),
      step_(kShortest),
      connected_(cells_.size() == 1 ? 5 : 2 * cells_.size()) {
  Connect(potentiostat_.VoltsAfter(0.0));
  last_ = now_;
}

// What each input carries now.
void Plant::Connect(double command) {
  if (cells_.size() == 1) {
    now_[kPotential] = command;
    now_[kDiskCurrent] = currents_[0].disk / disk_range_;
    now_[kRingPotential] = ring_volts_;
    now_[kRingCurrent] = currents_[0].ring / ring_range_;
    now_[kRotation] = rotor_.rpm() / tach_scale_;
    return;
  }
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    now_[2 * i] = command;
    now_[2 * i + 1] = currents_[i].disk / disk_range_;
  }
}

void Plant::SetMotorVolts(double volts) {
  rotor_.SetVolts(volts);
  since_event_ = 0.0;
}

void Plant::SetMotorPower(bool on) {
  rotor_.SetPower(on);
  since_event_ = 0.0;
}

// A step is as long as its consequences are smooth: shortest at a jump of the command, growing from
// there, at most what the sweep's slope and (where nobody watched) the time since the last event
// allow, and cut to end on the programme's next corner.
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
  const Drive drive{command, cells_.size() == 1 ? rotor_.omega() : 0.0};
  for (std::size_t i = 0; i < cells_.size(); ++i) currents_[i] = cells_[i]->Step(dt, drive);
  potentiostat_.Advance(dt);
  rotor_.Advance(dt, random_);
  step_ = dt;
  time_ += dt;
  since_jump_ += dt;
  since_event_ += dt;
  std::copy_n(now_.begin(), connected_, last_.begin());
  Connect(command);
}

double Plant::VoltsAt(int signal, double seconds) const {
  const auto place = static_cast<std::size_t>(signal);
  if (signal < 0 || place >= connected_) return 0.0;
  const double back = std::clamp((time_ - seconds) / step_, 0.0, 1.0);
  return now_[place] + back * (last_[place] - now_[place]);
}

}  // namespace zento::sim
