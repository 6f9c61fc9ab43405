#include "ui/main/clipboard_special_copy_form.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

#include "ui/main/exchange_test_tracks.h"
#include "ui/main/main_test_rig.h"
#include "ui/main/track_text.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class SpecialCopy : public ::testing::Test, protected MainRig {
 protected:
  SpecialCopy() {
    frmControlPanel& panel = Panel();
    TrackStore filled = ExchangeTracks();
    for (int track = 0; track < 10; ++track) {
      ws.tracks.Record(track) = filled.Record(track);
      for (int column = 0; column < kTrackColumns; ++column) {
        ws.tracks.Column(column, track) = filled.Column(column, track);
      }
    }
    ws.settings.O2CE = 0.39;
    panel.ShowDataInfo(2);
    EXPECT_TRUE(Click("mnuSpecialCopy").ok());
    form = machine.desktop.FindAs<frmSpecialCopy>("frmSpecialCopy");
  }
  void Set(const std::string& control, const std::string& value) {
    ASSERT_TRUE(form->Find(control)->UserSet(value).ok()) << control;
  }
  std::string Copy() {
    EXPECT_TRUE(form->cmdCopy.UserClick().ok());
    machine.Settle();
    return machine.clipboard.Text();
  }

  frmSpecialCopy* form;
};

TEST_F(SpecialCopy, BeginsAsCopyAll) {
  EXPECT_EQ(Copy(), TrackInfoText(ws.tracks, 2, "") + "\r\n" + DataTableText(ws.tracks, 2));
}

TEST_F(SpecialCopy, PassesEveryOptionOn) {
  Set("opnDiskUnit", "1");
  Set("opnRingUnit", "2");
  Set("opnNormalisation", "2");
  Set("chkH2O", "1");
  Set("txtCE", "0.25");
  Set("chkAbsolute", "1");
  Set("opnPolarity", "2");
  Set("chkHeader", "0");
  TableOptions options;
  options.disk_unit = 2;
  options.ring_unit = 3;
  options.normalisation = Normalisation::kPerWeight;
  options.water_fraction = true;
  options.collection_efficiency = 0.25;
  options.absolute = true;
  options.filter = PointFilter::kNegative;
  EXPECT_EQ(Copy(), DataTableText(ws.tracks, 2, options));
  EXPECT_EQ(ws.settings.O2CE, 0.25);
  options.logarithm = true;
  Set("chkLog", "1");
  EXPECT_EQ(Copy(), DataTableText(ws.tracks, 2, options));
}

TEST_F(SpecialCopy, RefusesWhatCannotBeDivided) {
  machine.clipboard.SetText("kept");
  ws.tracks.Record(2).Area = 0;
  Set("opnNormalisation", "1");
  EXPECT_EQ(Copy(), "kept");
  ws.tracks.Record(2).Weight = 0;
  Set("opnNormalisation", "2");
  EXPECT_EQ(Copy(), "kept");
  Set("opnNormalisation", "0");
  Set("chkH2O", "1");
  Set("txtCE", "-0.1");
  EXPECT_EQ(Copy(), "kept");
  EXPECT_THAT(machine.dialogs.messages,
              ElementsAre(HasSubstr("area"), HasSubstr("weight"), HasSubstr("efficiency")));
  EXPECT_EQ(ws.settings.O2CE, 0.39);
}

TEST_F(SpecialCopy, FollowsTheMainWindowsTrack) {
  Panel().ShowDataInfo(7);
  form->Activate();
  EXPECT_FALSE(form->opnRingUnit.enabled());
  EXPECT_TRUE(form->chkH2O.enabled());
  form->opnRingUnit.Select(2);                    // left from a track with a ring
  EXPECT_THAT(Copy(), HasSubstr("\t502.5\r\n"));  // a time stays what it is
  Panel().ShowDataInfo(1);
  form->Activate();
  EXPECT_FALSE(form->chkH2O.enabled());
  Panel().ShowDataInfo(11);
  form->Activate();
  EXPECT_FALSE(form->cmdCopy.enabled());
}

TEST_F(SpecialCopy, CopiesOneCycle) {
  // Two triangles.
  TrackRecord& record = ws.tracks.Record(1);
  record.pnum = 17;
  record.V = {0, 0.4, 0};
  for (std::int32_t i = 0; i < 17; ++i) {
    const int step = i % 8;
    ws.tracks.SetValue(0, 1, i, 0.1 * (step < 4 ? step : 8 - step));
    ws.tracks.SetValue(1, 1, i, i);
  }
  Panel().ShowDataInfo(1);
  form->Activate();
  EXPECT_EQ(form->lblCycles.text(), "of 2");
  ASSERT_TRUE(form->updCycle.UserStep(+1).ok());
  ASSERT_TRUE(form->updCycle.UserStep(+1).ok());
  EXPECT_EQ(form->txtCycle.text(), "2");
  Set("chkHeader", "0");
  Set("txtOrder", "3");
  EXPECT_EQ(Copy(),
            "Potential/V\tDisk/A\r\n0.0000\t8\r\n0.3000\t11\r\n0.2000\t14\r\n0.0000\t16\r\n");
}

// Thinning alone.

struct Curve {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<std::int32_t> Thinned(const Thinning& thinning,
                                    const std::vector<std::int32_t>& ends) const {
    return ThinnedPoints({x, y, 2, 4}, ends, thinning);
  }
};

TEST(Thinning, EachRuleAlone) {
  // Right along the bottom, then up; the plot's two units wide and four high.
  const Curve corner{{0, 1, 2, 3, 4, 4, 4, 4}, {0, 0, 0, 0, 0, 2, 4, 6}};
  const std::vector<std::int32_t> ends = {0, 7};
  EXPECT_THAT(corner.Thinned({}, ends), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
  EXPECT_THAT(corner.Thinned({45, 0, 0}, ends), ElementsAre(0, 4, 7));
  EXPECT_THAT(corner.Thinned({91, 0, 0}, ends), ElementsAre(0, 7));
  EXPECT_THAT(corner.Thinned({0, 0.9, 0}, ends), ElementsAre(0, 2, 4, 6, 7));
  EXPECT_THAT(corner.Thinned({0, 0, 3}, ends), ElementsAre(0, 3, 6, 7));
  EXPECT_THAT(corner.Thinned({45, 0, 3}, ends), ElementsAre(0, 3, 4, 7));
  EXPECT_THAT(corner.Thinned({0, 100, 0}, {1, 3, 6}), ElementsAre(1, 3, 6));
}

TEST(Thinning, ATurnAddsUpUntilAPointIsKept) {
  Curve circle;
  for (int degree = 0; degree <= 360; ++degree) {
    circle.x.push_back(2 * std::cos(degree * std::numbers::pi / 180));
    circle.y.push_back(4 * std::sin(degree * std::numbers::pi / 180));
  }
  // A circle in the plot: a point about every 30 degrees, however fine the steps are.
  const auto kept = circle.Thinned({29.5, 0, 0}, {0, 360});
  ASSERT_EQ(kept.size(), 13u);
  for (std::size_t i = 0; i < kept.size(); ++i) EXPECT_EQ(kept[i], 30 * static_cast<int>(i));
}

TEST(Thinning, PointsThatStandStillHaveNoDirection) {
  const Curve halting{{0, 0, 0, 1, 1, 2, 2}, {0, 0, 0, 0, 0, 0, 1}};
  EXPECT_THAT(halting.Thinned({30, 0, 0}, {0, 6}), ElementsAre(0, 5, 6));
  EXPECT_THAT(halting.Thinned({30, 0, 0}, {3, 3}), ElementsAre(3));
}

}  // namespace
}  // namespace zento
