#include "analysis/kl_form.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/settings_file.h"
#include "host/virtual/virtual_host.h"
#include "text/number.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
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

struct KouteckyLevich : ::testing::Test {
  KouteckyLevich() {
    ApplyDefaultSettings(ws);
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
    ws.tracks.kl.Resize();
    machine.desktop.Register("frmKoutecky_Levich", [this] {
      return std::make_unique<frmKoutecky_Levich>(ws, machine.host);
    });
  }

  frmKoutecky_Levich& Form() {
    return *dynamic_cast<frmKoutecky_Levich*>(machine.desktop.Show("frmKoutecky_Levich"));
  }
  // A sweep from 0 to 0.2 V in steps of 10 mV; only from 80 to 120 mV the current is
  // `current`, elsewhere it is absurd.
  void FillSweep(int track, double rpm, double current, std::int32_t mode = kModeRDE) {
    TrackRecord& record = ws.tracks.Record(track);
    record.Mode = mode;
    record.Title = "sweep";
    record.RPM = rpm;
    record.pnum = 21;
    for (std::int32_t i = 0; i < 21; ++i) {
      ws.tracks.SetValue(0, track, i, i / 100.0);
      ws.tracks.SetValue(1, track, i, i >= 8 && i <= 12 ? current : 7.0);
    }
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
    TrackRecord& record = ws.tracks.Record(track);
    record.Mode = kModeRPMvsj;
    record.Title = "rates";
    record.V = {-0.35, 0, 0};
    record.pnum = 5;
    const std::vector<double> rates{0, 400, 900, 1600, 2500};
    for (std::int32_t i = 0; i < 5; ++i) {
      const double rpm = rates[static_cast<std::size_t>(i)];
      ws.tracks.SetValue(0, track, i, rpm);
      ws.tracks.SetValue(1, track, i, rpm > 0 ? Mixed(rpm) : 1e-4);
    }
    ws.shown_track = track;
  }
  static double Found(const AnalysisForm& form, const std::string& name) {
    for (const Quantity& quantity : form.outcome().quantities) {
      if (quantity.name == name) return quantity.value;
    }
    return 0;
  }
  std::vector<std::string> Messages() {
    machine.Settle();
    return machine.dialogs.TakeMessages();
  }

  VirtualHost machine;
  Workstation ws;
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
  auto& form = Form();
  EXPECT_TRUE(form.cmdKLCalc.UserClick().ok());
  EXPECT_NEAR(Found(form, "n"), 3.9, 1e-9);
  EXPECT_NEAR(Found(form, "jk"), kKinetic, 1e-9);
  EXPECT_EQ(form.report(),
            "File\trates.znt\r\nArea /cm2\t0.2\r\nν /cm2s-1\t0.0102\r\nDm /cm2s-1\t1.90e-05\r\n"
            "Conc /molcm-3\t1.20e-06\r\nPotential/V\t0.100\r\n*n\t3.90\r\njk /Acm-2\t2.000e-02\r\n"
            "1/sqr(Hz)\tj-1 /cm2A-1 \r\n0.3873\t4.1098e+2\r\n0.2582\t2.9066e+2\r\n"
            "0.1936\t2.3049e+2\r\n0.1549\t1.9439e+2\r\n");
  EXPECT_TRUE(machine.desktop.Shown("KLGraph"));
  EXPECT_THAT(form.lblFit.text(), StartsWith("4 points, R² 1\nslope "));
}

TEST_F(KouteckyLevich, OnlyTurningTracksWithPointsInTheWindowCount) {
  UseFour();
  FillSweep(8, 0, 1);
  FillSweep(9, -400, 1);
  FillSweep(10, 3600, 0);  // no current: no place in the plot
  for (const std::size_t track : {8u, 9u, 10u, 15u}) ws.tracks.kl.KLUseFlag[track] = 1;
  ws.tracks.kl.KLNStart[3] = 15;  // behind the window
  ws.tracks.kl.KLNEnd[4] = 99;    // held within the track
  auto& form = Form();
  form.Calculate();
  EXPECT_THAT(form.outcome().columns.front().values, ElementsAre(400, 1600, 2500));
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
  auto& form = Form();
  form.Calculate();
  EXPECT_EQ(form.outcome().fit->points, 4u);
  EXPECT_NEAR(Found(form, "n"), 3.9, 1e-9);
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
  auto& form = Form();
  form.Calculate();
  EXPECT_NEAR(form.outcome().columns.back().values.at(0), 1e-3 / kArea, 1e-15);
}

TEST_F(KouteckyLevich, BaseLinesAreSubtracted) {
  UseFour();
  FillSweep(12, 0, 2e-4, kModeCV);
  auto& kl = ws.tracks.kl;
  kl.KLBaseMode[2] = 1;
  kl.KLSubVal[2] = 1e-4;
  auto& form = Form();
  ws.settings.KLMethod = 1;
  const auto first = [&] {
    form.Calculate();
    return form.outcome().columns.back().values.at(0) * kArea;
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
  auto& form = Form();
  form.Calculate();
  EXPECT_NEAR(Found(form, "n"), 3.9, 1e-9);
  EXPECT_THAT(form.report(), HasSubstr("File\t\r\nTitle:\trates\r\n"));
  EXPECT_THAT(form.report(), HasSubstr("Potential/V\t-0.350\r\n"));
  EXPECT_EQ(form.outcome().columns[0].values.size(), 4u);  // not the one at rest
  EXPECT_TRUE(form.opnMethod.UserChoose(1).ok());
  form.Calculate();
  EXPECT_EQ(form.outcome().columns[0].values.size(), 5u);
  EXPECT_THAT(form.report(), HasSubstr("sqr(Hz)\tj /cm2A-1 \r\n0.0000\t5.000e-4\r\n"));
}

TEST_F(KouteckyLevich, SolvedQuantitiesAreStoredAndShown) {
  UseFour();
  auto& form = Form();
  EXPECT_TRUE(form.txtDm.UserSet("1").ok());  // to be found
  EXPECT_TRUE(form.opnVariable.UserChoose(2).ok());
  form.Calculate();
  EXPECT_NEAR(ws.settings.KLDm, kTruth.diffusion, 1e-14);
  EXPECT_EQ(ParseLenient(form.txtDm.text()), ws.settings.KLDm);
  EXPECT_THAT(form.report(), HasSubstr("\r\n*Dm /cm2s-1\t1.90e-05\r\n"));
}

TEST_F(KouteckyLevich, WhatCannotBeFittedIsSaid) {
  auto& form = Form();
  EXPECT_TRUE(form.cmdKLCalc.UserClick().ok());
  EXPECT_THAT(Messages(), ElementsAre("Please check at least one 'Use' Check Box"));
  EXPECT_TRUE(form.opnMethod.UserChoose(1).ok());
  EXPECT_TRUE(form.cmdKLCalc.UserClick().ok());
  EXPECT_THAT(Messages(), ElementsAre("Please Check at least one 'Use' Check Box"));

  const std::string failed = "Parameters are not proper!\r\n";
  EXPECT_TRUE(form.opnMethod.UserChoose(0).ok());
  FillSweep(0, 400, 1e-3);
  ws.tracks.kl.KLUseFlag[0] = 1;
  form.Calculate();  // one point
  EXPECT_EQ(form.report(), failed);
  FillSweep(1, 400, 2e-3);
  ws.tracks.kl.KLUseFlag[1] = 1;
  form.Calculate();  // equal abscissae
  EXPECT_EQ(form.report(), failed);
  FillSweep(1, 900, 1e-3);
  form.Calculate();  // no slope
  EXPECT_EQ(form.report(), failed);
  FillSweep(1, 900, 0.5e-3);
  form.Calculate();  // falls with the rate
  EXPECT_EQ(form.report(), failed);
  EXPECT_THAT(form.lblFit.text(), HasSubstr("slope -1549.19,"));
  for (const char* method : {"0", "1"}) {  // 1/j = 0, j = infinite
    EXPECT_TRUE(form.opnMethod.UserSet(method).ok());
    EXPECT_TRUE(form.txtArea.UserSet("0").ok());
    form.Calculate();
    EXPECT_EQ(form.report(), failed);
  }
  EXPECT_TRUE(form.opnMethod.UserChoose(0).ok());
  EXPECT_TRUE(form.txtArea.UserSet("0.2").ok());

  UseFour();
  ws.tracks.kl.KLUseFlag[0] = ws.tracks.kl.KLUseFlag[1] = 0;
  EXPECT_TRUE(form.txtConc.UserSet("0").ok());
  const double viscosity = ws.settings.KLViscosity;
  EXPECT_TRUE(form.opnVariable.UserChoose(1).ok());
  form.Calculate();
  EXPECT_EQ(form.report(), failed);
  EXPECT_EQ(form.outcome().refusal, "Parameters are not proper!");
  EXPECT_EQ(ws.settings.KLViscosity, viscosity);

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
  auto& form = Form();
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
  auto& form = Form();
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
