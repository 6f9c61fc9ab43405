#include "analysis/smoothing_form.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <vector>

#include "analysis/analysis_forms.h"
#include "core/palette.h"
#include "core/track_file.h"
#include "graph/test_surface.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// Track 0: 200 points of a step with a spike at 100; track 1 the same, track 2 of a mode that is
// not smoothed.
struct SmoothingForm : ::testing::Test {
  SmoothingForm() {
    ws.home = "/home";
    RegisterAnalysisForms(machine.desktop, ws, machine.host, {"/program"});
    for (const int track : {0, 1, 2}) {
      TrackRecord& record = ws.tracks.Record(track);
      record.Mode = track == 2 ? kModeSSVAll : kModePS;
      record.Title = "step " + std::to_string(track);
      record.DiskYscale = 0.001;
      record.pnum = 200;
      for (int i = 0; i < 200; ++i) {
        ws.tracks.SetValue(0, track, i, 0.01 * i * i);
        ws.tracks.SetValue(1, track, i, i == 100 ? 1e-3 : 1e-6 * i);
      }
    }
    file = FormatTracks(ws.tracks);
    ws.show_data_info = [this](int track) { shown.push_back(track); };
    form = dynamic_cast<frmSmoothing*>(machine.desktop.Show("frmSmoothing"));
  }
  double Spike(int track) const { return ws.tracks.Value(1, track, 100); }

  VirtualHost machine;
  Workstation ws;
  std::string file;
  frmSmoothing* form = nullptr;
  std::vector<int> shown;
};

TEST_F(SmoothingForm, WindowsAreOddAndNotTooShortForTheMethod) {
  EXPECT_EQ(form->txtPointNum.text(), "3");
  const auto press = [&](int direction) {
    EXPECT_TRUE(form->UpDown3.UserStep(direction).ok());
    return form->txtPointNum.text();
  };
  EXPECT_EQ(press(-1), "3");
  EXPECT_EQ(press(+1), "5");
  EXPECT_TRUE(form->opnYFilter.UserSet("1").ok());
  EXPECT_EQ(form->txtPointNum.text(), "5");
  EXPECT_EQ(press(-1), "5");
  for (const auto& [typed, shown_as] : std::vector<std::pair<const char*, const char*>>{
           {"99", "15"}, {"8", "7"}, {"-4", "5"}, {"many", "5"}, {"1e30", "15"}}) {
    EXPECT_TRUE(form->txtPointNum.UserSet(typed).ok());
    EXPECT_EQ(form->txtPointNum.text(), shown_as) << typed;
  }
  EXPECT_EQ(press(+1), "15");
  EXPECT_TRUE(form->opnYFilter.UserSet("2").ok());
  EXPECT_EQ(form->txtPointNum.text(), "3");
}

TEST_F(SmoothingForm, SmoothsTheTrackItselfAndUndoGivesBackTheFile) {
  EXPECT_FALSE(form->cmdUpdate.enabled());
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  EXPECT_EQ(Spike(0), 1e-3);
  EXPECT_EQ(form->lblNote.text(), "Smoothed 1 track in 1 piece.");
  EXPECT_TRUE(form->cmdUpdate.UserClick().ok());
  EXPECT_NEAR(Spike(0), (1e-3 + 2e-4) / 3, 1e-12);
  EXPECT_EQ(ws.tracks.Value(0, 0, 50), 25);
  EXPECT_EQ(Spike(1), 1e-3);
  EXPECT_THAT(shown, ElementsAre(0));
  EXPECT_EQ(form->lblNote.text(), "Written into track 0; Undo gives back what was there.");
  // Smoothing what is smoothed is asked for anew.
  EXPECT_FALSE(form->cmdUpdate.enabled());
  EXPECT_EQ(ws.history.UndoName(), "Smoothing");
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  EXPECT_EQ(FormatTracks(ws.tracks), file);
}

TEST_F(SmoothingForm, AllTracksMeansThoseThatAreSmoothed) {
  EXPECT_TRUE(form->chkApplyAllTrack.UserSet("1").ok());
  EXPECT_TRUE(form->chkXAxis.UserSet("1").ok());
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  EXPECT_EQ(form->lblNote.text(), "Smoothed 2 tracks in 2 pieces that meet at the turning points.");
  EXPECT_TRUE(form->cmdUpdate.UserClick().ok());
  for (const int track : {0, 1}) {
    EXPECT_LT(Spike(track), 5e-4);
    EXPECT_NEAR(ws.tracks.Value(0, track, 50), 0.01 * (49 * 49 + 50 * 50 + 51 * 51) / 3, 1e-9);
  }
  EXPECT_EQ(form->lblNote.text(), "Written into 2 tracks; Undo gives back what was there.");
  EXPECT_EQ(Spike(2), 1e-3);
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  EXPECT_EQ(FormatTracks(ws.tracks), file);
}

TEST_F(SmoothingForm, NobodySmoothsTwiceByPressingTwice) {
  ws.tracks.Record(0).Mode = kModeSSVAll;  // shown, but not smoothed
  form->Activate();
  EXPECT_TRUE(form->chkApplyAllTrack.UserSet("1").ok());
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  EXPECT_TRUE(form->cmdUpdate.UserClick().ok());
  EXPECT_FALSE(form->cmdUpdate.enabled());
  const std::string once = FormatTracks(ws.tracks);
  form->UpdateData();
  EXPECT_EQ(FormatTracks(ws.tracks), once);
}

TEST_F(SmoothingForm, RecordsIntoAnotherTrackUnderTheTitleShown) {
  EXPECT_TRUE(form->opnYFilter.UserSet("2").ok());
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  EXPECT_EQ(form->txtDestTitle.text(), "Smooth_step 0");
  EXPECT_TRUE(form->txtDestTitle.UserSet("without the spike").ok());
  EXPECT_TRUE(form->txtDesNum.UserSet("7").ok());
  EXPECT_TRUE(form->cmdRecordAnotherTrack.UserClick().ok());
  // Its neighbours' mean, 100 uA, and w = 1 uA against its distance from it.
  EXPECT_NEAR(Spike(7), 1e-4 + 1e-6 / (1e-6 + 9e-4) * 9e-4, 1e-12);
  EXPECT_EQ(ws.tracks.Record(7).Title, "without the spike");
  EXPECT_EQ(ws.tracks.Record(7).pnum, 200);
  EXPECT_EQ(form->lblDestHolds.text(), "without the spike");
  EXPECT_EQ(Spike(0), 1e-3);
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  EXPECT_EQ(FormatTracks(ws.tracks), file);
}

TEST_F(SmoothingForm, WritesNothingElseThanThePreviewShows) {
  const auto nothing = [&](const char* why) {
    SCOPED_TRACE(why);
    form->UpdateData();
    form->RecordAnotherTrack();
    EXPECT_EQ(ws.history.UndoName(), "");
  };
  nothing("nothing calculated");
  form->Calculate();
  EXPECT_TRUE(form->UpDown3.UserStep(+1).ok());
  nothing("another window");
  form->Calculate();
  EXPECT_TRUE(form->chkSkipatEdge.UserSet("1").ok());
  nothing("the edges");
  form->Calculate();
  EXPECT_TRUE(form->txtSkipNum.UserSet("3").ok());
  nothing("more of the edges");
  EXPECT_TRUE(form->txtSkipNum.UserSet("-2").ok());
  EXPECT_EQ(form->txtSkipNum.text(), "0");
  form->Calculate();
  EXPECT_TRUE(form->UpDown1.UserStep(+1).ok());
  nothing("another track");
  form->Calculate();
  ws.tracks.SetValue(1, 1, 3, 0.5);  // as by an editor
  nothing("other points");
  form->Calculate();
  ws.tracks.Record(1).Mode = kModeCV;
  nothing("another mode");
  EXPECT_TRUE(form->txtDataNum.UserSet("2").ok());
  form->Calculate();
  EXPECT_THAT(form->lblNote.text(), HasSubstr("Nothing is smoothed"));
  nothing("a mode that is not smoothed");
}

// Arithmetic can give values that are no numbers; they are no reason to refuse the others.
TEST_F(SmoothingForm, ATrackWithNaNIsSmoothedElsewhere) {
  ws.tracks.SetValue(1, 0, 20, std::nan(""));
  form->Activate();
  form->Calculate();
  form->Activate();
  form->UpdateData();
  EXPECT_NEAR(Spike(0), (1e-3 + 2e-4) / 3, 1e-12);
}

TEST_F(SmoothingForm, ThePreviewDrawsTheSmoothedTrackOverItsOwnAxis) {
  const Size size{600, 400};
  // Columns of pixels that the smoothed curve crosses.
  const auto wide = [&] {
    TestSurface picture(size);
    form->PrevGraph.Paint(picture);
    EXPECT_NE(picture.Find("Time /s"), nullptr);
    int columns = 0;
    for (int x = 0; x < 600; ++x) {
      bool red = false;
      for (int y = 0; y < 400; ++y) red |= picture.At(x, y) == QBColor(12);
      columns += red ? 1 : 0;
    }
    return columns;
  };
  EXPECT_EQ(wide(), 0);
  form->Calculate();
  EXPECT_GT(wide(), 300);
  // The channels of a multichannel record share the time of channel 0, in the third column.
  for (int i = 0; i < 200; ++i) {
    ws.tracks.SetValue(2, 0, i, i);
    ws.tracks.SetValue(0, 0, i, 0.001 * i);
  }
  ws.tracks.Record(0).Mode = kModeMulti;
  form->Activate();
  EXPECT_EQ(wide(), 0);
  form->Calculate();
  EXPECT_GT(wide(), 300);
  form->UpdateData();
  EXPECT_EQ(ws.tracks.Value(2, 0, 199), 199);
}

TEST_F(SmoothingForm, ReportsACoefficientFileThatIsMissingOrBroken) {
  EXPECT_TRUE(form->opnYFilter.UserSet("1").ok());
  const auto message = [&] {
    form->Calculate();
    const auto messages = machine.dialogs.TakeMessages();
    return messages.size() == 1 ? messages[0] : std::string();
  };
  EXPECT_THAT(message(), HasSubstr("/home, /program"));
  ASSERT_TRUE(machine.files.Replace("/program/Savitzky-Golay.dat", "35,17,12\n\n").ok());
  EXPECT_THAT(message(), HasSubstr("line 1"));
  ASSERT_TRUE(machine.files.Replace("/program/Savitzky-Golay.dat", "35,17,12,-3\n\n").ok());
  EXPECT_TRUE(form->txtPointNum.UserSet("7").ok());
  EXPECT_EQ(message(), "Savitzky-Golay.dat has no row for a window of 7 points.");
  EXPECT_FALSE(form->cmdUpdate.enabled());
  EXPECT_TRUE(form->txtPointNum.UserSet("5").ok());
  EXPECT_EQ(message(), "");
  form->UpdateData();
  EXPECT_NEAR(Spike(0), (17e-3 + 12 * 2e-4 - 3 * 2e-4) / 35, 1e-12);
}

}  // namespace
}  // namespace zento
