#include "cli/verify_truths.h"

#include <cmath>

#include "sim/cell.h"

namespace zento::truths {
namespace {

constexpr double kMolar = 1e-6;  // mol/cm3 per mmol/L
constexpr double kMicro = 1e-6;

}  // namespace

double OxygenElectrons(const sim::Parameters& p) {
  return 4 * (1 - p.peroxide_share) + 2 * p.peroxide_share;
}

double WaterShare(const sim::Parameters& p) {
  return 100 * (1 - p.peroxide_share);
}

double KineticCurrent(const sim::Parameters& p, double volts) {
  const double rate = p.oxygen_rate * std::pow(10.0, (0.9 - volts) / (p.oxygen_slope * 1e-3));
  return OxygenElectrons(p) * sim::kFaraday * rate * p.bulk_oxygen * kMolar;
}

double OxygenViscosity(const sim::Parameters& p) {
  return p.viscosity;
}

double OxygenDiffusion(const sim::Parameters& p) {
  return p.diffusion_oxygen;
}

double OxygenConcentration(const sim::Parameters& p) {
  return p.bulk_oxygen * kMolar;
}

double ReducedDiffusion(const sim::Parameters& p) {
  return p.diffusion_red;
}

double AnodicTransfer(const sim::Parameters& p) {
  return (1 - p.transfer) * p.electrons;
}

double CathodicTransfer(const sim::Parameters& p) {
  return p.transfer * p.electrons;
}

double ExchangeCurrent(const sim::Parameters& p) {
  return p.electrons * sim::kFaraday * p.rate_constant *
         std::pow(p.bulk_ox * kMolar, 1 - p.transfer) * std::pow(p.bulk_red * kMolar, p.transfer);
}

double DoubleLayerCharge(const sim::Parameters& p, double from, double to) {
  return p.capacitance * kMicro * p.area * (to - from);
}

double CellTimeConstant(const sim::Parameters& p) {
  return p.resistance * p.capacitance * kMicro * p.area;
}

}  // namespace zento::truths
