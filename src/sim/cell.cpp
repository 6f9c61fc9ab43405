#include "sim/cell.h"

#include "sim/couple_cell.h"
#include "sim/oxygen_cell.h"

namespace zento::sim {
namespace {

// A polarisable electrode in an electrolyte where nothing reacts: a double layer behind an
// uncompensated resistance, and no ring. With tau = R_u C_dl A, a ramp of v (V/s) is answered by
// I = C_dl A v (1 - e^(-t/tau)), a step of dE by I = dE/R_u e^(-t/tau) (Bard and Faulkner,
// Electrochemical Methods, 2nd ed. 2001, eqs. 1.2.15 and 1.2.6).
class BlankCell final : public Cell {
 public:
  // Farads and ohms of the whole electrode. At rest at `volts`.
  BlankCell(double capacitance, double resistance, double volts)
      : interface_(capacitance, resistance, volts) {}

  Currents Step(double dt, const Drive& drive) override {
    const auto nothing_reacts = [](double) { return Interface::Faradaic{0.0, 0.0}; };
    return {interface_.Step(dt, drive.volts, nothing_reacts).charging, 0.0};
  }

 private:
  Interface interface_;
};

constexpr int kArraySize = 10;

// In the units of the cells: mol/cm3 from mmol/L, F from uF, V from mV, s from ms.
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

OxygenCell::Settings OxygenSettings(const Parameters& p) {
  OxygenCell::Settings settings;
  settings.diffusion_oxygen = p.diffusion_oxygen;
  settings.diffusion_peroxide = p.diffusion_peroxide;
  settings.bulk_oxygen = p.bulk_oxygen * 1e-6;
  settings.rate_constant = p.oxygen_rate;
  settings.slope = p.oxygen_slope * 1e-3;
  settings.peroxide_share = p.peroxide_share;
  settings.peroxide_oxidation = p.peroxide_oxidation;
  settings.collection = p.collection;
  settings.ring_lag = p.ring_lag * 1e-3;
  settings.area = p.area;
  settings.capacitance = p.capacitance * 1e-6;
  settings.resistance = p.resistance;
  settings.viscosity = p.viscosity;
  return settings;
}

}  // namespace

std::vector<std::unique_ptr<Cell>> MakeCells(const Parameters& parameters, double volts) {
  std::vector<std::unique_ptr<Cell>> cells;
  if (parameters.Kind() == kOxygen) {
    cells.push_back(std::make_unique<OxygenCell>(OxygenSettings(parameters), volts));
    return cells;
  }
  if (parameters.Kind() == kBlank) {
    cells.push_back(std::make_unique<BlankCell>(parameters.capacitance * 1e-6 * parameters.area,
                                                parameters.resistance, volts));
    return cells;
  }
  CoupleCell::Settings settings = CoupleSettings(parameters);
  const int count = parameters.Kind() == kArray ? kArraySize : 1;
  for (int i = 0; i < count; ++i) {
    settings.formal_potential =
        parameters.formal_potential + (i - 0.5 * (count - 1)) * parameters.spacing * 1e-3;
    cells.push_back(std::make_unique<CoupleCell>(settings, volts));
  }
  return cells;
}

}  // namespace zento::sim
