#include "cli/verify_rows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string_view>

#include "sim/cell.h"
#include "text/number.h"

namespace zento {
namespace {

using namespace experiments;
using Found = std::optional<double>;
using P = sim::Parameters;

// What theory says of a cell whose properties are known, from those properties alone. Nothing in
// here has seen a measurement. Units: V, A, A/cm2, C, s, cm2/s, mol/cm3.
namespace truths {

constexpr double kMolar = 1e-6;  // mol/cm3 per mmol/L
constexpr double kMicro = 1e-6;

// Electrons per oxygen: of the share 1 - x four, of the share x two (A. Damjanovic, M. A. Genshaw
// and J. O'M. Bockris 1966, J. Chem. Phys. 45, 4057).
double OxygenElectrons(const P& p) {
  return 4 * (1 - p.peroxide_share) + 2 * p.peroxide_share;
}

// Per cent of the oxygen that becomes water.
double WaterShare(const P& p) {
  return 100 * (1 - p.peroxide_share);
}

// jk = n F k(E) C (J. Koutecky and V. G. Levich 1958; A. J. Bard and L. R. Faulkner,
// Electrochemical Methods, 2nd ed. 2001, eq. 9.3.38), with k(E) = k(0.9 V) 10^((0.9 V - E)/slope).
double KineticCurrent(const P& p, double volts) {
  const double rate = p.oxygen_rate * std::pow(10.0, (0.9 - volts) / (p.oxygen_slope * 1e-3));
  return OxygenElectrons(p) * sim::kFaraday * rate * p.bulk_oxygen * kMolar;
}

double OxygenViscosity(const P& p) {
  return p.viscosity;
}

double OxygenDiffusion(const P& p) {
  return p.diffusion_oxygen;
}

double OxygenConcentration(const P& p) {
  return p.bulk_oxygen * kMolar;
}

// Of the species that the step oxidises.
double ReducedDiffusion(const P& p) {
  return p.diffusion_red;
}

// The standard error of that, from the points `first` to `last` of a step, `interval` s apart,
// under white noise on a line through the origin: D goes with the square of the slope b of i
// against x = t^(-1/2), b = n F A C sqrt(D/pi) (Bard and Faulkner, eq. 5.2.11), and the standard
// error of b is sigma/sqrt(sum x^2) (J. R. Taylor, An Introduction to Error Analysis, 2nd ed. 1997,
// chapter 8).
double ReducedDiffusionError(const P& p, int first, int last, double interval) {
  const double sigma = p.noise * 1e-3 * p.disk_range;  // A
  double sum = 0;
  for (int point = first; point <= last; ++point) sum += 1 / (interval * point);
  const double unit_slope = p.electrons * sim::kFaraday * p.area * p.bulk_red * kMolar;
  return 2 * std::sqrt(std::numbers::pi * p.diffusion_red) / unit_slope * sigma / std::sqrt(sum);
}

// Slopes of log i against potential, as multiples of F/(R T ln 10): (1 - alpha) n of the oxidation,
// alpha n of the reduction (Butler 1924, Volmer 1930; Bard and Faulkner, eqs. 3.4.15 and 3.4.16).
double AnodicTransfer(const P& p) {
  return (1 - p.transfer) * p.electrons;
}

double CathodicTransfer(const P& p) {
  return p.transfer * p.electrons;
}

// i0/A = n F k0 C_ox^(1 - alpha) C_red^alpha (Bard and Faulkner, eq. 3.4.6), at the equilibrium
// potential, which is E0' where both concentrations are equal.
double ExchangeCurrent(const P& p) {
  return p.electrons * sim::kFaraday * p.rate_constant *
         std::pow(p.bulk_ox * kMolar, 1 - p.transfer) * std::pow(p.bulk_red * kMolar, p.transfer);
}

// Q = C_dl A (E2 - E1), of a double layer that nothing passes.
double DoubleLayerCharge(const P& p, double from, double to) {
  return p.capacitance * kMicro * p.area * (to - from);
}

// R_u C_dl A (Bard and Faulkner, eq. 1.2.6).
double CellTimeConstant(const P& p) {
  return p.resistance * p.capacitance * kMicro * p.area;
}

}  // namespace truths

constexpr double kOfElectrons = 0.003;
// How the tolerance of n goes on into what is solved for instead: in n D^(2/3) nu^(-1/6) C, C has
// one times the error of n, D one and a half times, nu six times.
constexpr double kOfConcentration = kOfElectrons;
constexpr double kOfDiffusion = 1.5 * kOfElectrons;
constexpr double kOfViscosity = 6 * kOfElectrons;

// What a person knows of the cell.
std::string Number(double value) {
  return " " + PlainNumber(value);
}
std::string Area(const P& p) {
  return " --area" + Number(p.area);
}
std::string RotatedOxygen(const P& p, const std::string& solved) {
  return Area(p) + " --viscosity" + Number(truths::OxygenViscosity(p)) + " --diffusion" +
         Number(truths::OxygenDiffusion(p)) + " --concentration" +
         Number(truths::OxygenConcentration(p)) + " --electrons" +
         Number(truths::OxygenElectrons(p)) + " --solve " + solved;
}

// The sweep's points stand on multiples of 0.2 mV, the window's edges between them: a window is
// open at one side, so points on both edges would move its mean by half a step.
std::string Kinetics(const char* volts) {
  return std::string("kl --tracks all --potential ") + volts + " --half-width 0.0015" +
         RotatedOxygen(BenchOf(kKinetics), "electrons");
}

std::string Plateau(const char* method, const Experiment& experiment, const char* solved) {
  return std::string(method) + " --tracks all --potential 0.3 --half-width 0.1" +
         RotatedOxygen(BenchOf(experiment), solved);
}

// Later than ten times the detection delay, which is at most 11 ms: one interval at 100 Hz and the
// readings of two points.
std::string AfterTheStep(const Experiment& experiment, int first) {
  const P p = BenchOf(experiment);
  return "cottrell --track 0 --points " + std::to_string(first) + ": --line origin --electrons" +
         Number(p.electrons) + " --concentration" + Number(p.bulk_red * 1e-6) + Area(p);
}

// Where noise stands above what the detection delay makes of the current by far; the step lasts 20
// s at 100 Hz.
constexpr int kNoisyFirst = 501;

double DiffusionErrorUnderNoise(const P& p) {
  return truths::ReducedDiffusionError(p, kNoisyFirst, 2000, 0.01);
}

// 0.12 V to 0.18 V from the redox potential: less than 1 % of the reaction back, and the current
// below 1 % of the limiting one. The sweep of 0.1 mV a point begins at the redox potential.
std::string TafelRegion(const char* track) {
  const P p = BenchOf(kSlow);
  return std::string("tafel --points 1200:1800 --track ") + track + " --redox-potential" +
         Number(p.formal_potential) + Area(p);
}

// Steps of 0.04 V do not land on the second vertex.
std::string Shares() {
  return "o2 --track 0 --step 0.04 --half-width 0.01 --collection" +
         Number(BenchOf(kShares).collection);
}

// A quantity of the analysis by its name.
auto Named(std::string_view name) {
  return [name](const AnalysisResult& outcome, double) {
    const auto found = std::ranges::find(outcome.quantities, name, &Quantity::name);
    return found == outcome.quantities.end() ? Found() : Found(found->value);
  };
}

auto ErrorOf(std::string_view name) {
  return [name](const AnalysisResult& outcome, double) {
    const auto found = std::ranges::find(outcome.quantities, name, &Quantity::name);
    return found == outcome.quantities.end() ? Found() : found->error;
  };
}

const std::vector<double>* Column(const AnalysisResult& outcome, std::string_view name) {
  const auto found = std::ranges::find(outcome.columns, name, &AnalysisResult::Column::name);
  return found == outcome.columns.end() ? nullptr : &found->values;
}

// Of all shares of water on the way to the lowest potential, or on the way back, the one that is
// furthest from the truth.
auto WorstShare(bool on_the_way_back) {
  return [on_the_way_back](const AnalysisResult& outcome, double truth) {
    const auto* volts = Column(outcome, "E");
    const auto* water = Column(outcome, "H2O");
    Found worst;
    if (volts == nullptr || water == nullptr || water->empty()) return worst;
    const auto turn = std::ranges::min_element(*volts) - volts->begin();
    for (std::size_t i = 0; i < water->size(); ++i) {
      const bool back = static_cast<std::ptrdiff_t>(i) > turn;
      if (back != on_the_way_back) continue;
      if (!worst || std::abs((*water)[i] - truth) > std::abs(*worst - truth)) worst = (*water)[i];
    }
    return worst;
  };
}

auto KineticAt(double volts) {
  return [volts](const P& p) { return truths::KineticCurrent(p, volts); };
}

double ChargeOfTheSweep(const P& p) {
  return truths::DoubleLayerCharge(p, 0, 1);
}

}  // namespace

std::vector<VerifyRow> VerifyRows() {
  using namespace truths;
  const auto n = Named("n");
  const auto jk = Named("jk");
  std::vector<VerifyRow> rows;
  for (const char* volts : {"0.88", "0.85", "0.82"}) {
    rows.push_back({std::string("n at ") + volts + " V, Koutecky-Levich", "", &kKinetics,
                    Kinetics(volts), n, OxygenElectrons, kOfElectrons});
  }
  for (const char* volts : {"0.88", "0.85", "0.82"}) {
    rows.push_back({std::string("jk at ") + volts + " V", "A/cm2", &kKinetics, Kinetics(volts), jk,
                    KineticAt(ParseLenient(volts)), 0.003});
  }
  const VerifyRow others[] = {
      {"n in the plateau, Levich", "", &kPlateau, Plateau("levich", kPlateau, "electrons"), n,
       OxygenElectrons, kOfElectrons},
      {"viscosity solved", "cm2/s", &kPlateau, Plateau("levich", kPlateau, "viscosity"),
       Named("viscosity"), OxygenViscosity, kOfViscosity},
      {"D solved", "cm2/s", &kPlateau, Plateau("levich", kPlateau, "diffusion"), Named("D"),
       OxygenDiffusion, kOfDiffusion},
      {"C solved", "mol/cm3", &kPlateau, Plateau("levich", kPlateau, "concentration"), Named("C"),
       OxygenConcentration, kOfConcentration},
      {"n from a rotation-rate sweep", "", &kRates,
       "kl --track 0" + RotatedOxygen(BenchOf(kRates), "electrons"), n, OxygenElectrons, 0.01},
      {"D from a potential step", "cm2/s", &kStep, AfterTheStep(kStep, 11), Named("Dapp"),
       ReducedDiffusion, 0.05},
      // Of 1500 points, the error is known to 2 %.
      {"standard error of D", "cm2/s", &kNoisyStep, AfterTheStep(kNoisyStep, kNoisyFirst),
       ErrorOf("Dapp"), DiffusionErrorUnderNoise, 0.05},
      {"(1 - alpha) n of an oxidation", "", &kSlow, TafelRegion("0"), Named("alpha_n"),
       AnodicTransfer, 0.01},
      {"alpha n of a reduction", "", &kSlow, TafelRegion("1"), Named("alpha_n"), CathodicTransfer,
       0.01},
      {"i0 from the oxidation", "A/cm2", &kSlow, TafelRegion("0"), Named("i0"), ExchangeCurrent,
       0.03},
      {"i0 from the reduction", "A/cm2", &kSlow, TafelRegion("1"), Named("i0"), ExchangeCurrent,
       0.03},
      {"%H2O, worst on the way down", "%", &kShares, Shares(), WorstShare(false), WaterShare, 0.2,
       true},
      {"%H2O, worst on the way back", "%", &kShares, Shares(), WorstShare(true), WaterShare, 0.2,
       true},
      {"charge of a double layer", "C", &kCapacitor,
       "coulomb --track 0 --points 0:1999 --method trapezoid --base none", Named("charge"),
       ChargeOfTheSweep, 0.002},
      {"time constant of a cell", "s", &kDecay, "fit --track 0 --parameters 3", Named("p2"),
       CellTimeConstant, 0.005},
      {"n in the plateau, with noise", "", &kNoisy, Plateau("kl", kNoisy, "electrons"), n,
       OxygenElectrons, 0.02},
  };
  rows.insert(rows.end(), std::begin(others), std::end(others));
  return rows;
}

}  // namespace zento
