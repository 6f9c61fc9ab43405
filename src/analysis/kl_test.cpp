#include "analysis/kl_form.h"

#include <cmath>

#include "analysis/analysis_test_rig.h"
#include "core/settings.h"
#include "text/number.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr double kArea = 0.2;
constexpr LevichQuantities kTruth{3.9, 0.0102, 1.9e-5, 1.2e-6};
constexpr double kKinetic = 0.02;  // A/cm2

double LevichB() {
  return 1.554 * 96485 * kTruth.electrons * std::pow(kTruth.diffusion, 2.0 / 3) *
         std::pow(kTruth.viscosity, -1.0 / 6) * kTruth.concentration;
}

// What flows, in A, at a rotation rate.
double Mixed(double rpm) {
  return kArea / (1 / kKinetic + 1 / (LevichB() * std::sqrt(rpm / 60)));
}

struct KouteckyLevich : AnalysisTest {
  KouteckyLevich() {
    Settings& s = ws.settings;
    s.KLVuse = 0.1;
    s.KLVrange = -0.02;  // its size counts
    s.KLElectrodeArea = kArea;
    s.KLne = kTruth.electrons;
    s.KLViscosity = kTruth.viscosity;
    s.KLDm = kTruth.diffusion;
    s.KLConc = kTruth.concentration;
    s.KLMethod = 0;
    s.KLVariable = 0;
  }
  // A sweep from 0 to 0.2 V in steps of 10 mV; only from 80 to 120 mV the current is
  // `current`, elsewhere it is absurd.
  void FillSweep(int track, double rpm, double current, std::int32_t mode = kModeRDE) {
    Values x, y;
    for (int i = 0; i < 21; ++i) {
      x.push_back(i / 100.0);
      y.push_back(i >= 8 && i <= 12 ? current : 7.0);
    }
    Fill(track, mode, x, y).RPM = rpm;
  }
  void UseFour() {
    int track = 2;
    for (const double rpm : {400.0, 900.0, 1600.0, 2500.0}) {
      FillSweep(track, rpm, -Mixed(rpm));
      ws.tracks.kl.KLUseFlag[static_cast<std::size_t>(track++)] = 1;
    }
    ws.shown_track = 2;
  }
  void FillRateSweep(int track) {
    Values currents;
    for (const double rpm : {0, 400, 900, 1600, 2500}) {
      currents.push_back(rpm > 0 ? Mixed(rpm) : 1e-4);
    }
    Fill(track, kModeRPMvsj, {0, 400, 900, 1600, 2500}, currents).V = {-0.35, 0, 0};
    ws.shown_track = track;
  }
  frmKoutecky_Levich& Window() { return Open<frmKoutecky_Levich>(); }
};

TEST(LevichNumerics, EachQuantityIsSolvedFromBothSlopes) {
  const double b = LevichB();
  for (const LevichUnknown unknown : {LevichUnknown::kElectrons, LevichUnknown::kViscosity,
                                      LevichUnknown::kDiffusion, LevichUnknown::kConcentration}) {
    LevichQuantities truth = kTruth;
    LevichQuantities known = kTruth;
    known.Of(unknown) = -1;  // does not count
    const auto kl = SolveLevich(LevichMethod::kKouteckyLevich, unknown, known, 1 / b);
    const auto levich = SolveLevich(LevichMethod::kLevich, unknown, known, b);
    ASSERT_TRUE(kl && levich);
    EXPECT_NEAR(*kl / truth.Of(unknown), 1, 1e-12);
    EXPECT_NEAR(*levich / truth.Of(unknown), 1, 1e-12);
    // The quoted error is what a slightly other slope gives.
    const auto off = SolveLevich(LevichMethod::kLevich, unknown, known, b * (1 + 1e-6));
    EXPECT_NEAR(std::abs(*off / *levich - 1), 1e-6 * LevichErrorFactor(unknown), 1e-10);
  }
  for (const double slope : {0.0, -1.0, std::nan("")}) {
    EXPECT_FALSE(
        SolveLevich(LevichMethod::kKouteckyLevich, LevichUnknown::kViscosity, kTruth, slope));
  }
  LevichQuantities unknown_d = kTruth;
  unknown_d.diffusion = 0;
  EXPECT_FALSE(SolveLevich(LevichMethod::kLevich, LevichUnknown::kElectrons, unknown_d, b));
}

TEST_F(KouteckyLevich, SeveralTracksGiveElectronsAndKineticCurrent) {
  UseFour();
  ws.FileTitle = "rates.znt";
  auto& form = Window();
  EXPECT_TRUE(form.cmdKLCalc.UserClick().ok());
  EXPECT_NEAR(Found(form, "n").value, 3.9, 1e-9);
  EXPECT_NEAR(Found(form, "jk").value, kKinetic, 1e-9);
  EXPECT_EQ(form.report(),
            "File\trates.znt\r\nArea /cm2\t0.2\r\nν /cm2s-1\t0.0102\r\nDm /cm2s-1\t1.90e-05\r\n"
            "Conc /molcm-3\t1.20e-06\r\nPotential/V\t0.100\r\n*n\t3.90\r\njk /Acm-2\t2.000e-02\r\n"
            "1/sqr(Hz)\tj-1 /cm2A-1 \r\n0.3873\t4.1098e+2\r\n0.2582\t2.9066e+2\r\n"
            "0.1936\t2.3049e+2\r\n0.1549\t1.9439e+2\r\n");
  EXPECT_TRUE(machine.desktop.Shown("KLGraph"));
  EXPECT_THAT(form.lblFit.text(), StartsWith("4 points, R² 1\nslope "));
}

// Noisy currents, so that there is something to tell errors from; what the errors are follows from
// the points that the window itself lists.
TEST_F(KouteckyLevich, StandardErrorsAreThoseOfTheScatter) {
  UseFour();
  for (int track = 2; track < 6; ++track) {
    for (double& i : ws.tracks.Column(1, track)) i *= track % 2 == 0 ? 1.01 : 0.98;
  }
  auto& form = Window();
  for (const int method : {0, 1}) {
    for (int unknown = 0; unknown < 4; ++unknown) {
      SCOPED_TRACE(PlainNumber(method) + " " + PlainNumber(unknown));
      EXPECT_TRUE(form.opnMethod.UserChoose(method).ok());
      EXPECT_TRUE(form.opnVariable.UserChoose(unknown).ok());
      form.Calculate();
      const auto& columns = form.result().columns;
      const LineErrors errors = BruteForceErrors(columns[1].values, columns[2].values, method == 1);
      const double relative = errors.slope / form.result().fit->line.slope;
      const double power[] = {1, 6, 1.5, 1};  // in which the slope enters n, viscosity, D, C
      const Quantity& solved = form.result().quantities[static_cast<std::size_t>(unknown)];
      EXPECT_NEAR(*solved.error / solved.value / relative, power[unknown], 1e-6);
      for (const Quantity& quantity : form.result().quantities) {
        EXPECT_EQ(quantity.error.has_value(),
                  quantity.name == solved.name || quantity.name == "jk");
      }
      if (method == 1) continue;
      const Quantity jk = Found(form, "jk");  // 1 / intercept
      EXPECT_NEAR(*jk.error, errors.intercept * jk.value * jk.value, 1e-6 * *jk.error);
    }
  }
}

TEST_F(KouteckyLevich, OnlyTurningTracksWithPointsInTheWindowCount) {
  UseFour();
  FillSweep(8, 0, 1);
  FillSweep(9, -400, 1);
  FillSweep(10, 3600, 0);  // no current: no place in the plot
  for (const std::size_t track : {8u, 9u, 10u, 15u}) ws.tracks.kl.KLUseFlag[track] = 1;
  ws.tracks.kl.KLNStart[3] = 15;  // behind the window
  ws.tracks.kl.KLNEnd[4] = 99;    // held within the track
  auto& form = Window();
  form.Calculate();
  EXPECT_THAT(form.result().columns.front().values, ElementsAre(400, 1600, 2500));
  EXPECT_THAT(form.lblFit.text(), HasSubstr("\nused tracks without a point: 3, 8, 9, 10"));
}

TEST_F(KouteckyLevich, TimesAndRatesAreNoPotentials) {
  // Their flags may be left from a track that stood there before, or set for another analysis.
  UseFour();
  FillSweep(8, 400, 1, kModePS);
  FillSweep(9, 400, 1, kModeRPMvsj);
  auto& kl = ws.tracks.kl;
  for (const std::size_t track : {8u, 9u}) kl.KLUseFlag[track] = 1;
  kl.KLBaseMode[2] = 2;
  kl.KLBaseTrack[2] = 8;
  kl.KLBaseNEnd[2] = 20;
  auto& form = Window();
  form.Calculate();
  EXPECT_EQ(form.result().fit->points, 4u);
  EXPECT_NEAR(Found(form, "n").value, 3.9, 1e-9);
}

TEST_F(KouteckyLevich, TheWindowHasItsLowEdgeAndNotItsHighOne) {
  ws.settings.KLVuse = 0.09;
  ws.settings.KLVrange = 0.03;  // 0.06 to 0.12
  FillSweep(0, 400, 0);
  for (const int point : {7, 8, 9, 10, 11, 12}) ws.tracks.SetValue(1, 0, point, 0);
  ws.tracks.SetValue(0, 0, 6, 0.09 - 0.03);
  ws.tracks.SetValue(0, 0, 12, 0.09 + 0.03);
  ws.tracks.SetValue(1, 0, 6, 6e-3);   // one of six inside
  ws.tracks.SetValue(1, 0, 12, 1000);  // outside
  ws.tracks.kl.KLUseFlag[0] = 1;
  ws.settings.KLMethod = 1;
  auto& form = Window();
  form.Calculate();
  EXPECT_NEAR(form.result().columns.back().values.at(0), 1e-3 / kArea, 1e-15);
}

TEST_F(KouteckyLevich, BaseLinesAreSubtracted) {
  UseFour();
  FillSweep(12, 0, 2e-4, kModeCV);
  auto& kl = ws.tracks.kl;
  kl.KLBaseMode[2] = 1;
  kl.KLSubVal[2] = 1e-4;
  auto& form = Window();
  ws.settings.KLMethod = 1;
  const auto first = [&] {
    form.Calculate();
    return form.result().columns.back().values.at(0) * kArea;
  };
  EXPECT_NEAR(first(), Mixed(400) + 1e-4, 1e-15);
  // A base line's track is used whole until its end is chosen.
  EXPECT_TRUE(form.opnBaseLine.UserChoose(2).ok());
  for (int i = 0; i < 9; ++i) EXPECT_TRUE(form.updBase.UserStep(-1).ok());
  EXPECT_EQ(form.txtBaseTrack.text(), "12");
  EXPECT_EQ(form.lblbasepnum.text(), "Data Num: 21");
  EXPECT_EQ(form.txtBaseEnd.text(), "20");
  EXPECT_NEAR(first(), Mixed(400) + 2e-4, 1e-15);
  FillSweep(13, 0, 3e-4, kModeCV);
  ws.tracks.Record(13).pnum = 300;  // the whole of a longer one
  EXPECT_TRUE(form.updBase.UserStep(+1).ok());
  EXPECT_EQ(form.txtBaseEnd.text(), "299");
  EXPECT_TRUE(form.updBase.UserStep(-1).ok());
  EXPECT_TRUE(form.txtBaseEnd.UserSet("7").ok());  // before the window: no base line
  EXPECT_NEAR(first(), Mixed(400), 1e-15);
  EXPECT_EQ(kl.KLBaseMode[2], 2);
  EXPECT_EQ(kl.KLBaseNEnd[2], 7);
  EXPECT_TRUE(form.txtBaseEnd.UserSet("-1").ok());
  EXPECT_EQ(form.txtBaseEnd.text(), "0");
}

TEST_F(KouteckyLevich, ARateSweepIsAnalysedAlone) {
  FillRateSweep(7);
  auto& form = Window();
  form.Calculate();
  EXPECT_NEAR(Found(form, "n").value, 3.9, 1e-9);
  EXPECT_THAT(form.report(), HasSubstr("File\t\r\nTitle:\ttrack 7\r\n"));
  EXPECT_THAT(form.report(), HasSubstr("Potential/V\t-0.350\r\n"));
  EXPECT_EQ(form.result().columns[0].values.size(), 4u);  // not the one at rest
  EXPECT_TRUE(form.opnMethod.UserChoose(1).ok());
  form.Calculate();
  EXPECT_EQ(form.result().columns[0].values.size(), 5u);
  EXPECT_THAT(form.report(), HasSubstr("sqr(Hz)\tj /cm2A-1 \r\n0.0000\t5.000e-4\r\n"));
}

TEST_F(KouteckyLevich, SolvedQuantitiesAreStoredAndShown) {
  UseFour();
  auto& form = Window();
  EXPECT_TRUE(form.txtDm.UserSet("1").ok());  // to be found
  EXPECT_TRUE(form.opnVariable.UserChoose(2).ok());
  form.Calculate();
  EXPECT_NEAR(ws.settings.KLDm, kTruth.diffusion, 1e-14);
  EXPECT_EQ(ParseLenient(form.txtDm.text()), ws.settings.KLDm);
  EXPECT_THAT(form.report(), HasSubstr("\r\n*Dm /cm2s-1\t1.90e-05\r\n"));
}

TEST_F(KouteckyLevich, WhatCannotBeFittedIsSaid) {
  auto& form = Window();
  for (const auto& [method, text] : {std::pair{1, "Please Check at least one 'Use' Check Box"},
                                     {0, "Please check at least one 'Use' Check Box"}}) {
    EXPECT_TRUE(form.opnMethod.UserChoose(method).ok());
    EXPECT_TRUE(form.cmdKLCalc.UserClick().ok());
    EXPECT_THAT(Messages(), ElementsAre(text));
  }
  const auto expect_failure = [&](const char* what) {
    form.Calculate();
    EXPECT_EQ(form.report(), "Parameters are not proper!\r\n") << what;
    EXPECT_EQ(form.result().refusal, "Parameters are not proper!");
  };
  ws.tracks.kl.KLUseFlag[0] = 1;
  FillSweep(0, 400, 1e-3);
  expect_failure("one point");
  ws.tracks.kl.KLUseFlag[1] = 1;
  FillSweep(1, 400, 2e-3);
  expect_failure("equal abscissae");
  FillSweep(1, 900, 1e-3);
  expect_failure("no slope");
  FillSweep(1, 900, 0.5e-3);
  expect_failure("falls with the rate");
  EXPECT_THAT(form.lblFit.text(), HasSubstr("slope -1549.19,"));
  FillSweep(1, 900, 2e-3);
  const double viscosity = ws.settings.KLViscosity;
  EXPECT_TRUE(form.opnVariable.UserChoose(1).ok());
  EXPECT_TRUE(form.txtConc.UserSet("0").ok());
  expect_failure("a known quantity of 0");
  EXPECT_EQ(ws.settings.KLViscosity, viscosity);
  EXPECT_TRUE(form.txtConc.UserSet("1e-6").ok());
  EXPECT_TRUE(form.txtArea.UserSet("0").ok());
  for (const int method : {1, 0}) {
    EXPECT_TRUE(form.opnMethod.UserChoose(method).ok());
    expect_failure("1/j = 0, j = infinite");
  }
  FillRateSweep(7);
  ws.tracks.Record(7).pnum = 1;  // at rest only
  EXPECT_TRUE(form.txtDataNum.UserSet("7").ok());
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("No valid Data"));
}

TEST_F(KouteckyLevich, TheWindowShowsWhatItUses) {
  FillSweep(3, 400, 1e-3);
  ws.shown_track = 3;
  ws.tracks.kl.KLUseFlag[5] = 1;  // of no track
  auto& form = Window();
  EXPECT_EQ(ws.tracks.kl.KLUseFlag[5], 0);
  EXPECT_THAT(
      (std::vector{form.txtDataNum.text(), form.txtUseVoltage.text(), form.txtKLVrange.text(),
                   form.txtArea.text(), form.txtKLViscosity.text(), form.txtDm.text(),
                   form.txtConc.text(), form.txtne.text(), form.lblpnum.text(),
                   form.txtStart.text(), form.txtEnd.text(), form.lblEndPoint.text()}),
      ElementsAre("3", "0.1", "0.02", "0.2", "0.0102", "1.9E-05", "1.2E-06", "3.9", "Data Num: 21",
                  "0", "20", "E:0.2000V   I:7.0000e+0A"));
  EXPECT_TRUE(form.txtArea.UserSet("-0.5").ok());
  EXPECT_EQ(ws.settings.KLElectrodeArea, 0.5);
  EXPECT_TRUE(form.txtKLVrange.UserSet("-0.3").ok());
  EXPECT_EQ(ws.settings.KLVrange, 0.3);
  EXPECT_TRUE(form.chkUse.UserClick().ok());
  EXPECT_EQ(ws.tracks.kl.KLUseFlag[3], 1);
  EXPECT_TRUE(form.txtEnd.UserSet("0").ok());
  EXPECT_EQ(ws.tracks.kl.KLNEnd[3], 1);

  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());  // empty
  EXPECT_THAT((std::vector{form.lblpnum.text(), form.txtStart.text(), form.txtEnd.text(),
                           form.chkUse.Value()}),
              ElementsAre("None", "", "", "2"));
  EXPECT_FALSE(form.chkUse.Usable());
}

TEST_F(KouteckyLevich, AMeasurementMadeMeanwhileIsShown) {
  FillSweep(3, 400, 1e-3);
  ws.shown_track = 3;
  auto& form = Window();
  EXPECT_TRUE(form.txtEnd.UserSet("12").ok());
  form.txtEnd.SetText("13");  // being typed
  form.Activate();
  EXPECT_EQ(form.txtEnd.text(), "13") << "nothing else changed, so what is typed stays";
  ws.tracks.kl.KLNEnd[3] = 9;
  ws.tracks.Record(3).pnum = 10;
  form.Activate();
  EXPECT_EQ(form.lblpnum.text(), "Data Num: 10");
  EXPECT_EQ(form.txtEnd.text(), "9");
}

}  // namespace
}  // namespace zento
