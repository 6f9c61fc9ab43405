#pragma once

#include "sim/cell.h"
#include "sim/diffusion.h"

namespace zento::sim {

// The reduction of dissolved oxygen at the disk of a ring-disk electrode. Two irreversible ways run
// side by side, O2 + 4 H+ + 4 e- = 2 H2O and O2 + 2 H+ + 2 e- = H2O2, and share the oxygen in the
// same proportion at every potential:
//   J = k(E) c_O2(0),  k(E) = k(0.9 V) 10^(-(E - 0.9 V)/slope),  of which the share x becomes
// peroxide. So n = 4 - 2 x electrons, and 100 (1 - x) % of the oxygen becomes water.
//
// The ring is held where all peroxide that reaches it is oxidised:
//   I_ring = N 2 F A J_peroxide,
// of the peroxide that leaves the disk, later by the time that the solution needs to cross the gap
// (a first-order lag). Then (I_disk - I_ring/N)/(I_disk + I_ring/N) = 1 - x holds exactly in every
// steady state; in a sweep the lag and the double layer's current take part. Below 10 rpm the
// solution that the disk throws outwards no longer reaches the ring, and what it collects fades
// in proportion to the rate.
//
// Peroxide may also be oxidised at the disk, at high potentials:
//   J_back = k_p(E) c_peroxide(0),  k_p(E) = k_p(1.2 V) 10^((E - 1.2 V)/0.12 V).
//
// The results are held against Koutecky and Levich (Levich 1962), Cottrell (1903), and the
// ring-disk relation of Damjanovic, Genshaw and Bockris (1966).
class OxygenCell final : public Cell {
 public:
  struct Settings {
    double diffusion_oxygen = 1.9e-5;    // cm2/s
    double diffusion_peroxide = 1.5e-5;  // cm2/s
    double bulk_oxygen = 1.2e-6;         // mol/cm3
    double rate_constant = 2.6e-3;       // cm/s, of both ways at 0.9 V
    double slope = 0.068;                // V per decade
    double peroxide_share = 0.05;        // x
    double peroxide_oxidation = 0.0;     // cm/s, at the disk at 1.2 V
    double collection = 0.39;            // N
    double ring_lag = 0.05;              // s; 0 for none
    double area = 0.2827;                // cm2
    double capacitance = 50e-6;          // F/cm2
    double resistance = 5.0;             // ohm
    double viscosity = 0.01;             // cm2/s
  };

  // At rest at `volts`, with uniform solution.
  OxygenCell(const Settings& settings, double volts);

  Currents Step(double dt, const Drive& drive) override;

 private:
  // Fluxes in mol/(cm2 s) and their slopes per volt.
  struct Reaction {
    double oxygen, oxygen_slope;  // reduced
    double back, back_slope;      // peroxide oxidised
  };

  bool HasOxidation() const { return settings_.peroxide_oxidation > 0.0; }
  Reaction ReactionAt(double interface_volts) const;
  double Collect(double dt, double amperes);

  Settings settings_;
  double electrons_;  // n
  double per_flux_;   // F A
  DiffusionLayer oxygen_;
  DiffusionLayer peroxide_;
  DiffusionLayer::Surface oxygen_surface_, peroxide_surface_;
  Interface interface_;
  double arriving_ = 0.0;  // A at the ring without its lag
  double ring_ = 0.0;      // A
  // Of the last step, which is mostly the next one's too.
  double dt_ = 0.0;
  double kept_ = 0.0;
};

}  // namespace zento::sim
