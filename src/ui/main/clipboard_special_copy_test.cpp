#include "ui/main/clipboard_special_copy_form.h"

#include <gmock/gmock.h>

#include "exchange/table_text.h"
#include "exchange/test_tracks.h"
#include "ui/main/main_test_rig.h"

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

}  // namespace
}  // namespace zento
