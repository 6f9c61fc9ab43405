#include "analysis/tafel_form.h"

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

// Track 3 holds a rising sweep through 0.25 V: i = i0 (10^(10 eta) - 10^(-10 eta)), i0 = 1 uA.
struct TafelForm : ::testing::Test {
  TafelForm() {
    RegisterAnalysisForms(machine.desktop, ws, machine.host);
    ws.FileTitle = "slow.znt";
    ws.shown_track = 3;
    TrackRecord& record = ws.tracks.Record(3);
    record.Mode = kModeCV;
    record.Title = "slow couple";
    record.RPM = 1600;
    record.Area = 0.07;
    record.Vxmin = -0.25;
    record.Vxmax = 0.75;
    record.Vymin = -1e-2;
    record.Vymax = 1e-2;
    record.pnum = 101;
    for (int i = 0; i < record.pnum; ++i) {
      const double eta = (i - 50) * 0.01;
      ws.tracks.SetValue(0, 3, i, eta + 0.25);
      ws.tracks.SetValue(1, 3, i, 1e-6 * (std::pow(10, 10 * eta) - std::pow(10, -10 * eta)));
    }
    ws.settings.TaEred = 0.25;
    ws.settings.TaArea = 0.2;
  }
  frmTafelAnalyzer& Open() {
    return *dynamic_cast<frmTafelAnalyzer*>(machine.desktop.Show("frmTafelAnalyzer"));
  }
  void Choose(frmTafelAnalyzer& form, const char* start, const char* end) {
    EXPECT_TRUE(form.txtStart.UserSet(start).ok());
    EXPECT_TRUE(form.txtEnd.UserSet(end).ok());
  }
  const Graph* Plot() { return machine.desktop.FindAs<Graph>(frmTafelAnalyzer::kGraphName); }

  VirtualHost machine;
  Workstation ws;
};

TEST_F(TafelForm, OpensOnTheTrackThatTheMainWindowShows) {
  frmTafelAnalyzer& form = Open();
  EXPECT_EQ(form.txtDataNum.text(), "3");
  EXPECT_EQ(form.lblMode.text(), "CV");
  EXPECT_EQ(form.txtTitle.text(), "slow couple");
  EXPECT_EQ(form.lblpnum.text(), "101");
  EXPECT_EQ(form.txtStart.text(), "0");
  EXPECT_EQ(form.txtEnd.text(), "100");
  EXPECT_EQ(form.lblStartPoint.text(), "E:-0.2500V   I:-1.0000e-1A");
  EXPECT_EQ(form.txtRedoxPotential.text(), "0.25");
  EXPECT_EQ(form.txtArea.text(), "0.2");
  ASSERT_NE(Plot(), nullptr);
  EXPECT_FALSE(machine.desktop.Shown(frmTafelAnalyzer::kGraphName));

  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  EXPECT_EQ(form.lblpnum.text(), "0");
  EXPECT_EQ(form.txtEnd.text(), "");
  machine.desktop.Unload("frmTafelAnalyzer");
  machine.Settle();
  EXPECT_EQ(Plot(), nullptr);
}

TEST_F(TafelForm, EntriesBecomeSettings) {
  frmTafelAnalyzer& form = Open();
  EXPECT_TRUE(form.txtRedoxPotential.UserSet(" 0.3 V").ok());
  EXPECT_EQ(ws.settings.TaEred, 0.3);
  EXPECT_EQ(form.txtRedoxPotential.text(), "0.3");
  for (const char* area : {"0", "-2"}) {
    EXPECT_TRUE(form.txtArea.UserSet(area).ok());
    EXPECT_EQ(ws.settings.TaArea, 1);
    EXPECT_EQ(form.txtArea.text(), "1");
  }
  // The end: by the arrows to the last point, typed to the last but one.
  EXPECT_TRUE(form.txtEnd.UserSet("100").ok());
  EXPECT_EQ(form.txtEnd.text(), "100");  // as it is
  EXPECT_TRUE(form.txtEnd.UserSet("101").ok());
  EXPECT_EQ(form.txtEnd.text(), "99");
  EXPECT_TRUE(form.updEnd.UserStep(+1).ok());
  EXPECT_EQ(form.txtEnd.text(), "100");
}

TEST_F(TafelForm, ReportsTheLineAndDrawsIt) {
  frmTafelAnalyzer& form = Open();
  Choose(form, "78", "80");  // eta 0.28 to 0.3 V, anodic
  EXPECT_TRUE(form.cmdCalc.UserClick().ok());
  EXPECT_EQ(form.report(),
            "File\tslow.znt\r\nTrack\t3\r\nTitle\tslow couple\r\nEred/V\t0.25\r\n"
            "Area /cm2\t0.2\r\nNstart\t78\r\nNend\t80\r\nBranch\tanodic\r\nlogi0\t-6.0000\r\n"
            "α*ne:\t0.5916\r\ni0 /Acm-2\t5.000e-6\r\n"
            "η/V\ti /A\tlog|i|\r\n0.2800\t6.3096e-4\t-3.2000\r\n0.2900\t7.9433e-4\t-3.1000\r\n"
            "0.3000\t1.0000e-3\t-3.0000\r\n");
  EXPECT_THAT(form.lblFit.text(), HasSubstr("alpha_n 0.59159"));
  EXPECT_THAT(form.lblNote.text(), HasSubstr("Anodic"));
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
}

TEST_F(TafelForm, WithoutALineTheResultIsEmptyAndTheAreaIsWritten) {
  frmTafelAnalyzer& form = Open();
  Choose(form, "78", "80");
  form.Calculate();
  ws.tracks.Record(3).Area = 0.07;
  Choose(form, "0", "99");  // both branches
  form.Calculate();
  EXPECT_EQ(form.report(), "");
  EXPECT_EQ(form.lblFit.text(), "");
  EXPECT_EQ(ws.tracks.Record(3).Area, 0.2);
  EXPECT_THAT(form.outcome().refusal, HasSubstr("49 positive, 50 negative"));  // one without
  EXPECT_EQ(machine.dialogs.TakeMessages().size(), 1u);

  Choose(form, "80", "20");
  form.Calculate();
  EXPECT_THAT(form.outcome().refusal, HasSubstr("ends before it starts"));
  ws.tracks.Record(3).Mode = kModePS;
  form.Calculate();
  EXPECT_THAT(form.outcome().refusal, HasSubstr("a PS track has none"));
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  form.Calculate();
  EXPECT_EQ(form.outcome().refusal, "Track 4 is empty.");
}

TEST_F(TafelForm, FollowsTheTracksWhenAnotherFileIsOpened) {
  frmTafelAnalyzer& form = Open();
  ws.tracks.Record(3).pnum = 10;
  form.Calculate();  // of the points that are left; all negative
  EXPECT_THAT(form.report(), HasSubstr("Nend\t9\r\n"));
  ++ws.DataGeneration;
  form.Activate();
  EXPECT_EQ(form.txtEnd.text(), "9");
}

}  // namespace
}  // namespace zento
