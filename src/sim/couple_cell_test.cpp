// The couple cell with the potentiostat and the rotor around it, held against theory.

#include "sim/couple_cell.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "sim/test_record.h"
#include "sim/test_support.h"
#include "text/format.h"

namespace zento::sim {
namespace {

std::vector<Point> Sweep(const Parameters& parameters, double from, double to, double volts_per_s,
                         int turns = 1) {
  const auto volts = [](double v) {
    return (v < 0 ? "-" : "+") + Format(std::abs(v) * 1000, "0000");
  };
  const double seconds = turns * std::abs(to - from) / volts_per_s;
  return Record(
      parameters,
      CyclicSweep(volts(from), volts(to), volts(from), Format(volts_per_s, "000E+0"), "000"),
      seconds, std::min(2e-4 / volts_per_s, seconds));
}

// The extremum of the current nearest to a parabola through its highest point and the neighbours.
Point Peak(const std::vector<Point>& points, double sign) {
  std::size_t at = 1;
  for (std::size_t i = 1; i + 1 < points.size(); ++i) {
    const double here = sign * points[i].amperes;
    const bool peak = here >= sign * points[i - 1].amperes && here > sign * points[i + 1].amperes;
    if (peak && (at == 1 || here > sign * points[at].amperes)) at = i;
  }
  const double left = points[at - 1].amperes;
  const double right = points[at + 1].amperes;
  const double curvature = left - 2 * points[at].amperes + right;
  const double shift = 0.5 * (left - right) / curvature;
  return {points[at].seconds, points[at].volts + shift * (points[at + 1].volts - points[at].volts),
          points[at].amperes - 0.25 * (left - right) * shift};
}

// Where `from` first reaches `value`, what `to` is there.
double Cross(const std::vector<Point>& points, double Point::*from, double value,
             double Point::*to) {
  const auto next =
      std::ranges::find_if(points, [&](const Point& point) { return point.*from >= value; });
  const Point& before = *(next - 1);
  const double share = (value - before.*from) / ((*next).*from - before.*from);
  return before.*to + share * ((*next).*to - before.*to);
}

double CurrentAt(const std::vector<Point>& points, double volts) {
  return Cross(points, &Point::volts, volts, &Point::amperes);
}

double VoltsAt(const std::vector<Point>& points, double amperes) {
  return Cross(points, &Point::amperes, amperes, &Point::volts);
}

double PerVolt(const Parameters& p) {
  return p.electrons * kFaraday / (8.314462618 * p.temperature);
}

// n F A C sqrt(D n F v / (R T)): what turns chi sqrt(pi) into a current.
double SweepUnit(const Parameters& p, double rate) {
  return p.electrons * kFaraday * p.area * p.bulk_red * 1e-6 *
         std::sqrt(p.diffusion_red * PerVolt(p) * rate);
}

TEST(CoupleCell, ReversiblePeakAtAnyScanRate) {
  for (const double rate : {0.005, 0.1, 1.0, 5.0}) {
    for (const char* n : {"n=1", "n=2"}) {
      const Parameters p = Textbook({n});
      const std::vector<Point> points = Sweep(p, -0.15, 0.65, rate);
      const Point peak = Peak(points, 1);
      const double expected = 2.6865e5 * std::pow(p.electrons, 1.5) * p.area *
                              std::sqrt(p.diffusion_red * rate) * p.bulk_red * 1e-6;
      EXPECT_NEAR(peak.amperes / expected, 1.0, 1e-3) << rate << " V/s, " << n;
      EXPECT_NEAR((peak.volts - 0.25) * 1e3, 28.49 / p.electrons, 0.1) << rate << " V/s, " << n;
      EXPECT_NEAR((peak.volts - VoltsAt(points, 0.5 * peak.amperes)) * 1e3, 56.58 / p.electrons,
                  0.1)
          << rate << " V/s, " << n;
    }
  }
}

TEST(CoupleCell, ReversibleCurveAndUnequalDiffusion) {
  // Unequal coefficients move the half-wave potential and change nothing else.
  const Parameters p = Textbook({"D_ox=2e-5"});
  const double half_wave =
      0.25 + std::log(std::sqrt(p.diffusion_red / p.diffusion_ox)) / PerVolt(p);
  const std::vector<Point> points = Sweep(p, -0.25, 0.65, 0.05);
  const double unit = SweepUnit(p, 0.05);
  const double table[][2] = {{-.120, .00924}, {-.060, .08495}, {-.020, .27008}, {0, .38011},
                             {.0285, .44630}, {.060, .39918},  {.120, .28021}};
  for (const auto& [past, value] : table) {
    EXPECT_NEAR(CurrentAt(points, half_wave + past) / unit, value, 0.001) << past;
  }
}

// Reversal 141 mV past the half-wave potential.
TEST(CoupleCell, QuasiReversiblePeakSeparation) {
  const double table[][2] = {{20, 60.2}, {7, 62.6}, {3, 67.4}, {1, 83.1}, {.5, 104.3}, {.1, 210.7}};
  for (const auto& [psi, separation] : table) {
    Parameters p = Textbook();
    p.rate_constant = psi * std::sqrt(std::numbers::pi * p.diffusion_red * PerVolt(p) * 0.1);
    const std::vector<Point> points = Sweep(p, -0.25, 0.391, 0.1, 2);
    EXPECT_NEAR((Peak(points, 1).volts - Peak(points, -1).volts) * 1e3, separation, 0.5) << psi;
  }
}

TEST(CoupleCell, IrreversiblePeak) {
  const Parameters p = Textbook({"k0=1e-8", "alpha=0.4"});
  const Point peak = Peak(Sweep(p, 0.25, 1.5, 0.1), 1);
  EXPECT_NEAR(peak.amperes / (SweepUnit(p, 0.1) * std::sqrt(0.6)), 0.4958, 0.0005);
}

TEST(CoupleCell, StepFollowsCottrell) {
  const Parameters p = Textbook();
  const double unit =
      kFaraday * p.area * p.bulk_red * 1e-6 * std::sqrt(p.diffusion_red / std::numbers::pi);
  const auto lines = PotentialStep("-0200", "+0800", "001");
  const auto check = [&](const std::vector<Point>& points, double from, double tolerance) {
    for (const Point& point : points) {
      const double t = point.seconds - 1.0;
      if (t < 0.99 * from) continue;
      ASSERT_NEAR(point.amperes * std::sqrt(t) / unit, 1.0, tolerance) << t;
    }
  };
  check(Record(p, lines, 1.02, 1e-4), 1e-4, 1e-2);
  check(Record(p, lines, 1.5, 1e-3), 0.02, 1e-3);
  check(Record(p, lines, 90, 0.5), 0.5, 1e-4);
}

TEST(CoupleCell, RotatingDiskLimit) {
  const Parameters p = Textbook({"rotor_gain=1"});
  for (const double rpm : {100.0, 400.0, 1600.0, 5000.0}) {
    const double limit =
        kFaraday * p.area * p.bulk_red * 1e-6 * LevichRate(p.diffusion_red, p.viscosity, rpm);
    const std::vector<Point> points =
        Record(p, PotentialStep("-0200", "+0800", "001"), 60, 0.25, rpm);
    EXPECT_NEAR(points.back().amperes / limit, 1.0, 1e-4) << rpm;
  }
}

TEST(CoupleCell, DoubleLayerAndResistance) {
  // A jump puts exactly C dE on the double layer, in steps of any length.
  CoupleCell::Settings settings;
  settings.bulk_red = 0;
  CoupleCell cell(settings, 0.0);
  double charge = 0;
  double dt = 2e-5;
  while (dt < 1e-2) {
    charge += dt * cell.Step(dt, {0.5, 0}).disk;
    dt *= 1.3;
  }
  EXPECT_NEAR(charge / (20e-6 * settings.area * 0.5), 1.0, 1e-9);

  // R_u moves the peak by the ohmic drop, roughly.
  Parameters p = Textbook();
  const Point ideal = Peak(Sweep(p, -0.25, 0.75, 0.1), 1);
  p.resistance = 100;
  const Point dropped = Peak(Sweep(p, -0.25, 0.75, 0.1), 1);
  EXPECT_NEAR(dropped.volts - ideal.volts, 100 * dropped.amperes, 0.4 * 100 * dropped.amperes);
  EXPECT_LT(dropped.amperes, ideal.amperes);
}

TEST(EveryCell, AnythingASettingAllowsStaysFinite) {
  for (const Parameter& row : ParameterTable()) {
    if (!row.choices.empty()) continue;
    for (const CellKind kind : {kCouple, kOxygen, kBlank}) {
      for (const double extreme : {row.least, row.most}) {
        Parameters p;
        p.cell = kind;
        p.peroxide_oxidation = 1e-3;
        p.*row.member = extreme;
        for (const Point& point :
             Record(p, CyclicSweep("-9999", "+9999", "+0000", "10E+2", "000"), 0.01, 1e-3, 1000)) {
          ASSERT_TRUE(std::isfinite(point.amperes) && std::isfinite(point.ring))
              << row.key << " = " << extreme << ", cell " << kind;
        }
      }
    }
  }
}

}  // namespace
}  // namespace zento::sim
