// The double layer without a reaction, with the potentiostat around it, held against theory.

#include "sim/cell.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "sim/test_record.h"
#include "sim/test_support.h"

namespace zento::sim {
namespace {

// R_u of 1 kohm and 20 uF/cm2 on 0.2827 cm2: a time constant of 5.7 ms.
Parameters Blank() {
  return With({"cell=blank", "R_u=1000", "disk_range=1e-3", "noise=0", "mains=0"});
}

double Farads(const Parameters& p) {
  return p.capacitance * 1e-6 * p.area;
}

TEST(BlankCell, ARampChargesTheDoubleLayerAndTurnsWithIt) {
  const Parameters p = Blank();
  const double full = Farads(p) * 1.0;  // A, at 1 V/s
  const double tau = p.resistance * Farads(p);
  const std::vector<Point> points =
      Record(p, CyclicSweep("+0000", "+1000", "+0000", "001E+0", "000"), 2.0, 2e-4);
  double charge = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double t = points[i].seconds;
    charge += (t < 1.0 ? 1 : 0) * points[i].amperes * (t - points[i - 1].seconds);
    // The current turns from full to -full: twice the step of the first corner.
    const double expected =
        t < 1.0 ? full * -std::expm1(-t / tau) : full * (2 * std::exp(-(t - 1.0) / tau) - 1);
    const bool settled = t - std::floor(t) > 10 * tau;
    ASSERT_NEAR(points[i].amperes, expected, (settled ? 1e-4 : 0.03) * full) << t;
    ASSERT_EQ(points[i].ring, 0.0);
  }
  // What the resistance still drops at the end is not on the double layer yet.
  EXPECT_NEAR(charge / (full * (1 - tau)), 1, 1e-3);
}

TEST(BlankCell, AStepDecaysWithItsTimeConstant) {
  const Parameters p = Blank();
  const double tau = p.resistance * Farads(p);
  for (const Point& point : Record(p, PotentialStep("+0000", "+0500", "001"), 1.05, 1e-4)) {
    const double t = point.seconds - 1.0;
    if (t < 1e-3) continue;
    const double first = 0.5 / p.resistance;
    ASSERT_NEAR(point.amperes, first * std::exp(-t / tau), 0.02 * first) << t;
  }
}

TEST(BlankCell, WithoutResistanceTheCurrentFollowsAtOnce) {
  const auto cells = MakeCells(With({"cell=blank", "R_u=0"}), 0.1);
  EXPECT_NEAR(cells[0]->Step(1e-3, {0.1001, 0}).disk, 20e-6 * 0.2827 * 1e-4 / 1e-3, 1e-18);
  EXPECT_EQ(cells[0]->Step(1e-3, {0.1001, 0}).disk, 0.0);
}

}  // namespace
}  // namespace zento::sim
