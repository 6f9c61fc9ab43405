#pragma once

#include "sim/cell.h"
#include "sim/interface.h"

namespace zento::sim {

// A polarisable electrode in an electrolyte where nothing reacts: a double layer behind an
// uncompensated resistance, and no ring. With tau = R_u C_dl A, a ramp of v (V/s) is answered by
// I = C_dl A v (1 - e^(-t/tau)), a step of dE by I = dE/R_u e^(-t/tau) (Bard and Faulkner,
// Electrochemical Methods, 2nd ed. 2001, eqs. 1.2.15 and 1.2.6).
class BlankCell final : public Cell {
 public:
  struct Settings {
    double area = 0.2827;        // cm2
    double capacitance = 20e-6;  // F/cm2
    double resistance = 10.0;    // ohm
  };

  // At rest at `volts`.
  BlankCell(const Settings& settings, double volts)
      : interface_(settings.capacitance * settings.area, settings.resistance, volts) {}

  Currents Step(double dt, const Drive& drive) override {
    const auto nothing_reacts = [](double) { return Interface::Faradaic{0.0, 0.0}; };
    return {interface_.Step(dt, drive.volts, nothing_reacts).charging, 0.0};
  }

 private:
  Interface interface_;
};

}  // namespace zento::sim
