#include "analysis/oxygen_form.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>

#include "analysis/analysis_forms.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Track 0 holds a ring-disk sweep 0.75 -> 0.25 -> 0.75 V with a share of 5 % for peroxide, track 1
// a voltammogram without a ring, the others nothing.
struct OxygenForm : ::testing::Test {
  OxygenForm() {
    RegisterAnalysisForms(machine.desktop, ws, machine.host);
    TrackRecord& record = ws.tracks.Record(0);
    record.Mode = kModeRDE;
    record.Title = "Pt in acid";
    record.RPM = 1600;
    record.V = {0.75, 0.25, 0.75};
    record.Vxmin = 0.2;
    record.Vxmax = 0.8;
    record.pnum = 257;
    for (int i = 0; i < record.pnum; ++i) {
      ws.tracks.SetValue(0, 0, i, 0.25 + std::fabs(i - 128) / 256.0);
      ws.tracks.SetValue(1, 0, i, -3.9e-4);
      ws.tracks.SetValue(2, 0, i, 0.1e-4 * 0.39);
    }
    ws.tracks.Record(1).Mode = kModeCV;
    ws.settings.O2CE = 0.39;
    ws.settings.O2VStep = 0.2;
    ws.settings.O2Vrange = 0.01;
  }
  frmO2Reduction& Open() {
    return *dynamic_cast<frmO2Reduction*>(machine.desktop.Show("frmO2Reduction"));
  }
  std::vector<std::string> Messages() { return machine.dialogs.TakeMessages(); }

  VirtualHost machine;
  Workstation ws;
};

// At its start a window is cut short. On the way back the scan stands before 0.25 V at first, where
// it finds that window's far edge at once.
constexpr const char* kReport =
    "Edisk/V\t%H2O\r\n0.746\t95.0\r\n0.551\t95.0\r\n0.352\t95.0\r\n"
    "0.449\t95.0\r\n0.648\t95.0\r\n";

TEST_F(OxygenForm, EvaluatesATrackWhenItIsChosen) {
  frmO2Reduction& form = Open();
  EXPECT_EQ(form.lblMode.text(), "RDE");
  EXPECT_EQ(form.txtTitle.text(), "Pt in acid");
  EXPECT_EQ(form.txtRPM.text(), "1600");
  EXPECT_EQ(form.report(), kReport);
  ASSERT_EQ(form.outcome().columns.size(), 5u);
  EXPECT_NEAR(form.outcome().columns[4].values.front(), 3.9, 1e-9);
  EXPECT_NEAR(form.outcome().quantities.front().value, 95, 1e-9);

  // A track without a ring changes neither report nor plot, and the window says so.
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  EXPECT_EQ(form.lblMode.text(), "CV");
  EXPECT_EQ(form.report(), kReport);
  EXPECT_THAT(form.lblNote.text(), HasSubstr("those of track 0"));
  EXPECT_THAT(Messages(), IsEmpty());
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("Track 1 is no ring-disk voltammogram."));

  EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
  EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
  EXPECT_EQ(form.txtDataNum.text(), "20");
  EXPECT_EQ(form.txtTitle.text(), "");
  EXPECT_EQ(form.txtRPM.text(), "");
}

TEST_F(OxygenForm, SettingsCountWhenTheirBoxIsLeft) {
  frmO2Reduction& form = Open();
  EXPECT_TRUE(form.txtVstep.UserType("-0.").ok());
  EXPECT_EQ(ws.settings.O2VStep, 0);
  EXPECT_EQ(form.report(), kReport);  // nothing happens while one types
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_TRUE(form.txtVstep.UserSet("-0.3").ok());
  EXPECT_EQ(ws.settings.O2VStep, 0.3);
  EXPECT_EQ(form.txtVstep.text(), "0.3");
  EXPECT_EQ(form.report(), "Edisk/V\t%H2O\r\n0.746\t95.0\r\n0.449\t95.0\r\n0.551\t95.0\r\n");

  // Half the efficiency: twice as much peroxide.
  EXPECT_TRUE(form.txtCE.UserSet("0.195").ok());
  EXPECT_THAT(form.report(), HasSubstr("0.746\t90.2\r\n"));
  EXPECT_TRUE(form.txtVrange.UserSet("0").ok());
  EXPECT_EQ(form.report(), "Edisk/V\t%H2O\r\n");
  EXPECT_THAT(form.lblNote.text(), HasSubstr("0.75, 0.25 and 0.75 V"));
}

TEST_F(OxygenForm, SettingsWithoutMeaningAreRefusedQuietlyUntilSomebodyAsks) {
  frmO2Reduction& form = Open();
  EXPECT_TRUE(form.txtCE.UserSet("-0.39").ok());
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_THAT(form.lblNote.text(), HasSubstr("collection efficiency must be above zero"));
  EXPECT_EQ(form.report(), kReport);
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("The collection efficiency must be above zero."));
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());  // no ring, nothing to refuse
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
  EXPECT_EQ(Messages().size(), 1u);
  EXPECT_FALSE(form.outcome().refusal.empty());
}

TEST_F(OxygenForm, TellsThatTheWayBackIsMissing) {
  ws.settings.O2VStep = 0.25;  // lands on the vertex
  frmO2Reduction& form = Open();
  EXPECT_EQ(form.report(), "Edisk/V\t%H2O\r\n0.746\t95.0\r\n0.5\t95.0\r\n0.255\t95.0\r\n");
  EXPECT_THAT(form.lblNote.text(), HasSubstr("way back is missing"));
}

TEST_F(OxygenForm, FollowsTheTracksWhenAnotherFileIsOpened) {
  frmO2Reduction& form = Open();
  ws.tracks.Record(0).Title = "Another file's";
  form.Activate();
  EXPECT_EQ(form.txtTitle.text(), "Pt in acid");
  ++ws.DataGeneration;
  form.Activate();
  EXPECT_EQ(form.txtTitle.text(), "Another file's");
}

}  // namespace
}  // namespace zento
