// The Cottrell and the charge window and what they calculate.

#include <cmath>

#include "analysis/analysis_test_rig.h"
#include "analysis/cottrell_form.h"
#include "analysis/coulomb_form.h"

namespace zento {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pointwise;
using ::testing::StartsWith;

// Of exp on [0, 1] in `steps` steps, each second one `ratio` times as long.
double ExpError(IntegrationRule rule, int steps, double ratio) {
  Values x{0};
  for (int p = 0; p < steps; ++p) x.push_back(x.back() + (p % 2 == 0 ? 1 : ratio));
  const double end = x.back();
  Values y;
  for (double& value : x) {
    value /= end;
    y.push_back(std::exp(value));
  }
  return RunningIntegral(rule, StepTimes(kModePS, x, 0), y).back() - (std::exp(1.0) - 1);
}

TEST(RunningIntegral, SimpsonAgreesWithTheTrapezoidToItsOrder) {
  // Halving the steps leaves a quarter of the trapezoid's error, a sixteenth of Simpson's, and an
  // eighth of Simpson's on uneven steps.
  const auto gain = [](IntegrationRule rule, double ratio) {
    return ExpError(rule, 40, ratio) / ExpError(rule, 80, ratio);
  };
  EXPECT_NEAR(gain(IntegrationRule::kTrapezoid, 1.5), 4, 0.01);
  EXPECT_NEAR(gain(IntegrationRule::kSimpson, 1), 16, 0.1);
  EXPECT_NEAR(gain(IntegrationRule::kSimpson, 1.5), 8, 0.1);
  // With a single step left over.
  EXPECT_LT(std::abs(ExpError(IntegrationRule::kSimpson, 41, 1)), 2e-6);
  EXPECT_GT(std::abs(ExpError(IntegrationRule::kTrapezoid, 41, 1)), 5e-5);
}

TEST(RunningIntegral, SimpsonIsExactForParabolasAtEveryPoint) {
  const Values x{0, 1, 2.5, 3, 4, 4.5};
  Values y;
  Values exact;
  for (const double v : x) {
    y.push_back(3 * v * v - 2 * v + 1);
    exact.push_back(v * v * v - v * v + v);
  }
  EXPECT_THAT(RunningIntegral(IntegrationRule::kSimpson, StepTimes(kModePS, x, 0), y),
              Pointwise(DoubleNear(1e-12), exact));
}

TEST(RunningIntegral, RepeatedPointsAndShortRangesAreHarmless) {
  const Values y{1, 2, 5, 5, 1};
  const Values steps{1, 0, 0, 1};
  for (const auto rule : {IntegrationRule::kTrapezoid, IntegrationRule::kSimpson}) {
    EXPECT_THAT(RunningIntegral(rule, steps, y), ElementsAre(0, 1.5, 1.5, 1.5, 4.5));
    EXPECT_THAT(RunningIntegral(rule, std::span(steps).first(1), std::span(y).first(2)),
                ElementsAre(0, 1.5));
    EXPECT_THAT(RunningIntegral(rule, {}, std::span(y).first(1)), ElementsAre(0));
  }
}

struct Charges : AnalysisTest {
  Charges() { ws.FileTitle = "a.znt"; }
  frmCottrellEquation& Cottrell() { return Open<frmCottrellEquation>(); }
  frmCoulombCalculator& Coulomb() { return Open<frmCoulombCalculator>(); }
  void Fill(int track, std::int32_t mode, const Values& x, const Values& y) {
    TrackRecord& record = AnalysisTest::Fill(track, mode, x, y);
    record.Title = "Pt";
    record.MeasTime = "2026/01/01 9:00:00";
    record.Scanrate = 50;
    record.ne = 2;
    record.Conc = 1e-6;
    record.Area = 0.25;
    ws.shown_track = track;
  }
  // i = a / sqrt(t) + b.
  void FillStep(int track, double a, double b) {
    Values t{0};
    Values i{5};
    for (int k = 1; k <= 20; ++k) {
      t.push_back(0.1 * k);
      i.push_back(a / std::sqrt(0.1 * k) + b);
    }
    i[4] = 0;
    Fill(track, kModePS, t, i);
  }
};

TEST_F(Charges, CottrellFindsTheDiffusionCoefficient) {
  const double d = 7e-6;
  const double a = 2 * 96485 * 0.25 * 1e-6 * std::sqrt(d / 3.1415926535898);
  FillStep(4, a, 0);
  auto& form = Cottrell();
  form.Calculate();
  ASSERT_FALSE(form.report().empty());
  EXPECT_NEAR(form.result().quantities[0].value, d, 1e-18);
  // Neither time 0 nor the point without current.
  EXPECT_EQ(form.result().columns[0].values.size(), 19u);
  EXPECT_THAT(form.report(),
              StartsWith("title:\tPt\r\ntime:\t2026/01/01 9:00:00\r\nne \t 2\r\n"
                         "Area /cm2\t0.25\r\nC /molcm-3\t1.0e-6\r\nDapp /cm2s-1\t7.0e-6\r\n"
                         "1/sqrt(t)\ti/A\r\n3.1623\t2.277e-4\r\n"));
  // Twice the current, and an offset that only the line with an intercept takes out.
  FillStep(4, 2 * a, 1e-5);
  EXPECT_TRUE(form.txtDataNum.UserSet("5").ok());
  EXPECT_TRUE(form.txtDataNum.UserSet("4").ok());
  EXPECT_TRUE(form.opnCalcMode.UserChoose(1).ok());
  form.Calculate();
  EXPECT_NEAR(form.result().quantities[0].value, 4 * d, 1e-12);
  EXPECT_NEAR(form.result().fit->line.intercept, 1e-5, 1e-15);
  EXPECT_THAT(form.lblFit.text(), HasSubstr("Dapp "));
}

// Worked by hand: 1/sqrt(t) = 1, 2 against 2 and 4.2 A. Through the origin the slope is
// (2 + 8.4) / 5 = 2.08, the residuals -0.08 and 0.04, so the slope's error
// sqrt((0.0064 + 0.0016) / (2 - 1) / 5) = 0.04; D goes with the slope's square.
TEST_F(Charges, CottrellsErrorIsTwiceThatOfTheSlope) {
  Fill(0, kModePS, {0.25, 1}, {4.2, 2});
  auto& form = Cottrell();
  form.Calculate();
  Quantity d = Found(form, "Dapp");
  EXPECT_NEAR(form.result().fit->line.slope, 2.08, 1e-12);
  ASSERT_TRUE(d.error);
  EXPECT_NEAR(*d.error / d.value, 2 * 0.04 / 2.08, 1e-12);
  // With an intercept: 1, 2, 4 against 2, 4.2 and 7.
  Fill(1, kModePS, {0.0625, 0.25, 1}, {7, 4.2, 2});
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  EXPECT_TRUE(form.opnCalcMode.UserChoose(1).ok());
  form.Calculate();
  d = Found(form, "Dapp");
  ASSERT_TRUE(d.error);
  const double slope_error = BruteForceErrors({4, 2, 1}, {7, 4.2, 2}, false).slope;
  EXPECT_NEAR(*d.error / d.value, 2 * slope_error / form.result().fit->line.slope, 1e-9);
}

TEST_F(Charges, CottrellCalculatesWithTheTrackAsItIs) {
  FillStep(0, 1e-4, 0);
  auto& form = Cottrell();
  EXPECT_TRUE(form.opnCalcMode.UserChoose(1).ok());
  EXPECT_TRUE(form.range.txtStart.UserSet("6").ok());
  FillStep(0, 3e-4, 0);  // measured anew while the window is open
  form.Calculate();
  EXPECT_NEAR(form.result().fit->line.slope, 3e-4, 1e-12);
  // Taking an entry back, or opening a file, shows the track's own value and keeps the range.
  EXPECT_TRUE(form.txtne.UserSet("3").ok());
  ws.tracks.Record(0).ne = 2;
  ++ws.DataGeneration;
  form.Activate();
  EXPECT_EQ(form.txtne.text(), "2");
  EXPECT_EQ(form.range.txtStart.text(), "6");
  Fill(0, kModePS, {0.1, 0.2, 0.3}, {3, 2, 1});
  ++ws.DataGeneration;
  form.Activate();
  EXPECT_EQ(form.range.txtStart.text() + " " + form.range.txtEnd.text(), "0 2");
  EXPECT_TRUE(form.txtConc.UserSet("1e-200").ok());
  EXPECT_TRUE(form.txtArea.UserSet("1e-200").ok());
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre(HasSubstr("too small")));
}

TEST_F(Charges, CottrellChangesTheTrackInPlace) {
  FillStep(0, 1e-4, 0);
  auto& form = Cottrell();
  EXPECT_EQ(form.range.txtEnd.text(), "20");
  EXPECT_TRUE(form.range.txtEnd.read_only);
  EXPECT_TRUE(form.txtne.UserSet("3").ok());
  EXPECT_TRUE(form.txtConc.UserSet("2e-6 M").ok());
  EXPECT_TRUE(form.txtArea.UserSet("0").ok());
  EXPECT_TRUE(form.txtTitle.UserSet("Au").ok());
  const TrackRecord& record = ws.tracks.Record(0);
  EXPECT_THAT((std::vector{record.ne, record.Conc, record.Area}), ElementsAre(3, 2e-6, 0));
  EXPECT_EQ(record.Title, "Au");
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("The parameters (ne, Conc., and Area) must be above zero."));
  EXPECT_TRUE(form.txtArea.UserSet("0.1").ok());
  for (int i = 0; i < 30; ++i) EXPECT_TRUE(form.range.updEnd.UserStep(-1).ok());
  EXPECT_EQ(form.range.txtEnd.text(), "1");
  EXPECT_TRUE(form.opnCalcMode.UserChoose(1).ok());
  form.Calculate();  // one usable point
  EXPECT_THAT(Messages(), ElementsAre(StartsWith("The points give no line")));

  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());  // an empty track
  EXPECT_EQ(form.txtne.text() + form.txtArea.text() + form.lblMode.text(), "");
  EXPECT_TRUE(form.txtConc.UserSet("7").ok());
  EXPECT_EQ(ws.tracks.Record(1).Conc, 0);
  Fill(1, kModeCV, {0, 1}, {1, 2});
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
  form.Calculate();  // nothing to calculate in a voltammogram
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(Charges, ASweepIsIntegratedOverTimeAroundItsTurningPoint) {
  // 50 mV/s: 2 s a step; the current changes its sign with the direction.
  Fill(3, kModeCV, {0, 0.1, 0.2, 0.1, 0}, {1e-3, 1e-3, 1e-3, -2e-3, -2e-3});
  auto& form = Coulomb();
  form.Calculate();
  EXPECT_EQ(form.report(),
            "FileName:\ta.znt\r\nTrack:\t 3\r\nTitle:\tPt\r\nNstart:\t0\r\nNend:\t4\r\n\r\n"
            "Coulomb:\t-1.000e-3\r\nE /V\ti /A\tCoulomb\r\n"
            "0.0000\t1.000e-3\t0.000e+0\r\n0.1000\t1.000e-3\t2.000e-3\r\n"
            "0.2000\t1.000e-3\t4.000e-3\r\n0.1000\t-2.000e-3\t3.000e-3\r\n"
            "0.0000\t-2.000e-3\t-1.000e-3\r\n");
  // A line between ends of one potential is none.
  EXPECT_TRUE(form.opnBaseLine.UserChoose(1).ok());
  form.Calculate();
  EXPECT_NEAR(form.result().quantities[0].value, -1e-3, 1e-15);
  EXPECT_THAT(form.lblNote.text(), StartsWith("No base line"));
  // Of the way there alone the line takes everything.
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(form.range.updEnd.UserStep(-1).ok());
  form.Calculate();
  EXPECT_NEAR(form.result().quantities[0].value, 0, 1e-15);
  EXPECT_EQ(form.lblNote.text(), "");
  ws.tracks.SetValue(1, 3, 0, 0.5e-3);  // 3.5 mC, of which 3 lie below the line
  form.Calculate();
  EXPECT_NEAR(form.result().quantities[0].value, 0.5e-3, 1e-15);
  EXPECT_NEAR(form.result().quantities[1].value, 3e-3, 1e-15);
  ws.tracks.SetValue(1, 3, 0, 1e-3);
  EXPECT_TRUE(form.opnBaseLine.UserChoose(2).ok());
  EXPECT_TRUE(form.txtBaseValue.UserSet("2.5e-4").ok());
  form.Calculate();
  EXPECT_NEAR(form.result().quantities[0].value, 3e-3, 1e-15);
  EXPECT_NEAR(form.result().quantities[1].value, 1e-3, 1e-15);
  EXPECT_THAT(form.report(), HasSubstr("Nend:\t2\r\nBaseValue\t .00025\r\nCoulomb:\t3.000e-3\r\n"));
}

TEST_F(Charges, AStepHasNoBaseLine) {
  Fill(0, kModePS, {0, 1, 2}, {1, 1, 1});
  auto& form = Coulomb();
  EXPECT_TRUE(form.opnBaseLine.UserChoose(2).ok());
  EXPECT_TRUE(form.txtBaseValue.UserSet("1").ok());
  EXPECT_TRUE(form.opnMethod.UserChoose(1).ok());
  form.Calculate();
  EXPECT_NEAR(form.result().quantities[0].value, 2, 1e-15);
  EXPECT_THAT(form.report(), HasSubstr("t /s\ti /A\tCoulomb\r\n"));
  EXPECT_THAT(form.lblNote.text(), StartsWith("No base line"));
  // From a point to itself.
  EXPECT_TRUE(form.range.txtEnd.UserSet("0").ok());
  form.Calculate();
  EXPECT_THAT(form.report(), HasSubstr("Nend:\t0\r\nBaseValue\t 1\r\nCoulomb:\t0.000e+0\r\n"));
  EXPECT_EQ(form.lblNote.text(), "A single point has no charge.");
}

TEST_F(Charges, WhatHasNoChargeIsSaid) {
  auto& form = Coulomb();
  form.Calculate();
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_EQ(form.report(), "");
  Fill(0, kModePS, {0, 1, 2}, {1, 1, 1});  // measured while the window shows an empty slot
  form.Calculate();
  EXPECT_THAT(form.report(), HasSubstr("Nend:\t2\r\n"));
  const auto refused = [&] {
    EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
    EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
    form.Calculate();
    const auto messages = Messages();
    return messages.size() == 1 ? messages.front() : std::string();
  };
  for (const auto& [mode, name] :
       {std::pair{kModeRPMvsj, "RPMvs.j"}, {kModeMulti, "Multi"}, {kModeSSVAll, "SSVAll"}}) {
    Fill(0, mode, {0, 400}, {1, 2});
    EXPECT_EQ(refused(), name + std::string(" tracks cannot be integrated."));
  }
  Fill(0, kModeCV, {0, 0.1, 0.2, 0.3}, {1, 2, 3, 4});
  ws.tracks.Record(0).Scanrate = 0;
  EXPECT_THAT(refused(), HasSubstr("no scan rate"));
  ws.tracks.Record(0).Scanrate = 50;
  EXPECT_EQ(refused(), "");
  EXPECT_TRUE(form.range.txtStart.UserSet("2").ok());
  EXPECT_TRUE(form.range.txtEnd.UserSet("1").ok());
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("The range ends before it starts."));
  EXPECT_TRUE(form.range.txtEnd.UserSet("2").ok());
  ws.tracks.Record(0).pnum = 2;  // became shorter meanwhile
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("The track has no points in this range."));
}

}  // namespace
}  // namespace zento
