#include "sim/couple_cell.h"

#include <cmath>

namespace zento::sim {

CoupleCell::CoupleCell(const Settings& settings, double volts)
    : settings_(settings),
      per_volt_(settings.electrons * kFaraday / (kGas * settings.temperature)),
      per_flux_(settings.electrons * kFaraday * settings.area),
      red_(settings.diffusion_red, settings.bulk_red, settings.viscosity),
      ox_(settings.diffusion_ox, settings.bulk_ox, settings.viscosity),
      interface_(settings.capacitance * settings.area, settings.resistance, volts) {}

CoupleCell::Rates CoupleCell::RatesAt(double interface_volts) const {
  // k_b/k_f = e^x at every potential: together they obey Nernst.
  const double x = per_volt_ * (interface_volts - settings_.formal_potential);
  const double cathodic = settings_.rate_constant * BoundedExp(-settings_.transfer * x);
  return {cathodic * BoundedExp(x), cathodic};
}

// J = (k_b alpha_R - k_f alpha_O)/N with N = 1 + k_b beta_R + k_f beta_O; the slope is its quotient
// rule, dJ/dE = (k_b' (alpha_R - J beta_R) - k_f' (alpha_O + J beta_O))/N.
Interface::Faradaic CoupleCell::FaradaicAt(double interface_volts) const {
  const auto [anodic, cathodic] = RatesAt(interface_volts);
  const double denominator = 1.0 + anodic * red_surface_.beta + cathodic * ox_surface_.beta;
  const double flux = (anodic * red_surface_.alpha - cathodic * ox_surface_.alpha) / denominator;
  const double anodic_slope = (1.0 - settings_.transfer) * per_volt_ * anodic;
  const double cathodic_slope = -settings_.transfer * per_volt_ * cathodic;
  const double slope = (anodic_slope * (red_surface_.alpha - flux * red_surface_.beta) -
                        cathodic_slope * (ox_surface_.alpha + flux * ox_surface_.beta)) /
                       denominator;
  return {per_flux_ * flux, per_flux_ * slope};
}

Currents CoupleCell::Step(double dt, const Drive& drive) {
  // The flux follows a jump of the command as 1/sqrt(t), where a second-order step would ring.
  if (std::abs(drive.volts - interface_.command()) > kJump) {
    red_.Restart();
    ox_.Restart();
  }
  red_.SetRotation(drive.omega);
  ox_.SetRotation(drive.omega);
  red_surface_ = red_.Begin(dt);
  ox_surface_ = ox_.Begin(dt);
  const Interface::Flow flow =
      interface_.Step(dt, drive.volts, [this](double volts) { return FaradaicAt(volts); });
  const double flux = flow.faradaic / per_flux_;
  red_.Finish(flux);
  ox_.Finish(-flux);
  return {flow.charging + flow.faradaic, 0.0};
}

}  // namespace zento::sim
