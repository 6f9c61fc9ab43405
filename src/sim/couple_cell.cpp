#include "sim/couple_cell.h"

#include <algorithm>
#include <cmath>

namespace zento::sim {
namespace {

constexpr double kFaraday = 96485.33212;  // C/mol
constexpr double kGas = 8.314462618;      // J/(mol K)

// Keeps rate constants finite at any potential a person can type.
double BoundedExp(double x) {
  return std::exp(std::clamp(x, -300.0, 300.0));
}

}  // namespace

CoupleCell::CoupleCell(const Settings& settings, double volts)
    : settings_(settings),
      per_volt_(settings.electrons * kFaraday / (kGas * settings.temperature)),
      per_flux_(settings.electrons * kFaraday * settings.area),
      capacitance_(settings.capacitance * settings.area),
      red_(settings.diffusion_red, settings.bulk_red, settings.viscosity),
      ox_(settings.diffusion_ox, settings.bulk_ox, settings.viscosity),
      command_(volts),
      interface_(volts) {}

CoupleCell::Rates CoupleCell::RatesAt(double interface_volts) const {
  const double x = per_volt_ * (interface_volts - settings_.formal_potential);
  const double cathodic = settings_.rate_constant * BoundedExp(-settings_.transfer * x);
  return {cathodic * BoundedExp(x), cathodic};
}

CoupleCell::Flux CoupleCell::FluxAt(double interface_volts) const {
  const auto [anodic, cathodic] = RatesAt(interface_volts);
  const double denominator = 1.0 + anodic * red_surface_.beta + cathodic * ox_surface_.beta;
  const double value = (anodic * red_surface_.alpha - cathodic * ox_surface_.alpha) / denominator;
  const double anodic_slope = (1.0 - settings_.transfer) * per_volt_ * anodic;
  const double cathodic_slope = -settings_.transfer * per_volt_ * cathodic;
  const double slope = (anodic_slope * (red_surface_.alpha - value * red_surface_.beta) -
                        cathodic_slope * (ox_surface_.alpha + value * ox_surface_.beta)) /
                       denominator;
  return {value, slope};
}

// Both sides are monotonic in the interface potential, so the root is the only one. Newton's method
// starts where the interface would be if it followed the command; where it would leave the bracket
// (a step of a volt), the bracket is halved. The last correction is small enough to be linear.
CoupleCell::Interface CoupleCell::SolveInterface(double dt, double volts) const {
  if (settings_.resistance <= 0.0) return {volts, FluxAt(volts).value};
  constexpr double kLinear = 1e-8;  // V
  const double conductance = 1.0 / settings_.resistance;
  const double charging = capacitance_ / dt;
  double low = -1e3;
  double high = 1e3;
  double e = interface_ + (volts - command_);
  for (int i = 0; i < 200; ++i) {
    const Flux flux = FluxAt(e);
    const double residual =
        (volts - e) * conductance - charging * (e - interface_) - per_flux_ * flux.value;
    (residual > 0.0 ? low : high) = e;
    const double slope = conductance + charging + per_flux_ * std::max(flux.slope, 0.0);
    double correction = residual / slope;
    if (std::abs(correction) < kLinear) {
      return {e + correction, flux.value + flux.slope * correction};
    }
    if (!(e + correction > low && e + correction < high)) correction = 0.5 * (low + high) - e;
    e += correction;
  }
  return {e, FluxAt(e).value};
}

Currents CoupleCell::Step(double dt, const Drive& drive) {
  if (std::abs(drive.volts - command_) > kJump) {
    red_.Restart();
    ox_.Restart();
  }
  red_.SetRotation(drive.omega);
  ox_.SetRotation(drive.omega);
  red_surface_ = red_.Begin(dt);
  ox_surface_ = ox_.Begin(dt);
  const auto [e, flux] = SolveInterface(dt, drive.volts);
  red_.Finish(flux);
  ox_.Finish(-flux);
  const double charging = capacitance_ * (e - interface_) / dt;
  interface_ = e;
  command_ = drive.volts;
  return {charging + per_flux_ * flux, 0.0};
}

}  // namespace zento::sim
