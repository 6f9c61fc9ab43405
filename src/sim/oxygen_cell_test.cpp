// The oxygen cell with the potentiostat and the rotor around it, held against theory.

#include "sim/oxygen_cell.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "sim/test_record.h"
#include "sim/test_support.h"

namespace zento::sim {
namespace {

Parameters Oxygen(std::initializer_list<std::string_view> changes = {}) {
  return With(changes, Textbook({"cell=oxygen", "rotor_gain=1"}));
}

double Electrons(const Parameters& p) {
  return 4 - 2 * p.peroxide_share;
}

double Limit(const Parameters& p, double rpm) {
  return -Electrons(p) * kFaraday * p.area * p.bulk_oxygen * 1e-6 *
         LevichRate(p.diffusion_oxygen, p.viscosity, rpm);
}

// As the analysis of ring-disk curves has it.
double PercentWater(const Parameters& p, const Point& point) {
  const double disk = std::abs(point.amperes);
  const double ring = std::abs(point.ring) / p.collection;
  return 100 * (disk - ring) / (disk + ring);
}

// Long after a step to `volts`.
Point SteadyState(const Parameters& p, const std::string& volts, double rpm) {
  return Record(p, PotentialStep("+1230", volts, "001"), 40, 0.25, rpm).back();
}

TEST(OxygenCell, LimitingCurrentsAndTheShareOfWater) {
  for (const char* share : {"x=0", "x=0.05", "x=0.5", "x=1"}) {
    const Parameters p = Oxygen({share});
    for (const double rpm : {100.0, 400.0, 900.0, 1600.0, 2500.0}) {
      const Point point = SteadyState(p, "+0200", rpm);
      EXPECT_NEAR(point.amperes / Limit(p, rpm), 1.0, 1e-4) << share << ", " << rpm << " rpm";
      EXPECT_NEAR(PercentWater(p, point), 100 * (1 - p.peroxide_share), 1e-6) << share;
      EXPECT_GE(point.ring, 0.0);
    }
  }
}

TEST(OxygenCell, MixedControlFollowsKouteckyAndLevich) {
  const Parameters p = Oxygen();
  for (const char* volts : {"+0950", "+0900", "+0850", "+0800", "+0700"}) {
    for (const double rpm : {400.0, 1600.0}) {
      const Point point = SteadyState(p, volts, rpm);
      const double k = p.oxygen_rate * std::pow(10, -(point.volts - 0.9) / 0.068);
      const double kinetic = -Electrons(p) * kFaraday * p.area * p.bulk_oxygen * 1e-6 * k;
      EXPECT_NEAR((1 / point.amperes) / (1 / kinetic + 1 / Limit(p, rpm)), 1.0, 1e-4) << volts;
      EXPECT_NEAR(PercentWater(p, point), 95.0, 1e-6) << volts;
    }
  }
}

// With double layer, resistance and the ring's lag as the bench has them.
TEST(OxygenCell, SweepsShowTheShareOfWaterThereAndBack) {
  const Parameters p = With({"cell=oxygen", "rotor_gain=1", "noise=0", "mains=0"});
  for (const double rpm : {400.0, 2500.0}) {
    // 5 s at rest, 1.0 V to 0.2 V and back.
    const auto points =
        Record(p, CyclicSweep("+1000", "+0200", "+1000", "50E-3", "005"), 5 + 32, 0.1, rpm);
    double there = 0;
    double back = 0;
    for (const Point& point : points) {
      if (point.seconds > 5 && std::abs(point.volts - 0.5) < 3e-3) {
        (point.seconds < 5 + 16 ? there : back) = point.amperes;
      }
      if (point.amperes / Limit(p, rpm) < 0.8 || point.seconds < 6) continue;
      EXPECT_NEAR(PercentWater(p, point), 95.0, 0.1) << point.volts << " V, " << rpm << " rpm";
    }
    // Twice what the double layer takes, apart from the diffusion layer's own small delay.
    EXPECT_NEAR(back - there, 2 * 50e-6 * p.area * 0.05, 0.1e-6);
  }
}

TEST(OxygenCell, WithoutRotationItFollowsCottrellAndTheRingSeesNothing) {
  const Parameters p = Oxygen();
  const double unit = -Electrons(p) * kFaraday * p.area * p.bulk_oxygen * 1e-6 *
                      std::sqrt(p.diffusion_oxygen / std::numbers::pi);
  const auto lines = PotentialStep("+1230", "+0200", "001");
  for (const auto& [seconds, interval] : {std::pair{1.5, 1e-3}, {60.0, 0.5}}) {
    for (const Point& point : Record(p, lines, seconds, interval)) {
      const double t = point.seconds - 1.0;
      EXPECT_EQ(point.ring, 0.0);
      if (t < 0.0199) continue;
      ASSERT_NEAR(point.amperes * std::sqrt(t) / unit, 1.0, 1e-3) << t;
    }
  }
}

TEST(OxygenCell, BeginsAtRest) {
  Random random(1);
  const Parameters p = With({"cell=oxygen", "noise=0", "mains=0"});
  Plant plant(p, random);
  // A few nA of oxygen are reduced at the rest potential, after R_u C_dl; nothing overshoots.
  const double rest = Electrons(p) * kFaraday * p.area * p.bulk_oxygen * 1e-6 * p.oxygen_rate *
                      std::pow(10, -(p.rest_potential - 0.9) / 0.068);
  plant.AdvanceTo(2e-5);
  EXPECT_LT(std::abs(plant.DiskAmperes()), rest);
  for (const double t : {1e-3, 0.1, 1.0, 60.0}) {
    plant.AdvanceTo(t);
    EXPECT_NEAR(plant.DiskAmperes() / -rest, 1.0, 0.03) << t;
  }
}

TEST(OxygenCell, TheRingLosesNoChargeToItsLag) {
  const Parameters p = Oxygen({"ring_lag=50"});
  // From next to no current to the limit, within 2 s.
  const auto points =
      Record(p, CyclicSweep("+1230", "+0230", "+1230", "50E-2", "000"), 2.0, 1e-3, 1600);
  const double per_disk = p.collection * 2 * p.peroxide_share / Electrons(p);
  double behind = 0;
  for (const Point& point : points) behind += 1e-3 * (-per_disk * point.amperes - point.ring);
  EXPECT_NEAR(behind / points.back().ring, 0.05, 0.0005);
}

TEST(OxygenCell, PeroxideMayBeOxidisedAtTheDisk) {
  // All of it, while oxygen is still reduced: nothing reaches the ring, and its electrons return.
  const Parameters fast = Oxygen({"k_H2O2=1e6", "k_O2=1e6", "slope_O2=1000", "x=0.5"});
  const Point point = SteadyState(fast, "+1400", 900);
  EXPECT_NEAR(point.amperes / Limit(fast, 900), (3.0 - 1.0) / 3.0, 1e-3);
  EXPECT_NEAR(point.ring, 0.0, 1e-9);

  // Without rotation: 10 s of reduction, then the oxidation of what is still near the disk.
  const Parameters p = Oxygen({"k_H2O2=1", "x=1"});
  const double unit = 2 * kFaraday * p.area * p.bulk_oxygen * 1e-6 *
                      std::sqrt(p.diffusion_oxygen / std::numbers::pi);
  for (const Point& late : Record(p, PotentialStep("+0200", "+1600", "010"), 12, 5e-3)) {
    const double t = late.seconds - 10;
    if (t < 0.0199) continue;
    ASSERT_NEAR(late.amperes / unit, 1 / std::sqrt(t) - 1 / std::sqrt(t + 10), 2e-3 / std::sqrt(t))
        << t;
  }
}

}  // namespace
}  // namespace zento::sim
