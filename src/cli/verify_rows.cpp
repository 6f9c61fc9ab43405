#include "cli/verify_rows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "cli/verify_truths.h"
#include "text/number.h"

namespace zento {
namespace {

using namespace experiments;
using Found = std::optional<double>;
using P = sim::Parameters;

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
std::string AfterTheStep() {
  const P p = BenchOf(kStep);
  return "cottrell --track 0 --points 11: --line origin --electrons" + Number(p.electrons) +
         " --concentration" + Number(p.bulk_red * 1e-6) + Area(p);
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
  return [name](const Outcome& outcome, double) {
    const auto found = std::ranges::find(outcome.quantities, name, &Quantity::name);
    return found == outcome.quantities.end() ? Found() : Found(found->value);
  };
}

const std::vector<double>* Column(const Outcome& outcome, std::string_view name) {
  const auto found = std::ranges::find(outcome.columns, name, &Outcome::Column::name);
  return found == outcome.columns.end() ? nullptr : &found->values;
}

// Of all shares of water on the way to the lowest potential, or on the way back, the one that is
// furthest from the truth.
auto WorstShare(bool on_the_way_back) {
  return [on_the_way_back](const Outcome& outcome, double truth) {
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
      {"D from a potential step", "cm2/s", &kStep, AfterTheStep(), Named("Dapp"), ReducedDiffusion,
       0.05},
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
