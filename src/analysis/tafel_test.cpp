#include <gmock/gmock.h>
#include <cmath>

#include "analysis/analysis_test_rig.h"
#include "analysis/tafel.h"
#include "analysis/tafel_form.h"
#include "core/settings.h"
#include "core/track_store.h"
#include "text/status.h"

namespace zento {
namespace {

using ::testing::HasSubstr;

// 2.303 R T / F at 298.15 K, as the textbooks have it.
constexpr double kDecade = 0.05916;

struct Curve {
  Values volts, amperes;
};

// i0 10^(slope (E - 0.3)) between two potentials.
Curve Exponential(double i0, double slope, double from, double to) {
  Curve curve;
  for (int k = 0; k <= 20; ++k) {
    const double volts = from + (to - from) * k / 20;
    curve.volts.push_back(volts);
    curve.amperes.push_back(i0 * std::pow(10.0, slope * (volts - 0.3)));
  }
  return curve;
}

TEST(Tafel, FindsTransferAndExchangeCurrentOnBothBranches) {
  for (const double sign : {1.0, -1.0}) {
    SCOPED_TRACE(sign);
    // (1 - alpha) n = 0.6, or alpha n = 0.6: 98.6 mV a decade.
    Curve curve =
        Exponential(sign * 2e-6, sign * 0.6 / kDecade, 0.3 + sign * 0.15, 0.3 + sign * 0.25);
    // Without current: no place in the plot.
    curve.volts.push_back(0.3 + sign * 0.3);
    curve.amperes.push_back(0);
    const auto fit = FitTafel(curve.volts, curve.amperes, 0.3, 0.2);
    ASSERT_TRUE(fit.ok()) << fit.why();
    EXPECT_EQ(fit->branch, sign > 0 ? TafelBranch::kAnodic : TafelBranch::kCathodic);
    EXPECT_FALSE(fit->unusual_sign);
    EXPECT_NEAR(fit->alpha_n, 0.6, 2e-5);
    EXPECT_NEAR(fit->log_i0, std::log10(2e-6), 1e-9);
    EXPECT_NEAR(fit->i0_density, 1e-5, 1e-12);
    EXPECT_NEAR(fit->overpotential.front(), sign * 0.15, 1e-12);
    EXPECT_EQ(fit->overpotential.size(), 21u);
    EXPECT_EQ(fit->left_out, 1u);

    // A potentiostat that counts cathodic currents positive changes the numbers not at all.
    for (double& i : curve.amperes) i = -i;
    const auto other = FitTafel(curve.volts, curve.amperes, 0.3, 0.2);
    EXPECT_EQ(other->alpha_n, fit->alpha_n);
    EXPECT_EQ(other->branch, fit->branch);
    EXPECT_TRUE(other->unusual_sign);
  }
}

TEST(Tafel, PropagatesTheLinesErrors) {
  // log10|i| = -4.001, -3.9, -3.999: mean eta 0.1, spread 0.02, and the residuals of a level line,
  // tilted by a hundredth.
  const Values amperes{std::pow(10, -4.001), std::pow(10, -3.9), std::pow(10, -3.999)};
  const auto fit = FitTafel(Values{0, 0.1, 0.2}, amperes, 0, 0.5);
  ASSERT_TRUE(fit.ok());
  const double residuals = 0.1 * 0.1 * 2 / 3;
  const double intercept_error = std::sqrt(residuals * (1.0 / 3 + 0.01 / 0.02));
  EXPECT_NEAR(fit->quality.line.slope, 0.01, 1e-9);
  EXPECT_NEAR(*fit->alpha_n_error, std::sqrt(residuals / 0.02) * kDecade, 1e-6);
  EXPECT_NEAR(*fit->log_i0_error, intercept_error, 1e-9);
  EXPECT_NEAR(*fit->i0_density_error / fit->i0_density, std::log(10.0) * intercept_error, 1e-9);
}

TEST(Tafel, RefusesPointsWithoutALine) {
  const auto why = [](const Values& volts, const Values& amperes) {
    return FitTafel(volts, amperes, 0.3, 1).why();
  };
  EXPECT_THAT(why({0.1, 0.2, 0.3}, {-1e-6, 1e-6, 2e-6}), HasSubstr("2 positive, 1 negative"));
  EXPECT_THAT(why({0.1, 0.2}, {1e-6, 0}), HasSubstr("two points"));
  EXPECT_THAT(why({0.1, 0.1}, {1e-6, 2e-6}), HasSubstr("two points"));
  EXPECT_THAT(why({}, {}), HasSubstr("two points"));
  EXPECT_THAT(why({0.1, 0.2}, {1e-6, 1e-6}), HasSubstr("does not change"));
  EXPECT_THAT(why({100.1, 100.2}, {1e-9, 1}), HasSubstr("redox potential"));
  EXPECT_FALSE(FitTafel(Values{0.1, 0.2}, Values{1e-6, 2e-6}, 0.3, 1)->alpha_n_error);
}

// Track 3 holds a rising sweep through 0.25 V: i = i0 (10^(10 eta) - 10^(-10 eta)), i0 = 1 uA.
struct TafelForm : AnalysisTest {
  TafelForm() {
    ws.FileTitle = "slow.znt";
    ws.shown_track = 3;
    Values x, y;
    for (int i = 0; i <= 100; ++i) {
      const double eta = (i - 50) * 0.01;
      x.push_back(eta + 0.25);
      y.push_back(1e-6 * (std::pow(10, 10 * eta) - std::pow(10, -10 * eta)));
    }
    Fill(3, kModeCV, x, y).Area = 0.07;
    ws.settings.TaEred = 0.25;
    ws.settings.TaArea = 0.2;
  }
  void Choose(frmTafelAnalyzer& form, const char* start, const char* end) {
    EXPECT_TRUE(form.range.txtStart.UserSet(start).ok());
    EXPECT_TRUE(form.range.txtEnd.UserSet(end).ok());
  }
  const Graph* Plot() { return machine.desktop.FindAs<Graph>(frmTafelAnalyzer::kGraphName); }
};

TEST_F(TafelForm, OpensOnTheTrackThatTheMainWindowShowsAndKeepsSettings) {
  auto& form = Open<frmTafelAnalyzer>();
  EXPECT_EQ(form.lblMode.text() + "|" + form.txtTitle.text() + "|" + form.lblpnum.text(),
            "CV|track 3|101");
  EXPECT_EQ(form.range.lblStartPoint.text(), "E:-0.2500V   I:-1.0000e-1A");
  EXPECT_EQ(form.range.txtEnd.text(), "100");
  EXPECT_EQ(form.txtRedoxPotential.text() + "|" + form.txtArea.text(), "0.25|0.2");
  EXPECT_TRUE(form.txtRedoxPotential.UserSet(" 0.3 V").ok());
  EXPECT_EQ(ws.settings.TaEred, 0.3);
  EXPECT_EQ(form.txtRedoxPotential.text(), "0.3");
  for (const char* area : {"0", "-2"}) {
    EXPECT_TRUE(form.txtArea.UserSet(area).ok());
    EXPECT_EQ(ws.settings.TaArea, 1);
    EXPECT_EQ(form.txtArea.text(), "1");
  }
  // Its plot is made with it and goes with it.
  ASSERT_NE(Plot(), nullptr);
  EXPECT_FALSE(machine.desktop.Shown(frmTafelAnalyzer::kGraphName));
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  EXPECT_EQ(form.lblpnum.text() + form.range.txtEnd.text(), "0");
  machine.desktop.Unload("frmTafelAnalyzer");
  machine.Settle();
  EXPECT_EQ(Plot(), nullptr);
}

TEST_F(TafelForm, ReportsTheLineAndDrawsIt) {
  auto& form = Open<frmTafelAnalyzer>();
  Choose(form, "78", "80");  // eta 0.28 to 0.3 V, anodic
  EXPECT_TRUE(form.cmdCalc.UserClick().ok());
  EXPECT_EQ(form.report(),
            "File\tslow.znt\r\nTrack\t3\r\nTitle\ttrack 3\r\nEred/V\t0.25\r\n"
            "Area /cm2\t0.2\r\nNstart\t78\r\nNend\t80\r\nBranch\tanodic\r\nlogi0\t-6.0000\r\n"
            "α*ne:\t0.5916\r\ni0 /Acm-2\t5.000e-6\r\n"
            "η/V\ti /A\tlog|i|\r\n0.2800\t6.3096e-4\t-3.2000\r\n0.2900\t7.9433e-4\t-3.1000\r\n"
            "0.3000\t1.0000e-3\t-3.0000\r\n");
  EXPECT_THAT(form.lblFit.text(), HasSubstr("alpha_n 0.59159"));
  EXPECT_THAT(form.lblNote.text(), HasSubstr("Anodic"));
  EXPECT_EQ(Found(form, "branch").value, 1);
  EXPECT_EQ(ws.tracks.Record(3).Area, 0.2);
  EXPECT_EQ(Plot()->caption(), "Tafel Plot");
  EXPECT_TRUE(machine.desktop.Shown(frmTafelAnalyzer::kGraphName));
  // Down to the line's beginning at eta = 0; up to -3, where the range begins; 10 % around.
  const WorldWindow& world = Plot()->Picture1.world();
  EXPECT_NEAR(world.x1, -0.14, 1e-9);
  EXPECT_NEAR(world.x2, 0.34, 1e-9);
  EXPECT_NEAR(world.y1, -2.7, 1e-3);
  EXPECT_NEAR(world.y2, -6.3, 1e-3);

  Choose(form, "20", "22");  // the same on the other side
  form.Calculate();
  EXPECT_THAT(form.report(), HasSubstr("Branch\tcathodic\r\nlogi0\t-6.0000\r\nα*ne:\t0.5916\r\n"));
  ws.tracks.Record(3).pnum = 22;  // of the points that are left
  form.Calculate();
  EXPECT_THAT(form.report(), HasSubstr("Nend\t21\r\n"));
}

TEST_F(TafelForm, WithoutALineTheResultIsEmptyAndTheAreaIsWritten) {
  auto& form = Open<frmTafelAnalyzer>();
  const auto refused = [&] {
    form.Calculate();
    EXPECT_EQ(form.report() + form.lblFit.text(), "");
    EXPECT_EQ(Messages(), std::vector{form.result().refusal});
    return form.result().refusal;
  };
  Choose(form, "78", "80");
  form.Calculate();
  ws.tracks.Record(3).Area = 0.07;
  Choose(form, "0", "99");                                        // both branches
  EXPECT_THAT(refused(), HasSubstr("49 positive, 50 negative"));  // one without
  EXPECT_EQ(ws.tracks.Record(3).Area, 0.2);
  Choose(form, "80", "20");
  EXPECT_THAT(refused(), HasSubstr("ends before it starts"));
  // A time or a rotation rate is no potential, though a line could be drawn.
  Choose(form, "78", "80");
  for (const auto& [mode, name] : {std::pair{kModePS, "PS"}, {kModeRPMvsj, "RPMvs.j"}}) {
    ws.tracks.Record(3).Mode = mode;
    EXPECT_THAT(refused(), HasSubstr(std::string("a ") + name + " track has none"));
  }
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  EXPECT_EQ(refused(), "Track 4 is empty.");
}

}  // namespace
}  // namespace zento
