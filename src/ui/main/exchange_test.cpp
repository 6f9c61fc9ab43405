// Tracks through the clipboard: from one to another, and from what spreadsheets make of them.

#include <gmock/gmock.h>

#include <cmath>
#include <string>

#include "core/track_file.h"
#include "core/track_history.h"
#include "ui/main/exchange_test_tracks.h"
#include "ui/main/main_test_rig.h"
#include "ui/main/paste_text.h"
#include "ui/main/progress_form.h"
#include "ui/main/table_text.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::vector<double> Column(TrackStore& tracks, int column, int track) {
  const auto points = tracks.Points(column, track);
  return {points.begin(), points.end()};
}

class Exchange : public ::testing::Test, protected MainRig {
 protected:
  Exchange() {
    panel = &Panel();
    TrackStore filled = ExchangeTracks();
    for (int track = 0; track < 10; ++track) {
      ws.tracks.Record(track) = filled.Record(track);
      for (int column = 0; column < kTrackColumns; ++column) {
        ws.tracks.Column(column, track) = filled.Column(column, track);
      }
    }
    ws.FileTitle = "run 1.znt";
  }
  std::string Copied(int track, const std::string& entry) {
    panel->ShowDataInfo(track);
    EXPECT_TRUE(Click(entry).ok());
    return machine.clipboard.Text();
  }
  void PasteOn(int track, const std::string& text) {
    machine.clipboard.SetText(text);
    panel->ShowDataInfo(track);
    EXPECT_TRUE(Click("mnuPastefromClip").ok());
  }

  frmControlPanel* panel;
};

TEST_F(Exchange, EveryModeGoesRoundWithItsHeaderAndPoints) {
  const int target = 12;
  for (const int source : {1, 2, 3, 4, 5, 6, 7}) {
    const std::string text = Copied(source, "mnuCopyAll");
    PasteOn(target, text);
    const TrackRecord& from = ws.tracks.Record(source);
    const TrackRecord& to = ws.tracks.Record(target);
    const double from_first = std::round(1e4 * ws.tracks.Value(0, source, 0)) / 1e4;
    EXPECT_EQ(to.Mode, source);
    EXPECT_EQ(to.MeasTime, from.MeasTime);
    EXPECT_EQ(to.RPM, from.RPM);
    EXPECT_EQ(to.Conc, from.Conc);
    EXPECT_NEAR(to.Area, from.Area, 5e-5);
    EXPECT_EQ(to.Weight, from.Weight);
    EXPECT_EQ(to.ne, from.ne);
    EXPECT_EQ(to.pnum, from.pnum);
    EXPECT_EQ(to.Scanrate, 50);
    EXPECT_EQ(to.StepTime, source >= kModeSSV ? 0.05 : 0);
    EXPECT_EQ(to.RingXValue, source >= kModeRDE ? -1e-6 : 0);
    EXPECT_EQ(to.V[0], source == kModePS || source == kModeRPMvsj ? 0.2 : from_first);
    // The file title is not the track's; everything else copies again as it was.
    panel->ShowDataInfo(target);
    ws.tracks.Record(target).ref = from.ref;
    if (source == kModeMulti) continue;
    EXPECT_EQ(Copied(target, "mnuCopyAll"), text);
  }
}

TEST_F(Exchange, CopiesTheDataBehindTheTitle) {
  EXPECT_EQ(Copied(2, "mnuCopyOnlyExpData"), "title 2\r\n\r\n" + DataTableText(ws.tracks, 2));
  EXPECT_EQ(panel->lblNotice.text(), "Copied track 2 to the clipboard");
}

TEST_F(Exchange, WhatHasNothingToCopyLeavesTheClipboardAlone) {
  for (const char* entry : {"mnuCopyAll", "mnuCopyOnlyExpData"}) {
    machine.clipboard.SetText("kept");
    EXPECT_EQ(Copied(11, entry), "kept") << entry;
  }
  for (const char* entry : {"mnuCopyI_ttable", "mnuCopyV_ITable"}) {
    machine.clipboard.SetText("kept");
    EXPECT_EQ(Copied(2, entry), "kept") << entry;
    EXPECT_THAT(Copied(5, entry), StartsWith("Filename\trun 1.znt\r\n")) << entry;
  }
}

TEST_F(Exchange, PastingIsOneStepThatCanBeTakenBack) {
  const std::string before = FormatTracks(ws.tracks);
  const std::string text = Copied(2, "mnuCopyAll");
  PasteOn(3, text);
  EXPECT_EQ(panel->lblTrackTitle.text(), "title 2");
  EXPECT_EQ(panel->lblNotice.text(), "Pasted 6 points into track 3");
  EXPECT_EQ(ws.history.UndoName(), "Paste");
  ASSERT_TRUE(Click("mnuUndo").ok());
  EXPECT_EQ(FormatTracks(ws.tracks), before);
  PasteOn(3, "");
  EXPECT_EQ(FormatTracks(ws.tracks), before);
}

TEST_F(Exchange, WithoutAModeThePointsStayAndTheTrackIsEmpty) {
  PasteOn(11, "0.1\t1\r\n0.2\t2\r\n");
  EXPECT_EQ(ws.tracks.Record(11).Mode, kModeNone);
  EXPECT_EQ(ws.tracks.Record(11).pnum, 2);
  EXPECT_EQ(ws.tracks.Record(11).Vxmax, 0);
  EXPECT_THAT(Column(ws.tracks, 1, 11), ElementsAre(1, 2));
  EXPECT_THAT(panel->lblNotice.text(), HasSubstr("stays empty"));
}

TEST_F(Exchange, APointBeyondTheLastIsSaid) {
  std::string text = "Mode\tCV\n";
  for (int i = 0; i < kMaxPoints + 2; ++i) text += "1\t2\n";
  PasteOn(11, text);
  EXPECT_EQ(ws.tracks.Record(11).pnum, kMaxPoints);
  EXPECT_THAT(panel->lblNotice.text(), HasSubstr("2 MORE HAD NO ROOM"));
}

TEST_F(Exchange, ALongCopyGoesOnBehindTheProgressWindowAndCanBeEnded) {
  const auto progress = [this] {
    return machine.desktop.FindAs<frmProgressWindow>(frmProgressWindow::kName);
  };
  const auto start = [this](ClipboardCopy& copy, int& outcome) {
    ws.tracks.Record(1).pnum = 40000;
    copy.patience = 0;
    copy.Start(std::make_unique<DataTable>(ws.tracks, 1, TableOptions()),
               [&outcome](bool copied) { outcome = copied ? 1 : 0; });
  };
  ClipboardCopy copy(machine.host);
  int outcome = -1;
  machine.clipboard.SetText("kept");
  start(copy, outcome);
  ASSERT_NE(progress(), nullptr);
  EXPECT_TRUE(machine.desktop.Shown(frmProgressWindow::kName));
  EXPECT_EQ(progress()->caption(), "Now Copying to Clipboard... Please wait.");
  EXPECT_EQ(progress()->ProgressBar1.maximum(), 40000);
  machine.RunFor(1000);
  EXPECT_EQ(machine.clipboard.Text(), "kept");
  // What happens to the track meanwhile does not show.
  ws.tracks.SetValue(0, 1, 39999, 77);
  machine.RunFor(50'000);
  EXPECT_EQ(outcome, 1);
  EXPECT_EQ(progress(), nullptr);
  ws.tracks.SetValue(0, 1, 39999, 0);
  EXPECT_EQ(machine.clipboard.Text(), DataTableText(ws.tracks, 1));

  machine.clipboard.SetText("kept");
  start(copy, outcome);
  machine.RunFor(2000);
  ASSERT_TRUE(progress()->cmdCancel.UserClick().ok());
  EXPECT_EQ(outcome, 0);
  machine.RunFor(50'000);
  EXPECT_EQ(progress(), nullptr);
  EXPECT_EQ(machine.clipboard.Text(), "kept");
}

// Pasting alone.

struct PasteOf {
  explicit PasteOf(const std::string& text, const TrackRecord& before = {}) {
    tracks.Record(3) = before;
    pasted = PasteText(text, tracks, 3);
  }
  std::vector<double> operator[](int column) { return Column(tracks, column, 3); }
  const TrackRecord& record() { return tracks.Record(3); }
  TrackStore tracks;
  Pasted pasted;
};

TEST(PasteText, TakesWhatSpreadsheetsMakeOfLines) {
  const std::string rows[] = {"Mode", "Mode:RDE", "0.1", "1e-5", "2", "-0.25", "-1.5E-06", "3"};
  for (const std::string end : {"\r\n", "\n", "\r", "\r\r\n"}) {
    const std::string text = rows[0] + "\t" + rows[1] + end + end + rows[2] + "\t" + rows[3] +
                             "\t" + rows[4] + end + rows[5] + "\t" + rows[6] + "\t" + rows[7];
    for (const std::string& whole : {text, text + end}) {
      PasteOf paste(whole);
      EXPECT_EQ(paste.record().Mode, kModeRDE);
      EXPECT_THAT(paste[0], ElementsAre(0.1, -0.25));
      EXPECT_THAT(paste[1], ElementsAre(1e-5, -1.5e-6));
      EXPECT_THAT(paste[2], ElementsAre(2, 3));
    }
  }
}

TEST(PasteText, DecimalCommasCountOnlyWhereTheyCanBeNothingElse) {
  PasteOf paste(
      "Mode\tCV\nScanrate\t0,5\n0,1\t-1,5E-06\n0.2\t1,234.5\n1,2,3\t4\n1,234.5\t4\n ,5\t,5 ");
  EXPECT_EQ(paste.record().Scanrate, 0.5);
  EXPECT_THAT(paste[0], ElementsAre(0.1, 0.2, 0.5));
  EXPECT_THAT(paste[1], ElementsAre(-1.5e-6, 1, 0.5));
}

TEST(PasteText, CellsThatAreNoNumbersAre0AndFurtherOnesAreDropped) {
  PasteOf paste("Mode\tCV\n1\tx\ty\n2\t\n3\t4\t5\t6\n4\t5\t6\twater\nrow\t9\n7\n + 8\t1\n 9 \t1");
  EXPECT_THAT(paste[0], ElementsAre(1, 2, 3, 4, 9));
  EXPECT_THAT(paste[1], ElementsAre(0, 0, 4, 5, 1));
  EXPECT_THAT(paste[2], ElementsAre(0, 0, 5, 6, 0));
}

TEST(PasteText, HasRoomForTheShortestLinesThereAre) {
  std::string text = "7\t";
  for (int i = 1; i < 1000; ++i) text += "\n7\t";
  PasteOf paste(text);
  EXPECT_EQ(paste.pasted.points, 1000);
  EXPECT_GE(paste.tracks.Column(2, 3).size(), 1000u);
}

TEST(PasteText, FieldsKeepTheirValuesUntilALineReplacesThem) {
  TrackRecord before;
  before.Mode = kModePS;
  before.Title = "old";
  before.RPM = 400;
  before.ref = 3;
  before.V = {1, 2, 3};
  before.pnum = 9;
  PasteOf paste("Title\tnew\tnot this\r\npH\t7.4\r\nRef\tSHE\r\nV2nd\t0.5 V\r\n1\t2\r\n", before);
  EXPECT_EQ(paste.record().Title, "new");
  EXPECT_EQ(paste.record().Mode, kModePS);
  EXPECT_EQ(paste.record().RPM, 400);
  EXPECT_EQ(paste.record().ref, 3);
  EXPECT_EQ(paste.record().pH, 7.4);
  EXPECT_THAT(paste.record().V, ElementsAre(0, 0.5, 0));
  EXPECT_EQ(paste.record().pnum, 1);
}

TEST(PasteText, TheModeIsTheHighestNameInItsCell) {
  EXPECT_EQ(PasteOf("Mode\tMode:SSVAll").record().Mode, kModeSSVAll);
  EXPECT_EQ(PasteOf("Mode\tMode:SSV").record().Mode, kModeSSV);
  EXPECT_EQ(PasteOf("Mode\tssvall").record().Mode, kModeNone);
  EXPECT_EQ(PasteOf("mode\tCV").record().Mode, kModeNone);
}

TEST(PasteText, TheRangeReachesDownTo10AndUpToMinus10) {
  PasteOf sweep("Mode\tCV\n0.5\t-20\n4.5\t-12\n");
  EXPECT_EQ(sweep.record().Vxmin, 0.5);
  EXPECT_EQ(sweep.record().Vxmax, 4.5);
  EXPECT_EQ(sweep.record().Vymin, -20);
  EXPECT_EQ(sweep.record().Vymax, -10);
  PasteOf rates("Mode\tRPMvs.j\n400\t1\n900\t2\n");
  EXPECT_EQ(rates.record().Vxmin, 10);
  EXPECT_EQ(rates.record().Vxmax, 900);
}

TEST(PasteText, VerticesAreWhereTheSweepTurns) {
  PasteOf twice("Mode\tCV\n0.1\t0\n0.2\t0\n0.3\t0\n0.2\t0\n-0.1\t0\n0\t0\n0.2\t0\n0.1\t0\n");
  EXPECT_THAT(twice.record().V, ElementsAre(0.1, 0.3, -0.1));
  // Standing still is a direction too.
  PasteOf still("Mode\tCV\n0.1\t0\n0.1\t0\n0.2\t0\n0.2\t0\n0.3\t0\n0.1\t0\n");
  EXPECT_THAT(still.record().V, ElementsAre(0.1, 0.2, 0.2));
  PasteOf given("Mode\tCV\nV1st\t5\nV3rd\t1\n0.1\t0\n0.2\t0\n0.1\t0\n");
  EXPECT_THAT(given.record().V, ElementsAre(5, 0, 1));
}

}  // namespace
}  // namespace zento
