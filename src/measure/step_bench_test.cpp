// Transients of the simulated bench, measured through the window, against the square-root law. When
// the step really happened is asked of the bench's generator, and when each current was really read
// of the board: the track's own time axis is held against both.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "measure/step_form.h"
#include "measure/test_bench.h"
#include "text/number.h"

namespace zento {
namespace {

// i = n F A C sqrt(D / (pi t)) (Cottrell 1903).
double Cottrell(const sim::Parameters& p, double seconds) {
  return p.electrons * kFaraday * p.area * p.bulk_red * 1e-6 *
         std::sqrt(p.diffusion_red / (std::numbers::pi * seconds));
}

struct Sampling {
  const char* rate;
  const char* accumulation;
  int mode;  // 0 constant, 1 variable
};

TEST(StepOnTheBench, CurrentFollowsTheSquareRootLaw) {
  for (const Sampling& sampling : {Sampling{"100", "1", 0}, Sampling{"500", "1", 1},
                                   Sampling{"7", "1", 0}, Sampling{"20", "400", 0}}) {
    SCOPED_TRACE(std::string(sampling.rate) + " Hz, " + sampling.accumulation + " readings");
    const sim::Parameters p = Quiet();
    Laboratory lab(p);
    auto& step = lab.Open<frmPotentialStep>("frmPotentialStep");
    step.SelTrack(5);
    step.SetVoltage(-0.2, 0.7);
    step.RetainTime(3);
    step.MeasureTime(10);
    ASSERT_TRUE(step.txtInitSamplingRate.UserSet(sampling.rate).ok());
    ASSERT_TRUE(step.txtAccum.UserSet(sampling.accumulation).ok());
    ASSERT_TRUE(step.opnSamplingMode.UserChoose(sampling.mode).ok());
    ASSERT_TRUE(step.cmdStart.UserClick().ok());
    const sim::Plant& plant = lab.bench.plant();
    const double stepped = plant.time() + plant.potentiostat().UntilCorner();
    ASSERT_TRUE(lab.RunUntilIdle());

    const auto points = static_cast<std::size_t>(lab.ws.tracks.Record(5).pnum);
    const auto rounds = static_cast<std::size_t>(std::stoi(sampling.accumulation));
    ASSERT_GT(points, 20u);
    ASSERT_GE(lab.current_read.size(), points * rounds);
    const std::size_t first_read = lab.current_read.size() - points * rounds;
    double least_delay = 1e9;
    double most_delay = 0;
    for (std::size_t k = 0; k < points; ++k) {
      const double began = lab.current_read[first_read + k * rounds];
      const double ended = lab.current_read[first_read + (k + 1) * rounds - 1];
      const double since_step = (began + ended) / 2 - stepped;
      if (since_step > 0.05) {
        const double expected = Cottrell(p, since_step);
        EXPECT_NEAR(lab.ws.tracks.Value(1, 5, static_cast<int>(k)) / expected, 1, 2e-3)
            << since_step;
      }
      if (k == 0) continue;
      const double delay = began - stepped - lab.ws.tracks.Value(0, 5, static_cast<int>(k));
      least_delay = std::min(least_delay, delay);
      most_delay = std::max(most_delay, delay);
    }
    // Time 0 comes after the real step by the wait for the next tick and its readings; from there
    // on the axis runs true to the millisecond of the tick count.
    const double readings = 2 * static_cast<double>(rounds) * 25e-6;
    EXPECT_GT(least_delay, 0);
    EXPECT_LT(most_delay, 1 / ParseLenient(sampling.rate) + readings + 2e-3);
    EXPECT_LT(most_delay - least_delay, 1.01e-3);
  }
}

// The charge of the diffusion-limited transient is 2 n F A C sqrt(D t / pi).
TEST(StepOnTheBench, EndsByChargeWhenTheLawSays) {
  const sim::Parameters p = Quiet();
  Laboratory lab(p);
  auto& step = lab.Open<frmPotentialStep>("frmPotentialStep");
  step.SelTrack(5);
  step.SetVoltage(-0.2, 0.7);
  step.RetainTime(1);
  step.InitSamplingRate(500);
  step.Accumlation(1);
  step.CoulombNumber(5e-4);
  step.MeasMode(2);
  lab.Measure(step.cmdStart);
  const double end = lab.ReadBack(0).back();
  // What flowed before the first point, where the board is at its limit too, is not in the charge.
  const double charge = 2 * Cottrell(p, 1) * (std::sqrt(end) - std::sqrt(0.006));
  EXPECT_NEAR(charge / 5e-4, 1, 0.05);
}

}  // namespace
}  // namespace zento
