#include <cmath>

#include "analysis/analysis_test_rig.h"
#include "analysis/line_fit.h"
#include "analysis/track_points.h"
#include "analysis/track_selection.h"
#include "core/track_store.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

using ::testing::AllOf;
using ::testing::DoubleNear;
using ::testing::HasSubstr;

TEST(LineFit, FindsLineAndItsErrors) {
  // Bevington's scheme on numbers worked by hand: mean 2 and 4.1, sums of squares 2 and 8.42.
  const Values x{1, 2, 3};
  const Values y{2.0, 4.2, 6.1};
  const auto line = FitLine(x, y, 3);
  ASSERT_TRUE(line);
  EXPECT_NEAR(line->slope, 2.05, 1e-12);
  EXPECT_NEAR(line->intercept, 0.0, 1e-12);
  const LineQuality quality = QualityOf(x, y, *line);
  EXPECT_NEAR(quality.r_squared, 1 - 0.015 / 8.42, 1e-12);
  EXPECT_THAT(*quality.slope_error, DoubleNear(std::sqrt(0.015 / 2), 1e-12));
  EXPECT_THAT(*quality.intercept_error, DoubleNear(std::sqrt(0.015 * (1.0 / 3 + 2)), 1e-12));

  // Through the origin: (1 * 2 + 2 * 4.2) / 5 = 2.08, residuals -0.08 and 0.04 with 1 degree of
  // freedom, abscissae's squares 5.
  EXPECT_EQ(FitThroughOrigin(x, y, 2), (1 * 2.0 + 2 * 4.2) / 5);
  const LineQuality origin = QualityThroughOrigin(std::span(x).first(2), y, 2.08);
  EXPECT_THAT(*origin.slope_error, DoubleNear(0.04, 1e-12));
  EXPECT_FALSE(origin.intercept_error);
  EXPECT_NEAR(origin.r_squared, 1 - 0.008 / (2.0 * 2 + 4.2 * 4.2), 1e-12);
}

TEST(LineFit, RefusesWhatHasNoLine) {
  const Values same{0.1, 0.1, 0.1};
  const Values y{1, 2, 3};
  EXPECT_FALSE(FitLine(same, y, 3));
  EXPECT_FALSE(FitLine(y, y, 1));
  EXPECT_FALSE(FitLine({}, {}, 5));
  EXPECT_FALSE(FitThroughOrigin(Values{0, 0}, y, 2));
  EXPECT_FALSE(FitThroughOrigin({}, {}, 0));
  const Values infinite{1, 2, 1e308 * 10};
  EXPECT_FALSE(FitLine(infinite, y, 3));
  // Two points leave nothing to tell an error from.
  EXPECT_FALSE(QualityOf(std::span(y).first(2), y, {1, 0}).slope_error);
}

class SampleForm : public AnalysisForm {
 public:
  SampleForm(Workstation& workstation, Host& host)
      : AnalysisForm(workstation, host, "frmSample", "Sample") {}
  LayoutNode Layout() override { return ReportPanel(); }
  void ShowTrack() override { ++shown; }
  int Chosen() const { return Track(); }
  void Calculate() override {
    AnalysisResult result;
    result.quantities = {{"n", "", 3.981234, 0.00217}, {"area", "cm2", 0.2, {}}};
    result.fit = LineQuality{12, {927.71, 2.4725}, false, 0.99987, 0.52, 0.061};
    ShowReport("File\ta.znt\r\n*n\t3.98\r\n", result);
  }
  void Fail() { Refuse("No valid Data"); }

  int shown = 0;

  PointRange range{*this, TypedEnd::kAsStart};
};

struct SharedAnalysis : AnalysisTest {
  SharedAnalysis() {
    machine.desktop.Register("frmSample",
                             [this] { return std::make_unique<SampleForm>(ws, machine.host); });
    form = machine.desktop.LoadAs<SampleForm>("frmSample");
  }
  SampleForm* form = nullptr;
};

TEST_F(SharedAnalysis, TheReportIsShownCopiedAndSavedToTheByte) {
  EXPECT_FALSE(form->cmdCopyResult.Usable());
  form->Calculate();
  EXPECT_EQ(form->txtResult.text(), "File\ta.znt\n*n\t3.98\n");
  EXPECT_EQ(form->lblFit.text(),
            "12 points, R² 0.99987\nslope 927.71 ± 0.52, intercept 2.4725 ± 0.061\n"
            "n 3.98123 ± 0.0022");
  EXPECT_TRUE(form->cmdCopyResult.UserClick().ok());
  EXPECT_EQ(machine.clipboard.Text(), "File\ta.znt\r\n*n\t3.98\r\n");
  machine.dialogs.Answer("kl.txt");
  EXPECT_TRUE(form->cmdSaveResult.UserClick().ok());
  machine.Settle();
  EXPECT_EQ(machine.files.Read("kl.txt").value(), "File\ta.znt\r\n*n\t3.98\r\n");

  form->Fail();
  EXPECT_EQ(form->result().refusal, "No valid Data");
  EXPECT_EQ(form->report(), "File\ta.znt\r\n*n\t3.98\r\n");
}

TEST_F(SharedAnalysis, TheTrackNumberWrapsAndIsHeld) {
  form->shown = 0;
  EXPECT_TRUE(form->UpDown1.UserStep(-1).ok());
  EXPECT_EQ(form->txtDataNum.text(), "20");
  EXPECT_TRUE(form->UpDown1.UserStep(+1).ok());
  EXPECT_EQ(form->Chosen(), 0);
  EXPECT_TRUE(form->txtDataNum.UserSet("77").ok());
  EXPECT_EQ(form->txtDataNum.text(), "20");
  EXPECT_TRUE(form->txtDataNum.UserSet("20x").ok());
  EXPECT_EQ(form->txtDataNum.text(), "20");
  EXPECT_EQ(form->shown, 3);
  form->Activate();
  EXPECT_EQ(form->shown, 3);
  ++ws.DataGeneration;
  form->Activate();
  EXPECT_EQ(form->shown, 4);
}

TEST_F(SharedAnalysis, TheRangeIsHeldWithinTheTrack) {
  form->range.describe = [](std::int32_t point) { return std::to_string(point) + "!"; };
  form->range.ShowWhole(10);
  EXPECT_EQ(form->range.lblEndPoint.text(), "9!");
  EXPECT_TRUE(form->range.updStart.UserStep(-1).ok());
  EXPECT_EQ(form->range.start(), 0);
  EXPECT_TRUE(form->range.updEnd.UserStep(+1).ok());
  EXPECT_EQ(form->range.end(), 9);
  EXPECT_TRUE(form->range.txtStart.UserSet("99").ok());
  EXPECT_EQ(form->range.txtStart.text(), "8");
  EXPECT_EQ(form->range.lblStartPoint.text(), "8!");
  EXPECT_TRUE(form->range.txtStart.UserSet("-3").ok());
  EXPECT_EQ(form->range.txtStart.text(), "0");
  EXPECT_TRUE(form->range.txtEnd.UserSet("9").ok());  // as it is
  EXPECT_EQ(form->range.end(), 9);
  EXPECT_TRUE(form->range.txtEnd.UserSet("12").ok());
  EXPECT_EQ(form->range.end(), 8);
  EXPECT_TRUE(form->range.txtEnd.UserSet("0").ok());
  EXPECT_EQ(form->range.end(), 0);
  EXPECT_TRUE(form->range.updEnd.UserStep(-1).ok());
  EXPECT_EQ(form->range.end(), 1);

  form->range.ShowWhole(1);  // no room
  EXPECT_TRUE(form->range.updStart.UserStep(+1).ok());
  EXPECT_EQ(form->range.start(), 0);
  form->range.Empty();
  EXPECT_TRUE(form->range.txtStart.UserSet("5").ok());
  EXPECT_EQ(form->range.txtStart.text(), "5");
  EXPECT_TRUE(form->range.empty());
}

TEST(TrackPoints, TellAPointInTheTracksTerms) {
  EXPECT_EQ(PointText(kModeRDE, 0.25, 1e-5), "E:0.2500V   I:1.0000e-5A");
  EXPECT_EQ(PointText(kModePS, 12.3456, -2e-6), "t:12.346s   I:-2.0000e-6A");
  EXPECT_EQ(PointText(kModeRPMvsj, 1600.4, 1), "rpm:1600   I:1.0000e+0A");
}

// Tracks from the clipboard carry no measurement time.
TEST(TrackTime, ComesFromTheXColumnWhereNoneWasRecorded) {
  TrackStore tracks;
  TrackRecord& record = tracks.Record(0);
  record.Mode = kModeCV;
  record.Scanrate = 50;  // mV/s
  record.pnum = 3001;
  // 0 V, up to 1 V, down to -0.5 V and back to 0: 3 V, read with a noise of 4 mV.
  for (int i = 0; i <= 3000; ++i) {
    const double way = 0.001 * i;
    const double e = way < 1 ? way : way < 2.5 ? 2 - way : way - 3;
    tracks.SetValue(0, 0, i, e + (i % 2 == 0 ? 0.002 : -0.002));
  }
  EXPECT_NEAR(TrackTime(tracks, 0), 60'000, 400);
  record.MaxTime = 12'345;
  EXPECT_EQ(TrackTime(tracks, 0), 12'345);
  record.MaxTime = 0;
  record.Scanrate = 0;
  EXPECT_EQ(TrackTime(tracks, 0), 0);

  record.Mode = kModePS;  // x is the time in s
  for (int i = 0; i <= 3000; ++i) tracks.SetValue(0, 0, i, 0.01 * i);
  EXPECT_NEAR(TrackTime(tracks, 0), 30'010, 1e-6);
  record.Mode = kModeMulti;
  EXPECT_EQ(TrackTime(tracks, 0), 0);
}

}  // namespace
}  // namespace zento
