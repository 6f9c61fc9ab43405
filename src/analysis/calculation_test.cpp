#include "analysis/calculation_form.h"

#include <cmath>

#include "analysis/analysis_forms.h"
#include "analysis/analysis_test_rig.h"
#include "analysis/track_sum.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(TrackSum, TitlesSayWhatWasComputed) {
  EXPECT_EQ(TrackSumTitle({1, 1, 0, true, 0}, 0, 1), "( 1* Track 0- 1* Track 1)[xBshift= 0]");
  EXPECT_EQ(TrackSumTitle({-2, .5, 1e-6, false, -.01}, 3, 12),
            "(-2* Track 3+ 1E-06+ .5* Track 12)[xBshift=-.01]");
}

TEST(TrackSum, PointsThatRepeatXToThreeDecimalsGo) {
  const Values x{0.1, 0.1004, 0.0996, 0.2, 0.1, 0.1};
  EXPECT_THAT(DistinctAbscissae(x), ElementsAre(0u, 3u, 4u));
}

TrackSum Sum(const Values& ax, const Values& ay, const Values& bx, const Values& by,
             const TrackSumTerms& terms = {0, 1, 0, false, 0}) {
  TrackSum sum;
  AppendSum({ax, ay, {}}, {0, ax.size() - 1}, {bx, by, {}}, 0, terms, sum);
  return sum;
}

TEST(TrackSum, ReadsBBetweenItsPoints) {
  const Values bx{0, 1, 2, 3}, by{0, 10, 40, 90};
  // Beyond either end: the first and the last interval's straight line.
  const TrackSum sum = Sum({-1, 0.5, 1.75, 2.5, 4}, {1, 2, 3, 4, 5}, bx, by, {2, 1, 3, true, 0});
  EXPECT_THAT(sum.matched, ElementsAre(1u, 1u, 3u, 3u, 3u));
  // 1.75 is nearest to point 2, so that the walk ends behind it and the last interval counts.
  EXPECT_THAT(sum.current,
              ElementsAre(2 + 3 + 10, 4 + 3 - 5, 6 + 3 - 27.5, 8 + 3 - 65, 10 + 3 - 140));
}

TEST(TrackSum, EqualXInBIsNoDivisionByZero) {
  EXPECT_THAT(Sum({1, 1}, {0, 0}, {1, 1}, {5, 7}).current, ElementsAre(7, 7));
}

struct CalculationForm : AnalysisTest {
  CalculationForm() {
    Sweep(0, kModeCV, 0.005, 2e-5);
    Sweep(1, kModeCV, 0.01, 1e-5);
  }
  // 0 V to 1 V to -0.5 V to 0 V; 1e-5 A wide between the two ways, which tells them apart. The ring
  // of a ring-disk curve has half the current.
  void Sweep(int track, std::int32_t mode, double step, double height) {
    Values x, disk, ring;
    const int quarter = static_cast<int>(std::lround(0.5 / step));
    for (int i = 0; i <= 6 * quarter; ++i) {
      const int at = i <= 2 * quarter ? i : i <= 5 * quarter ? 4 * quarter - i : i - 6 * quarter;
      const bool down = i > 2 * quarter && i <= 5 * quarter;
      x.push_back(at * step);
      disk.push_back(height * x.back() + (down ? -height : height));
      ring.push_back(0.5 * disk.back());
    }
    TrackRecord& record = Fill(track, mode, x, disk, ring);
    record.Scanrate = 50;
    record.V = {0, 1, -0.5};
  }
  frmCalculation& Window() { return Open<frmCalculation>(); }
  // The largest distance of C's column from `scale` times A's, turning points left out.
  double Worst(int column, double scale, double offset = 0) {
    double worst = 0;
    for (int p = 0; p < ws.tracks.PointCount(20); ++p) {
      const double x = ws.tracks.Value(0, 0, p);
      if (std::abs(x - 1) < 0.02 || std::abs(x + 0.5) < 0.02) continue;
      worst = std::max(worst, std::abs(ws.tracks.Value(column, 20, p) -
                                       scale * ws.tracks.Value(column, 0, p) - offset));
    }
    return worst;
  }
};

TEST_F(CalculationForm, SubtractsSweepBySweep) {
  auto& form = Window();
  EXPECT_EQ(form.txtOpeC.text(), "20");
  EXPECT_EQ(form.txtOpeBScanrate.text(), "50");
  EXPECT_FALSE(form.cmdUpdate.enabled());
  EXPECT_TRUE(form.opnOperator.UserSet("1").ok());
  EXPECT_TRUE(form.txtc.UserSet("1e-6").ok());
  const TrackStore before = ws.tracks;
  EXPECT_TRUE(form.cmdCalc.UserClick().ok());
  EXPECT_EQ(form.lblNote.text(), "601 points.");
  EXPECT_EQ(ws.history.UndoName(), "");  // nothing was removed
  EXPECT_THAT(form.txtDebug.text(), StartsWith("xTrackA\txTrackB\ti\tSB\n0\t0.01\t0\t1\n"));
  EXPECT_TRUE(form.cmdUpdate.UserClick().ok());
  EXPECT_EQ(ws.tracks.Record(20).Title, "( 1* Track 0+ 1E-06- 1* Track 1)[xBshift= 0]");
  EXPECT_EQ(ws.tracks.PointCount(20), 601);
  EXPECT_LT(Worst(1, 0.5, 1e-6), 1e-12);
  EXPECT_EQ(ws.history.UndoName(), "Calculation into track 20");
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  EXPECT_EQ(ws.tracks.Record(20), before.Record(20));
}

TEST_F(CalculationForm, AShiftMovesTheTurningPointsOfBAlong) {
  // Track 1 as it would be with a reference electrode 0.2 V away.
  for (double& v : ws.tracks.Record(1).V) v += 0.2;
  for (double& x : ws.tracks.Column(0, 1)) x += 0.2;
  auto& form = Window();
  EXPECT_TRUE(form.txtXBShift.UserSet("-0.2").ok());
  form.Calculate();
  form.UpdateTrack();
  EXPECT_EQ(form.lblNote.text(), "601 points.");
  EXPECT_LT(Worst(1, 1.5), 1e-12);
}

TEST_F(CalculationForm, TheRingHasNoOffset) {
  Sweep(0, kModeRDE, 0.005, 2e-5);
  Sweep(1, kModeRDE, 0.01, 1e-5);
  auto& form = Window();
  EXPECT_TRUE(form.txtc.UserSet("1e-5").ok());
  form.Calculate();
  form.UpdateTrack();
  EXPECT_LT(Worst(1, 1.5, 1e-5), 1e-12);
  EXPECT_LT(Worst(2, 1.5), 1e-12);
}

TEST_F(CalculationForm, PointsOfAThatGoComeBackByUndo) {
  ws.tracks.SetValue(0, 0, 7, 0.0302);  // point 6 is at 0.03
  const TrackStore before = ws.tracks;
  auto& form = Window();
  form.Calculate();
  EXPECT_EQ(ws.tracks.PointCount(0), 600);
  EXPECT_EQ(ws.tracks.Value(1, 0, 7), before.Value(1, 0, 8));
  EXPECT_THAT(form.lblNote.text(), HasSubstr("from track 0, x as in the point before: 1 (Undo"));
  EXPECT_EQ(ws.history.UndoName(), "Calculation");
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  EXPECT_EQ(ws.tracks.Record(0), before.Record(0));
  EXPECT_EQ(ws.tracks.Points(0, 0)[7], 0.0302);
}

TEST_F(CalculationForm, RefusesWhatCannotBeCombinedAndLeavesTrackA) {
  ws.tracks.SetValue(0, 0, 7, 0.0302);
  auto& form = Window();
  const auto refused = [&](std::int32_t a, std::int32_t b) {
    ws.tracks.Record(0).Mode = a;
    ws.tracks.Record(1).Mode = b;
    form.Calculate();
    return ws.tracks.PointCount(0) == 601 && !form.cmdUpdate.enabled() &&
           !form.lblNote.text().empty() && machine.dialogs.TakeMessages().empty();
  };
  EXPECT_TRUE(refused(kModePS, kModeCV));
  EXPECT_TRUE(refused(kModeRPMvsj, kModePS));
  EXPECT_TRUE(refused(kModeCV, kModeRPMvsj));
  EXPECT_TRUE(refused(kModeMulti, kModeMulti));
  EXPECT_TRUE(refused(kModeSSVAll, kModeCV));
  EXPECT_TRUE(refused(kModeCV, kModeNone));
  ws.tracks.Record(1).pnum = 1;
  EXPECT_TRUE(refused(kModeCV, kModeCV));
  EXPECT_THAT(form.lblNote.text(), HasSubstr("no two points"));
  ws.tracks.Record(1).pnum = 301;
  ws.tracks.Record(1).Scanrate = 20;
  form.Calculate();
  EXPECT_THAT(machine.dialogs.TakeMessages(),
              ElementsAre("The scanrate of Track A is different from that of Track B!"));
  EXPECT_EQ(ws.tracks.PointCount(0), 601);
}

TEST_F(CalculationForm, StepsAreCombinedInOrder) {
  for (const int track : {0, 1}) {
    ws.tracks.Record(track).Mode = kModePS;
    ws.tracks.Record(track).pnum = 3;
    for (int i = 0; i < 3; ++i) {
      ws.tracks.SetValue(0, track, i, i + 0.5 * track);
      ws.tracks.SetValue(1, track, i, 1e-4 * i);
    }
  }
  auto& form = Window();
  form.Calculate();
  EXPECT_EQ(form.txtDebug.text(),
            "xTrackA\txTrackB\ti\tSB\n0\t1.5\t0\t1\n1\t1.5\t1\t1*\n2\t2.5\t2\t2*\n");
  EXPECT_NEAR(ws.tracks.Value(1, kScratchSlot, 1), 1.5e-4, 1e-18);
}

TEST_F(CalculationForm, WritesOnlyAResultOfWhatIsChosenAndNotAnotherToolsScratch) {
  auto& form = Window();
  const auto written = [&] {
    form.UpdateTrack();
    return ws.tracks.Record(20).Mode != kModeNone;
  };
  EXPECT_FALSE(written());
  form.Calculate();
  EXPECT_TRUE(form.txta.UserSet("2").ok());
  EXPECT_FALSE(written());
  form.Calculate();
  EXPECT_TRUE(form.updOpeB.UserStep(+1).ok());
  EXPECT_FALSE(written());
  EXPECT_TRUE(form.updOpeB.UserStep(-1).ok());
  form.Calculate();
  ws.tracks.Column(1, kScratchSlot).assign(601, 42.0);  // as smoothing does
  EXPECT_TRUE(written());
  EXPECT_LT(Worst(1, 2.5), 1e-12);
}

TEST_F(CalculationForm, WritesNothingOnceAnOperandHasChanged) {
  auto& form = Window();
  const auto expect_refused = [&](const char* what) {
    EXPECT_TRUE(form.cmdUpdate.UserClick().ok());
    EXPECT_EQ(ws.tracks.Record(20).pnum, 0) << what;
    EXPECT_THAT(form.lblNote.text(), HasSubstr("changed meanwhile")) << what;
    EXPECT_FALSE(form.cmdUpdate.enabled());
  };
  for (const int operand : {0, 1}) {
    EXPECT_TRUE(form.cmdCalc.UserClick().ok());
    ws.tracks.Record(operand).RPM = 400;
    expect_refused("header");
    for (const int column : {0, 1}) {
      EXPECT_TRUE(form.cmdCalc.UserClick().ok());
      ws.tracks.SetValue(column, operand, 300, 0.123);  // as by an editor
      expect_refused("points");
    }
  }
  EXPECT_TRUE(form.cmdCalc.UserClick().ok());
  ws.tracks.ClearTrack(0);
  expect_refused("empty");
}

TEST_F(CalculationForm, MagnifiesThePictureAndStaysInside) {
  auto& form = Window();
  const WorldWindow whole = form.PrevGraph.shown();
  EXPECT_TRUE(form.updGraphSize.UserStep(+1).ok());
  EXPECT_EQ(form.txtGraphSize.text(), "2");
  EXPECT_NEAR(form.PrevGraph.shown().x1, whole.x1 + (whole.x2 - whole.x1) / 4, 1e-12);
  for (int i = 0; i < 9; ++i) {
    EXPECT_TRUE(form.HScroll1.UserStep(+1).ok());
    EXPECT_TRUE(form.VScroll1.UserStep(+1).ok());
  }
  EXPECT_NEAR(form.PrevGraph.shown().x2, whole.x2, 1e-12);
  EXPECT_NEAR(form.PrevGraph.shown().y1, whole.y1, 1e-12);
  EXPECT_TRUE(form.txtGraphSize.UserSet("1").ok());
  EXPECT_EQ(form.PrevGraph.shown(), whole);
}

}  // namespace
}  // namespace zento
