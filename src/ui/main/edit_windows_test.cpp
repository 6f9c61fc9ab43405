// The windows that move, rename and edit tracks.

#include <gmock/gmock.h>

#include <cmath>

#include <string>
#include <vector>

#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_file.h"
#include "core/track_history.h"
#include "ui/main/basic_operations_form.h"
#include "ui/main/edit_a_track_form.h"
#include "ui/main/edit_tracks_form.h"
#include "ui/main/main_test_rig.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct EditWindows : ::testing::Test, MainRig {
  // The main window empties all tracks when it opens.
  EditWindows() { Panel(); }
  // The bytes of the file that the tracks would be saved as.
  std::string File() const { return FormatTracks(ws.tracks); }
  template <typename F>
  F& Open(const char* menu_entry) {
    EXPECT_TRUE(Click(menu_entry).ok());
    return *machine.desktop.FindAs<F>(F::kName);
  }
  std::vector<std::string> Messages() { return machine.dialogs.TakeMessages(); }
  void ExpectUndone(const std::string& name, const std::string& file) {
    EXPECT_EQ(ws.history.UndoName(), name);
    const std::string changed = File();
    EXPECT_NE(changed, file);
    EXPECT_TRUE(Click("mnuUndo").ok());
    EXPECT_EQ(File(), file);
    EXPECT_TRUE(Click("mnuRedo").ok());
    EXPECT_EQ(File(), changed);
    EXPECT_TRUE(Click("mnuUndo").ok());
  }
};

struct EditTracks : EditWindows {
  EditTracks() {
    FillCV(3);
    form = &Open<frmEditTracks>("mnuEditTracks");
  }
  void Choose(const char* source, const char* destination) {
    ASSERT_TRUE(form->txtSourceTrack.UserSet(source).ok());
    ASSERT_TRUE(form->txtDestinationTrack.UserSet(destination).ok());
  }
  frmEditTracks* form;
};

TEST_F(EditTracks, ArrowsWrapAndTheLabelsTellWhatIsThere) {
  EXPECT_EQ(form->lblSourceTrack.text(), "No Data");
  EXPECT_TRUE(form->updSource.UserStep(-1).ok());
  EXPECT_EQ(form->txtSourceTrack.text(), "20");
  EXPECT_TRUE(form->updSource.UserStep(+1).ok());
  EXPECT_EQ(form->txtSourceTrack.text(), "0");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(form->updDestination.UserStep(+1).ok());
  EXPECT_THAT(form->lblDestinationTrack.text(), HasSubstr("Title\tPt\r\n"));
}

TEST_F(EditTracks, RefusesWhatMakesNoSense) {
  const std::string before = File();
  Choose("3", "3");
  for (Button* button : {&form->cmdCopy, &form->cmdMove, &form->cmdSwap}) {
    EXPECT_TRUE(button->UserClick().ok());
  }
  EXPECT_THAT(Messages(), ElementsAre("You cannot copy between the same track.",
                                      "You cannot move between the same track.",
                                      "You cannot swap between the same track."));
  Choose("5", "6");
  for (Button* button : {&form->cmdCopy, &form->cmdMove, &form->cmdSwap}) {
    EXPECT_TRUE(button->UserClick().ok());
  }
  EXPECT_THAT(Messages(), ElementsAre("Source data is vacant.", "Source data is vacant.",
                                      "Source data and destination data are vacant."));
  EXPECT_EQ(File(), before);
}

TEST_F(EditTracks, CopiesMovesAndSwaps) {
  ws.tracks.Record(7).DiskYscale = 5;
  const std::string before = File();
  Choose("3", "7");
  EXPECT_TRUE(form->cmdCopy.UserClick().ok());
  EXPECT_EQ(ws.tracks.Record(7).Title, "Pt");
  EXPECT_EQ(ws.tracks.Record(7).DiskYscale, 5);
  EXPECT_EQ(ws.tracks.Value(1, 7, 4), 4e-4);
  EXPECT_THAT(form->lblDestinationTrack.text(), HasSubstr("Pt"));
  ExpectUndone("Copy of track 3 to track 7", before);

  EXPECT_TRUE(form->cmdMove.UserClick().ok());
  EXPECT_EQ(ws.tracks.Record(3).Mode, kModeNone);
  EXPECT_EQ(ws.tracks.PointCount(3), 0);
  EXPECT_EQ(ws.tracks.Value(1, 7, 4), 4e-4);
  ExpectUndone("Move of track 3 to track 7", before);

  // The main window shows what its track has become.
  Panel().ShowDataInfo(7);
  EXPECT_TRUE(form->cmdSwap.UserClick().ok());
  EXPECT_EQ(Panel().lblTrackTitle.text(), "Pt");
  EXPECT_EQ(ws.tracks.Record(3).Mode, kModeNone);
  EXPECT_TRUE(form->cmdSwap.UserClick().ok());
  EXPECT_EQ(ws.tracks.Record(3).Title, "Pt");
  EXPECT_EQ(ws.tracks.Record(7).Mode, kModeNone);
  EXPECT_TRUE(Click("mnuUndo").ok());
  ExpectUndone("Swap of tracks 3 and 7", before);
}

TEST_F(EditTracks, TheTimesOfARotationSweepGoAlong) {
  ws.tracks.Record(3).Mode = kModeRPMvsj;
  ws.tracks.Record(7).TimeRecording = 1;
  Choose("3", "7");
  EXPECT_TRUE(form->cmdCopy.UserClick().ok());
  EXPECT_TRUE(SameValues(ws.tracks.Points(2, 7), ws.tracks.Points(2, 3)));
}

TEST_F(EditWindows, ReplacesWordsInEveryTitle) {
  for (const auto& [track, title] :
       std::vector<std::pair<int, const char*>>{{0, "CV 1"}, {4, "old CV CV"}, {9, "cv"}}) {
    FillCV(track);
    ws.tracks.Record(track).Title = title;
  }
  const std::string before = File();
  auto& form = Open<frmReplaceTitle>("mnuReplaceTitle");
  EXPECT_TRUE(form.cmdGo.UserClick().ok());
  EXPECT_EQ(form.lblNotice.text(), "No title holds this text");
  EXPECT_TRUE(form.txtBefore.UserSet("CV").ok());
  EXPECT_TRUE(form.txtAfter.UserSet("LSV CV").ok());
  EXPECT_TRUE(form.cmdGo.UserClick().ok());
  EXPECT_EQ(ws.tracks.Record(0).Title, "LSV CV 1");
  EXPECT_EQ(ws.tracks.Record(4).Title, "old LSV CV LSV CV");
  EXPECT_EQ(ws.tracks.Record(9).Title, "cv");
  EXPECT_EQ(form.lblNotice.text(), "Replaced in 2 titles");
  EXPECT_EQ(Panel().lblTrackTitle.text(), "LSV CV 1");
  ExpectUndone("Replacement of words in titles", before);
}

// Two cycles of 200 points in track 2, which the main window shows.
struct EditATrack : EditWindows {
  EditATrack() {
    FillCV(2);
    TrackRecord& record = ws.tracks.Record(2);
    record.V = {0, 1, 0};
    record.pnum = 400;
    for (int i = 0; i < 400; ++i) {
      const int phase = i % 200;
      ws.tracks.SetValue(0, 2, i, 0.01 * (phase < 100 ? phase : 200 - phase));
      ws.tracks.SetValue(1, 2, i, 1.23456789e-6 * (i + 1));
    }
    Panel().ShowDataInfo(2);
    before = File();
    form = &Open<frmEditATrack>("mnuEditATrack");
  }
  // Keys into the grid or, while it is open, its editor.
  void Type(const std::string& text) {
    for (const char c : text) {
      const Key key{KeyCode::kCharacter, static_cast<char32_t>(c)};
      if (form->txtEdit.visible()) {
        ASSERT_TRUE(form->txtEdit.UserType(form->txtEdit.text() + c).ok());
      } else {
        ASSERT_TRUE(form->DataGrid.UserKey(key).ok());
      }
    }
  }
  double Current(int point) const { return ws.tracks.Value(1, 2, point); }

  std::string before;
  frmEditATrack* form;
};

TEST_F(EditATrack, ShowsACycleAtATime) {
  EXPECT_THAT(form->cbxCycleNum.items(), ElementsAre("Cycle1", "Cycle2"));
  EXPECT_THAT(form->DataGrid.headings, ElementsAre("E/V", "Disk/A"));
  EXPECT_EQ(form->DataGrid.rows(), 201);
  EXPECT_EQ(form->DataGrid.Cell(0, 1), "1.235e-6");
  EXPECT_TRUE(form->cbxCycleNum.UserSet("1").ok());
  EXPECT_EQ(form->DataGrid.first_number, 200);
  EXPECT_EQ(form->DataGrid.rows(), 200);
  EXPECT_EQ(form->DataGrid.Cell(199, 1), "4.938e-4");
  // Another track of the main window, when the window is used again.
  FillCV(3);
  ws.tracks.Record(3).Mode = kModeRDE;
  Panel().ShowDataInfo(3);
  form->Activate();
  EXPECT_THAT(form->DataGrid.headings, ElementsAre("E/V", "Disk/A", "Ring/A"));
  EXPECT_EQ(form->DataGrid.rows(), 5);
  Panel().ShowDataInfo(8);
  form->Activate();
  EXPECT_EQ(form->DataGrid.rows(), 0);
  EXPECT_FALSE(form->cbxCycleNum.enabled());
}

TEST_F(EditATrack, TypingReplacesOneValueAndNoOther) {
  EXPECT_TRUE(form->DataGrid.UserClickCell(7, 1).ok());
  Type("a");
  Type(".");
  EXPECT_FALSE(form->txtEdit.visible());
  Type("-2.5e-6");
  EXPECT_TRUE(form->txtEdit.visible());
  EXPECT_EQ(form->txtEdit.text(), "-2.5e-6");
  EXPECT_EQ(Current(7), 8 * 1.23456789e-6);
  EXPECT_TRUE(form->txtEdit.UserKey({KeyCode::kEnter}).ok());
  EXPECT_EQ(Current(7), -2.5e-6);
  EXPECT_EQ(form->DataGrid.Cell(7, 1), "-2.500e-6");
  EXPECT_FALSE(form->txtEdit.visible());
  EXPECT_EQ(form->DataGrid.row(), 8);
  EXPECT_EQ(form->DataGrid.column(), 1);
  // The digits that the grid does not show stay.
  EXPECT_EQ(Current(8), 9 * 1.23456789e-6);
  ExpectUndone("Edit of point 7", before);
}

TEST_F(EditATrack, EscapeAndHalfNumbersStoreNothing) {
  EXPECT_TRUE(form->DataGrid.UserClickCell(7, 1).ok());
  Type("5");
  EXPECT_TRUE(form->txtEdit.UserKey({KeyCode::kEscape}).ok());
  EXPECT_FALSE(form->txtEdit.visible());
  Type("e");
  form->txtEdit.UserLeave();
  EXPECT_FALSE(form->txtEdit.visible());
  EXPECT_EQ(File(), before);
  // Going elsewhere with a number takes it, as in a spreadsheet.
  Type("5");
  form->txtEdit.UserLeave();
  EXPECT_EQ(Current(7), 5);
  // Enter at the end stays there.
  EXPECT_TRUE(form->cbxCycleNum.UserSet("1").ok());
  EXPECT_TRUE(form->DataGrid.UserClickCell(199, 0).ok());
  Type("1");
  EXPECT_TRUE(form->txtEdit.UserKey({KeyCode::kEnter}).ok());
  EXPECT_EQ(form->DataGrid.row(), 199);
  EXPECT_EQ(ws.tracks.Value(0, 2, 399), 1);
}

TEST_F(EditATrack, DeletesSelectedPointsAfterAsking) {
  EXPECT_TRUE(form->DataGrid.UserSet("10-19").ok());
  machine.dialogs.Answer("no");
  EXPECT_TRUE(form->DataGrid.UserKey({KeyCode::kDelete}).ok());
  machine.Settle();
  EXPECT_EQ(File(), before);
  machine.dialogs.Answer("yes");
  EXPECT_TRUE(form->mnuDelete.UserClick().ok());
  machine.Settle();
  EXPECT_EQ(ws.tracks.Record(2).pnum, 390);
  EXPECT_EQ(Current(9), 10 * 1.23456789e-6);
  EXPECT_EQ(Current(10), 21 * 1.23456789e-6);
  EXPECT_EQ(form->DataGrid.rows(), 191);
  EXPECT_EQ(form->DataGrid.row(), 10);
  ExpectUndone("Removal of 10 points", before);

  // All of them: an empty track that can be brought back.
  form->Activate();
  for (int cycle = 0; cycle < 2; ++cycle) {
    EXPECT_TRUE(form->DataGrid.UserSet("0-" + std::to_string(form->DataGrid.rows() - 1)).ok());
    machine.dialogs.Answer("yes");
    EXPECT_TRUE(form->mnuDelete.UserClick().ok());
    machine.Settle();
  }
  EXPECT_EQ(ws.tracks.Record(2).pnum, 0);
  EXPECT_TRUE(form->mnuDelete.UserClick().ok());
  EXPECT_EQ(form->lblNote.text(), "No points are selected.");
  EXPECT_TRUE(Click("mnuUndo").ok());
  EXPECT_TRUE(Click("mnuUndo").ok());
  EXPECT_EQ(File(), before);
}

TEST_F(EditATrack, NothingIsDoneToATrackThatWasChangedMeanwhile) {
  EXPECT_TRUE(form->DataGrid.UserClickCell(7, 1).ok());
  Type("5");
  ws.tracks.SetValue(1, 2, 300, 1);  // as a measurement that stores its points
  const std::string now = File();
  EXPECT_TRUE(form->txtEdit.UserKey({KeyCode::kEnter}).ok());
  EXPECT_EQ(File(), now);
  EXPECT_THAT(form->lblNote.text(), HasSubstr("changed meanwhile"));
  EXPECT_TRUE(form->DataGrid.UserSet("3").ok());
  machine.dialogs.Answer("yes");
  EXPECT_TRUE(form->mnuDelete.UserClick().ok());
  ws.tracks.Record(2).pnum = 50;
  machine.Settle();
  EXPECT_EQ(ws.tracks.Record(2).pnum, 50);
  EXPECT_EQ(form->DataGrid.rows(), 50);
}

TEST_F(EditATrack, AQuestionIsAboutThePointsThatWereShownThen) {
  EXPECT_TRUE(form->DataGrid.UserSet("150").ok());
  machine.dialogs.Answer("yes");
  EXPECT_TRUE(form->mnuDelete.UserClick().ok());
  ws.tracks.Record(2).pnum = 10;
  form->Activate();
  EXPECT_EQ(form->DataGrid.rows(), 10);
  machine.Settle();
  EXPECT_EQ(ws.tracks.Record(2).pnum, 10);
  EXPECT_THAT(form->lblNote.text(), HasSubstr("none was deleted"));
}

TEST_F(EditATrack, FollowsTheHeader) {
  const auto cycles = form->cbxCycleNum.items().size();
  ws.tracks.Record(2).V = {0, 3, 0};
  ws.tracks.Record(2).Title = "renamed";
  form->Activate();
  EXPECT_NE(form->cbxCycleNum.items().size(), cycles);
  EXPECT_THAT(form->lblTrack.text(), HasSubstr("renamed"));
}

TEST_F(EditATrack, BasicOperationsConcernTheCycleThatIsShown) {
  EXPECT_TRUE(form->cbxCycleNum.UserSet("1").ok());
  EXPECT_TRUE(form->mnuBasicOperations.UserClick().ok());
  auto& basic = *machine.desktop.FindAs<frmBasicOperations>(frmBasicOperations::kName);
  EXPECT_FALSE(basic.cmdUpdate.enabled());
  EXPECT_TRUE(basic.opnOperation.UserSet("3").ok());
  EXPECT_TRUE(basic.chkCh[1].UserSet("1").ok());
  EXPECT_TRUE(basic.cmdPreview.UserClick().ok());
  EXPECT_TRUE(basic.txtOperand.UserSet("two").ok());
  EXPECT_TRUE(basic.cmdPreview.UserClick().ok());
  EXPECT_THAT(Messages(), ElementsAre("Can't divide by zero!", "The operand is not a number."));
  EXPECT_FALSE(basic.cmdUpdate.enabled());
  EXPECT_TRUE(basic.txtOperand.UserSet("2").ok());
  EXPECT_TRUE(basic.cmdPreview.UserClick().ok());
  EXPECT_EQ(File(), before);
  EXPECT_EQ(ws.tracks.Value(1, kScratchSlot, 300), Current(300) / 2);
  EXPECT_EQ(ws.tracks.Value(0, kScratchSlot, 300), ws.tracks.Value(0, 2, 300));
  // What is changed has to be seen again first.
  EXPECT_TRUE(basic.chkCh[0].UserSet("1").ok());
  EXPECT_FALSE(basic.cmdUpdate.enabled());
  EXPECT_TRUE(basic.chkCh[0].UserSet("0").ok());
  EXPECT_TRUE(basic.cmdPreview.UserClick().ok());
  ws.tracks.SetValue(1, kScratchSlot, 300, 77);  // as another window that works there
  EXPECT_TRUE(basic.cmdUpdate.UserClick().ok());
  EXPECT_EQ(Current(300), 301 * 1.23456789e-6 / 2);
  EXPECT_EQ(Current(199), 200 * 1.23456789e-6);
  EXPECT_EQ(form->cbxCycleNum.selected(), 1);
  EXPECT_EQ(form->DataGrid.Cell(100, 1), "1.858e-4");
  EXPECT_FALSE(basic.cmdUpdate.enabled());
  ExpectUndone("Basic operation", before);
  // The dialog goes with the editor.
  machine.desktop.RequestClose(frmEditATrack::kName);
  EXPECT_EQ(machine.desktop.Find(frmBasicOperations::kName), nullptr);
}

TEST_F(EditATrack, WhatIsTypedGoesIntoTheCellItWasTypedOver) {
  EXPECT_TRUE(form->DataGrid.UserClickCell(7, 1).ok());
  Type("5");
  EXPECT_TRUE(form->DataGrid.UserClickCell(9, 1).ok());
  EXPECT_EQ(Current(7), 5);
  EXPECT_EQ(Current(9), 10 * 1.23456789e-6);
  EXPECT_FALSE(form->txtEdit.visible());
  EXPECT_EQ(form->DataGrid.row(), 9);
  EXPECT_THAT(form->lblPoint.text(), HasSubstr("Point 9:  E/V = 0.09  Disk/A = 1.23456789E-05"));
  Type("e");
  EXPECT_TRUE(form->DataGrid.UserKey({KeyCode::kDown}).ok());
  EXPECT_EQ(Current(9), 10 * 1.23456789e-6);
}

TEST_F(EditATrack, ChannelsKeepTheirCommonTimes) {
  for (int track = 0; track < 11; ++track) {
    FillCV(track);
    ws.tracks.Record(track).Mode = kModeMulti;
  }
  Panel().ShowDataInfo(4);
  form->Activate();
  before = File();
  EXPECT_THAT(form->DataGrid.headings, ElementsAre("E/V", "Disk/A"));
  EXPECT_TRUE(form->DataGrid.UserSet("1-2").ok());
  machine.dialogs.Answer("yes");
  EXPECT_TRUE(form->mnuDelete.UserClick().ok());
  machine.Settle();
  for (int track = 0; track < 10; ++track) {
    EXPECT_EQ(ws.tracks.Record(track).pnum, 3) << track;
    EXPECT_EQ(ws.tracks.Value(2, track, 1), 3e-6) << track;
  }
  EXPECT_EQ(ws.tracks.Record(10).pnum, 5);  // a copy, no channel
  ExpectUndone("Removal of 2 points", before);

  Panel().ShowDataInfo(0);
  form->Activate();
  EXPECT_TRUE(form->DataGrid.UserClickCell(3, 2).ok());
  Type("12");
  EXPECT_TRUE(form->txtEdit.UserKey({KeyCode::kEnter}).ok());
  EXPECT_EQ(ws.tracks.Value(2, 9, 3), 12);
  ExpectUndone("Edit of point 3", before);
}

TEST_F(EditATrack, AShiftedSweepKeepsItsTurningPointsAndStaysInSight) {
  ws.tracks.Record(2).pnum = 200;  // one cycle
  form->Activate();
  before = File();
  EXPECT_TRUE(form->mnuBasicOperations.UserClick().ok());
  auto& basic = *machine.desktop.FindAs<frmBasicOperations>(frmBasicOperations::kName);
  EXPECT_FALSE(basic.chkCh[2].enabled());  // it has two columns
  const auto update = [&](int channel, const char* operation, const char* operand) {
    for (std::size_t c = 0; c < 2; ++c) {
      EXPECT_TRUE(basic.chkCh[c].UserSet(static_cast<int>(c) == channel ? "1" : "0").ok());
    }
    EXPECT_TRUE(basic.opnOperation.UserSet(operation).ok());
    EXPECT_TRUE(basic.txtOperand.UserSet(operand).ok());
    EXPECT_TRUE(basic.cmdPreview.UserClick().ok());
    if (!basic.cmdUpdate.enabled()) return;
    EXPECT_TRUE(basic.cmdUpdate.UserClick().ok());
  };
  EXPECT_TRUE(form->DataGrid.UserClickCell(50, 1).ok());
  update(1, "2", "1e300");
  EXPECT_EQ(form->DataGrid.row(), 50);
  update(1, "2", "1e6");
  EXPECT_THAT(Messages(), IsEmpty());
  update(1, "2", "1e300");
  EXPECT_THAT(Messages(), ElementsAre("The result would be too large for a number."));
  EXPECT_TRUE(std::isfinite(Current(199)));
  update(0, "0", "2");
  const TrackRecord& record = ws.tracks.Record(2);
  EXPECT_THAT(record.V, ElementsAre(2, 3, 2));
  EXPECT_EQ(record.Vxmin, 2);
  EXPECT_EQ(record.Vxmax, 3);
  EXPECT_EQ(record.Vymax, Current(199));
  EXPECT_EQ(form->cbxCycleNum.items().size(), 1u);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(Click("mnuUndo").ok());
  EXPECT_EQ(File(), before);
}

}  // namespace
}  // namespace zento
