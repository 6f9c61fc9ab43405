// Rotation-rate sweeps of the simulated bench, measured through the window and read back from the
// saved file, against the law of the rotating disk.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "core/track_file.h"
#include "measure/rpm_form.h"
#include "measure/test_bench.h"

namespace zento {
namespace {

// i = 0.62045 n F A C D^(2/3) nu^(-1/6) omega^(1/2) (Levich 1962, with the coefficient's digits).
double Levich(const sim::Parameters& p, double rpm) {
  const double omega = rpm * 2 * std::numbers::pi / 60;
  return 0.62045 * p.electrons * kFaraday * p.area * p.bulk_red * 1e-6 *
         std::pow(p.diffusion_red, 2.0 / 3) * std::pow(p.viscosity, -1.0 / 6) * std::sqrt(omega);
}

TEST(RotationSweepOnTheBench, CurrentFollowsTheRootOfTheRate) {
  for (const bool upwards : {true, false}) {
    const sim::Parameters p = Quiet();
    Laboratory lab(p);
    auto& sweep = *dynamic_cast<frmMeasureRPMvsj*>(lab.machine.desktop.Show("frmMeasureRPMvsj"));
    sweep.SelTrack(5);
    sweep.Potential(0.7);
    sweep.AppliedMeasuremode(2);
    sweep.SetRPMParameters(upwards ? 400 : 1600, upwards ? 1600 : 400, 4);
    sweep.RetainTime(10);
    sweep.SamplingRate(2);
    sweep.Accumlation(10);
    ASSERT_TRUE(sweep.chkRecordTime.UserSet("1").ok());
    sweep.StartMeasurement();
    ASSERT_TRUE(lab.RunUntilIdle());
    ASSERT_TRUE(SaveTracksAs(lab.ws, lab.machine.files, "sweep").ok());
    Workstation another_day;
    ASSERT_TRUE(OpenTracks(another_day, lab.machine.files, "sweep.znt").complete());
    EXPECT_EQ(another_day.tracks.Record(5), lab.ws.tracks.Record(5));

    const auto rpm = another_day.tracks.Points(0, 5);
    const auto amperes = another_day.tracks.Points(1, 5);
    const auto millis = another_day.tracks.Points(2, 5);
    // 300 s at 2 Hz.
    ASSERT_NEAR(static_cast<double>(rpm.size()), 601, 1);
    double worst = 0;
    for (std::size_t k = 0; k < rpm.size(); ++k) {
      // The motor follows 0.4 s late.
      const double course = upwards ? 400 + 0.004 * millis[k] : 1600 - 0.004 * millis[k];
      EXPECT_NEAR(rpm[k], course, 5) << millis[k];
      const double off = amperes[k] / Levich(p, rpm[k]) - 1;
      if (std::abs(off) > std::abs(worst)) worst = off;
    }
    EXPECT_LT(std::abs(worst), 2e-3);
    EXPECT_FALSE(lab.bench.plant().rotor().powered());
    EXPECT_FALSE(lab.bench.plant().potentiostat().generator().output_on());
  }
}

}  // namespace
}  // namespace zento
