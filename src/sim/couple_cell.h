#pragma once

#include "sim/cell.h"
#include "sim/diffusion.h"

namespace zento::sim {

// A dissolved redox couple, Red = Ox + n e-, at a planar or rotating disk behind an uncompensated
// resistance and a double layer.
//
// Kinetics (Butler-Volmer): J = k_b c_Red(0) - k_f c_Ox(0), with
//   k_b = k0 e^((1 - alpha) n F (E - E0)/(R T)),  k_f = k0 e^(-alpha n F (E - E0)/(R T)).
// Each species' profile gives c(0) = alpha_i -+ beta_i J (see DiffusionLayer), which leaves the
// current as a function of the potential E at the interface alone:
//   I = n F A (k_b alpha_R - k_f alpha_O)/(1 + k_b beta_R + k_f beta_O).
//
// The results are held against Nicholson and Shain (1964) for reversible and irreversible waves,
// Nicholson (1965) for quasi-reversible ones, Cottrell (1903), and Levich (1962) for rotation.
class CoupleCell final : public Cell {
 public:
  struct Settings {
    double electrons = 1;
    double formal_potential = 0.25;  // V
    double rate_constant = 0.05;     // cm/s
    double transfer = 0.5;           // of the reduction
    double diffusion_red = 6.5e-6;   // cm2/s
    double diffusion_ox = 7.2e-6;    // cm2/s
    double bulk_red = 5e-6;          // mol/cm3
    double bulk_ox = 0.0;            // mol/cm3
    double area = 0.2827;            // cm2
    double capacitance = 20e-6;      // F/cm2
    double resistance = 10.0;        // ohm
    double viscosity = 0.01;         // cm2/s
    double temperature = 298.15;     // K
  };

  // At rest at `volts`, with uniform solution.
  CoupleCell(const Settings& settings, double volts);

  Currents Step(double dt, const Drive& drive) override;

 private:
  struct Rates {
    double anodic, cathodic;  // cm/s
  };
  Rates RatesAt(double interface_volts) const;
  Interface::Faradaic FaradaicAt(double interface_volts) const;

  Settings settings_;
  double per_volt_;  // n F / (R T)
  double per_flux_;  // n F A, A per mol/(cm2 s)
  DiffusionLayer red_;
  DiffusionLayer ox_;
  DiffusionLayer::Surface red_surface_, ox_surface_;
  Interface interface_;
};

}  // namespace zento::sim
