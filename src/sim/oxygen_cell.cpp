#include "sim/oxygen_cell.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zento::sim {
namespace {

constexpr double kReference = 0.9;                               // V, of the rate constant
constexpr double kBackReference = 1.2;                           // V
constexpr double kBackSlope = 0.12;                              // V per decade
constexpr double kReach = 10.0 * 2.0 * std::numbers::pi / 60.0;  // rad/s

}  // namespace

OxygenCell::OxygenCell(const Settings& settings, double volts)
    : settings_(settings),
      electrons_(4.0 - 2.0 * settings.peroxide_share),
      per_flux_(kFaraday * settings.area),
      oxygen_(settings.diffusion_oxygen, settings.bulk_oxygen, settings.viscosity),
      peroxide_(settings.diffusion_peroxide, 0.0, settings.viscosity),
      interface_(settings.capacitance * settings.area, settings.resistance, volts) {}

// Oxygen: J = k c(0) and c(0) = alpha - beta J give J = k alpha/(1 + k beta), and dJ/dE = k'/k
// times J/(1 + k beta). Peroxide, of which x J is made: J_back = k_p (alpha_p + beta_p (x J -
// J_back)).
OxygenCell::Reaction OxygenCell::ReactionAt(double interface_volts) const {
  const double per_volt = std::numbers::ln10 / settings_.slope;
  const double k = settings_.rate_constant * BoundedExp(-per_volt * (interface_volts - kReference));
  const double denominator = 1.0 + k * oxygen_surface_.beta;
  Reaction reaction{};
  reaction.oxygen = k * oxygen_surface_.alpha / denominator;
  reaction.oxygen_slope = -per_volt * reaction.oxygen / denominator;
  if (!HasOxidation()) return reaction;
  const double back_per_volt = std::numbers::ln10 / kBackSlope;
  const double back =
      settings_.peroxide_oxidation * BoundedExp(back_per_volt * (interface_volts - kBackReference));
  const double share = back / (1.0 + back * peroxide_surface_.beta);
  const double made = peroxide_surface_.beta * settings_.peroxide_share;
  reaction.back = share * (peroxide_surface_.alpha + made * reaction.oxygen);
  reaction.back_slope =
      reaction.back * back_per_volt * (share / back) + share * made * reaction.oxygen_slope;
  return reaction;
}

// The ring's lag, lag dI/dt = I_in - I, solved exactly for an I_in that arrives on a straight line
// during the step: the line, lag times its slope behind, and an exponential towards that.
double OxygenCell::Collect(double dt, double amperes) {
  if (settings_.ring_lag <= 0.0) return amperes;
  if (dt != dt_) {
    dt_ = dt;
    kept_ = std::exp(-dt / settings_.ring_lag);
  }
  const double behind = settings_.ring_lag * (amperes - arriving_) / dt;
  ring_ = amperes - behind + (ring_ - arriving_ + behind) * kept_;
  arriving_ = amperes;
  return ring_;
}

Currents OxygenCell::Step(double dt, const Drive& drive) {
  if (std::abs(drive.volts - interface_.command()) > kJump) {
    oxygen_.Restart();
    peroxide_.Restart();
  }
  oxygen_.SetRotation(drive.omega);
  oxygen_surface_ = oxygen_.Begin(dt);
  if (HasOxidation()) {
    peroxide_.SetRotation(drive.omega);
    peroxide_surface_ = peroxide_.Begin(dt);
  }
  Reaction reaction{};
  double solved_at = 0.0;
  const Interface::Flow flow = interface_.Step(dt, drive.volts, [&](double volts) {
    reaction = ReactionAt(volts);
    solved_at = volts;
    return Interface::Faradaic{
        per_flux_ * (2.0 * reaction.back - electrons_ * reaction.oxygen),
        per_flux_ * (2.0 * reaction.back_slope - electrons_ * reaction.oxygen_slope)};
  });
  // The interface ended within a linear correction of the last potential tried.
  const double correction = interface_.volts() - solved_at;
  reaction.oxygen += reaction.oxygen_slope * correction;
  reaction.back += reaction.back_slope * correction;
  oxygen_.Finish(reaction.oxygen);
  const double leaving = settings_.peroxide_share * reaction.oxygen - reaction.back;
  if (HasOxidation()) peroxide_.Finish(-leaving);
  const double reach = std::min(drive.omega / kReach, 1.0);
  const double ring = Collect(dt, settings_.collection * 2.0 * per_flux_ * leaving * reach);
  return {flow.charging + flow.faradaic, ring};
}

}  // namespace zento::sim
