#include "ui/main/control_panel.h"

#include <gmock/gmock.h>

#include "exchange/information_sheet.h"
#include "ui/main/main_test_rig.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr Key kEnter{KeyCode::kEnter};

class ControlPanel : public ::testing::Test, protected MainRig {
 protected:
  std::string Cell(int row) { return Panel().InformationSheet.Cell(row, 1); }
  void Edit(int row, const std::string& text) {
    ASSERT_TRUE(Panel().InformationSheet.UserClickCell(row, 1).ok());
    ASSERT_TRUE(Panel().txtEditField.UserSet(text).ok());
    ASSERT_TRUE(Panel().txtEditField.UserKey(kEnter).ok());
    machine.Settle();
  }
};

TEST_F(ControlPanel, BeginsWithEmptyTracksAndTheSettings) {
  FillCV(0);
  Panel();
  EXPECT_EQ(ws.tracks.Record(0).Mode, kModeNone);
  EXPECT_FALSE(ws.SettingsLoaded);
  EXPECT_EQ(ws.settings.CV[0].CVSamplingRate, 100);
  EXPECT_THAT(Panel().cbxReference.items(), ElementsAre("", "SHE", "Ag|AgCl|sat.", "SCE", "RHE"));
  EXPECT_EQ(Panel().InformationSheet.Cell(3, 0), "Scan rate /mVs-1");
  EXPECT_EQ(Cell(0), "");
  EXPECT_THAT(machine.dialogs.messages, IsEmpty());
}

TEST_F(ControlPanel, TellsOnceWhenTheCalibrationIsMissing) {
  ASSERT_TRUE(machine.files.Replace(SettingsPath("home"), "DABoard=1\r\n").ok());
  Panel();
  EXPECT_THAT(machine.dialogs.messages,
              ElementsAre("RPM vs. Voltage file cannot be found or invalid. You cannot use RPM "
                          "control."));
  EXPECT_EQ(ws.settings.DABoard, 0);
  EXPECT_TRUE(ws.SettingsLoaded);
}

TEST_F(ControlPanel, TheSelectorGoesRound) {
  frmControlPanel& panel = Panel();
  ASSERT_TRUE(panel.UpDown1.UserStep(-1).ok());
  EXPECT_EQ(panel.txtDatNum.text(), "20");
  ASSERT_TRUE(panel.UpDown1.UserStep(+1).ok());
  EXPECT_EQ(panel.txtDatNum.text(), "0");
  ws.ShowTrack(7);
  EXPECT_EQ(panel.txtDatNum.text(), "7");
  EXPECT_EQ(panel.current_track(), 7);
  ws.ShowTrack(21);
  EXPECT_EQ(panel.current_track(), 7);
}

TEST_F(ControlPanel, ShowsTheHeader) {
  frmControlPanel& panel = Panel();
  FillCV(3);
  TrackRecord& record = ws.tracks.Record(3);
  record.MeasTime = "2026/11/22 21:32:39";
  record.Scanrate = 50;
  record.Conc = 1e-6;
  record.ref = 3;
  record.pH = 1;
  panel.ShowDataInfo(3);
  std::vector<std::string> values;
  for (int row = 0; row < kSheetRows; ++row) values.push_back(Cell(row));
  EXPECT_THAT(values, ElementsAre("CV", "Pt", "2026/11/22 21:32:39", "50", "0.1", "0.6", "-0.2",
                                  "0", "5", "1E-06", "0.001", "0", "1"));
  EXPECT_EQ(panel.lblTrackTitle.text(), "Pt");
  EXPECT_EQ(panel.cbxReference.selected(), 3);
  panel.ShowDataInfo(4);
  EXPECT_EQ(Cell(1), "");
  EXPECT_EQ(panel.lblTrackTitle.text(), "");
  EXPECT_EQ(panel.cbxReference.selected(), 0);

  record.Mode = 99;  // as files of other origin may have them
  record.ref = -7;
  panel.ShowDataInfo(3);
  EXPECT_EQ(Cell(0), "None");
  EXPECT_EQ(panel.cbxReference.selected(), -1);
}

TEST_F(ControlPanel, StoresWhatWasTypedWithEnterOnly) {
  frmControlPanel& panel = Panel();
  FillCV(0);
  panel.ShowDataInfo(0);
  ASSERT_TRUE(panel.InformationSheet.UserClickCell(kSheetTitle, 0).ok());
  EXPECT_EQ(panel.txtEditField.text(), "Pt");
  ASSERT_TRUE(panel.txtEditField.UserSet("Au").ok());
  EXPECT_EQ(ws.tracks.Record(0).Title, "Pt");
  Edit(kSheetTitle, "Au 電極");
  EXPECT_EQ(ws.tracks.Record(0).Title, "Au 電極");
  EXPECT_EQ(panel.lblTrackTitle.text(), "Au 電極");
  Edit(kSheetScanrate, " 20mV/s");
  EXPECT_EQ(ws.tracks.Record(0).Scanrate, 20);
  EXPECT_EQ(Cell(kSheetScanrate), "20");
  Edit(kSheetV3rd, "-.25");
  EXPECT_EQ(ws.tracks.Record(0).V[2], -0.25);
  Edit(kSheetConc, "none");
  EXPECT_EQ(ws.tracks.Record(0).Conc, 0);
  const TrackRecord before = ws.tracks.Record(0);
  for (const int row : {kSheetMode, kSheetTime, kSheetPoints}) Edit(row, "7");
  EXPECT_EQ(ws.tracks.Record(0), before);
  EXPECT_EQ(Cell(kSheetPoints), "5");
}

TEST_F(ControlPanel, OffersToRescaleTheCurrents) {
  frmControlPanel& panel = Panel();
  FillCV(0);
  panel.ShowDataInfo(0);
  machine.dialogs.Answer("yes");
  Edit(kSheetDiskYScale, "0.002");
  EXPECT_THAT(machine.dialogs.questions, ElementsAre("Do you want to multiply disk current by 2?"));
  EXPECT_DOUBLE_EQ(ws.tracks.Value(1, 0, 3), 6e-4);
  machine.dialogs.Answer("no");
  Edit(kSheetDiskYScale, "0.001");
  EXPECT_DOUBLE_EQ(ws.tracks.Value(1, 0, 3), 6e-4);
  EXPECT_EQ(ws.tracks.Record(0).DiskYscale, 0.001);

  // From 0 and to 0 there is nothing to ask.
  Edit(kSheetRingYScale, "1e-5");
  Edit(kSheetRingYScale, "0");
  EXPECT_EQ(machine.dialogs.questions.size(), 2u);
  Edit(kSheetRingYScale, "1e-5");
  machine.dialogs.Answer("yes");
  Edit(kSheetRingYScale, "5e-6");
  EXPECT_EQ(machine.dialogs.questions.back(), "Do you want to multiply ring current by 0.5?");
  EXPECT_DOUBLE_EQ(ws.tracks.Value(2, 0, 4), 2e-6);
  EXPECT_DOUBLE_EQ(ws.tracks.Value(1, 0, 3), 6e-4);
}

TEST_F(ControlPanel, ConvertsPotentialsBetweenReferences) {
  frmControlPanel& panel = Panel();
  FillCV(0);
  ws.tracks.Record(0).ref = 3;
  panel.ShowDataInfo(0);
  machine.dialogs.Answer("yes");
  ASSERT_TRUE(panel.cbxReference.UserChoose(2).ok());
  machine.Settle();
  const TrackRecord& record = ws.tracks.Record(0);
  EXPECT_EQ(record.ref, 2);
  EXPECT_NEAR(ws.tracks.Value(0, 0, 4), 0.442, 1e-12);
  EXPECT_NEAR(record.V[2], -0.158, 1e-12);
  EXPECT_NEAR(record.Vxmin, -0.158, 1e-12);
  EXPECT_NEAR(record.Vxmax, 0.642, 1e-12);
  EXPECT_EQ(Cell(kSheetV1st), "0.142");

  ws.tracks.Record(0).ref = 1;
  machine.dialogs.Answer("yes");
  machine.dialogs.Answer("7");
  ASSERT_TRUE(panel.cbxReference.UserChoose(4).ok());
  machine.Settle();
  EXPECT_EQ(machine.dialogs.questions.back(), "Please input pH of the solution.");
  EXPECT_EQ(record.pH, 7);
  EXPECT_NEAR(ws.tracks.Value(0, 0, 0), 0.042 + 0.413, 1e-12);
  EXPECT_EQ(Cell(kSheetPH), "7");

  machine.dialogs.Answer("no");
  ASSERT_TRUE(panel.cbxReference.UserChoose(1).ok());
  machine.Settle();
  EXPECT_EQ(record.ref, 1);
  EXPECT_NEAR(ws.tracks.Value(0, 0, 0), 0.042 + 0.413, 1e-12);
}

TEST_F(ControlPanel, LeavesReferencesWhereThereIsNothingToConvert) {
  frmControlPanel& panel = Panel();
  FillCV(0);
  panel.ShowDataInfo(0);
  ASSERT_TRUE(panel.cbxReference.UserChoose(0).ok());
  for (const Mode mode : {kModeNone, kModePS, kModeRPMvsj, kModeMulti}) {
    ws.tracks.Record(0).Mode = mode;
    ASSERT_TRUE(panel.cbxReference.UserChoose(1).ok());
    EXPECT_EQ(panel.cbxReference.selected(), 0);
    EXPECT_EQ(ws.tracks.Record(0).ref, 0);
  }
  EXPECT_THAT(machine.dialogs.questions, IsEmpty());
  // Giving up at the pH gives up the conversion.
  ws.tracks.Record(0).Mode = kModeCV;
  machine.dialogs.Answer("yes");
  machine.dialogs.Answer("cancel");
  ASSERT_TRUE(panel.cbxReference.UserChoose(4).ok());
  machine.Settle();
  EXPECT_EQ(panel.cbxReference.selected(), 0);
  EXPECT_EQ(ws.tracks.Value(0, 0, 4), 0.4);
}

TEST_F(ControlPanel, DeletesTheTrackItAskedAbout) {
  frmControlPanel& panel = Panel();
  FillCV(0);
  FillCV(5);
  panel.ShowDataInfo(5);
  machine.dialogs.Answer("cancel");
  ASSERT_TRUE(Click("mnuDeleteTrack").ok());
  EXPECT_EQ(ws.tracks.Record(5).Mode, kModeCV);
  machine.dialogs.Answer("ok");
  ASSERT_TRUE(panel.Find("mnuDeleteTrack")->UserClick().ok());
  panel.ShowDataInfo(0);  // a run has ended in the meantime
  machine.Settle();
  EXPECT_EQ(ws.tracks.Record(5).Mode, kModeNone);
  EXPECT_EQ(ws.tracks.Record(0).Mode, kModeCV);
  EXPECT_EQ(machine.dialogs.questions.back(), "Would you like to delete the present track?");
}

TEST_F(ControlPanel, WhatWindowsChangeIsTakenBackAndDoneAgain) {
  frmControlPanel& panel = Panel();
  FillCV(5);
  panel.ShowDataInfo(5);
  auto& undo = dynamic_cast<MenuItem&>(*panel.Find("mnuUndo"));
  auto& redo = dynamic_cast<MenuItem&>(*panel.Find("mnuRedo"));
  EXPECT_FALSE(undo.Usable() || redo.Usable());
  const std::string before = FormatTracks(ws.tracks);

  ASSERT_TRUE(panel.InformationSheet.UserClickCell(kSheetTitle, 1).ok());
  ASSERT_TRUE(panel.txtEditField.UserType("Au").ok());
  ASSERT_TRUE(panel.txtEditField.UserKey({KeyCode::kEnter}).ok());
  EXPECT_EQ(undo.caption(), "Undo Edit of Title");
  machine.dialogs.Answer("ok");
  ASSERT_TRUE(Click("mnuDeleteTrack").ok());
  EXPECT_EQ(undo.caption(), "Undo Removal of track 5");

  panel.ShowDataInfo(0);
  ASSERT_TRUE(Click("mnuUndo").ok());
  EXPECT_EQ(panel.current_track(), 5);  // shows what came back
  EXPECT_EQ(panel.lblTrackTitle.text(), ws.tracks.Record(5).Title);
  ASSERT_TRUE(Click("mnuUndo").ok());
  EXPECT_EQ(FormatTracks(ws.tracks), before);
  EXPECT_EQ(undo.caption(), "Undo");
  EXPECT_FALSE(undo.Usable());
  ASSERT_TRUE(Click("mnuRedo").ok());
  EXPECT_EQ(redo.caption(), "Redo Removal of track 5");

  ws.tracks.Record(5).Title = "measured";
  ASSERT_TRUE(Click("mnuUndo").ok());
  EXPECT_THAT(panel.lblNotice.text(), HasSubstr("track 5 was measured"));
  EXPECT_EQ(ws.tracks.Record(5).Title, "measured");
}

TEST_F(ControlPanel, MenusOpenWhatIsBuilt) {
  frmControlPanel& panel = Panel();
  for (const char* entry : {"mnuOpen", "mnuSaveAs", "mnuImportTrack", "mnuSearchTrack", "mnuQuit",
                            "mnuDeleteTrack", "mnuPowerControl", "mnuAdjustRPM", "mnuSettings"}) {
    EXPECT_TRUE(panel.Find(entry)->enabled()) << entry;
  }
  EXPECT_FALSE(panel.Find("mnuMacro")->enabled());
  ASSERT_TRUE(Click("mnuPowerControl").ok());
  EXPECT_TRUE(machine.desktop.Shown("frmPower"));
}

TEST_F(ControlPanel, SavesAndOpensTrackFiles) {
  frmControlPanel& panel = Panel();
  EXPECT_EQ(panel.caption(), "ZENTO");
  FillCV(2);
  machine.dialogs.Answer("data/run");
  ASSERT_TRUE(Click("mnuSaveAs").ok());
  EXPECT_EQ(panel.caption(), "ZENTO --run.znt");
  EXPECT_TRUE(machine.files.Exists("data/run.znt"));

  ws.tracks.ClearTrack(2);
  FillCV(0);
  panel.ShowDataInfo(9);
  machine.dialogs.Answer("data/run.znt");
  ASSERT_TRUE(Click("mnuOpen").ok());
  EXPECT_EQ(ws.tracks.Record(0).Mode, kModeNone);
  EXPECT_EQ(ws.tracks.Record(2).Title, "Pt");
  EXPECT_EQ(panel.txtDatNum.text(), "0");
  EXPECT_EQ(ws.DataGeneration, 1);
  ASSERT_TRUE(Click("mnuOpen").ok());  // cancelled
  EXPECT_EQ(ws.DataGeneration, 1);
}

TEST_F(ControlPanel, FailuresOfFilesLoseNothing) {
  frmControlPanel& panel = Panel();
  FillCV(2);
  ASSERT_TRUE(panel.SaveFile("run.znt").ok());
  const std::string saved = machine.files.Read("run.znt").value();

  // The dialog asked about "run", which does not exist.
  FillCV(3);
  machine.dialogs.Answer("run");
  machine.dialogs.Answer("no");
  ASSERT_TRUE(Click("mnuSaveAs").ok());
  EXPECT_THAT(machine.dialogs.questions.back(), HasSubstr("run.znt already exists."));
  EXPECT_EQ(machine.files.Read("run.znt").value(), saved);

  machine.files.FailNext(MemoryFiles::Operation::kReplace, "no space left on device");
  machine.dialogs.Answer("other.znt");
  ASSERT_TRUE(Click("mnuSaveAs").ok());
  EXPECT_EQ(panel.caption(), "ZENTO --run.znt");
  EXPECT_THAT(panel.lblNotice.text(), HasSubstr("NOT SAVED"));
  EXPECT_THAT(machine.dialogs.messages, IsEmpty());

  ASSERT_TRUE(machine.files.Replace("text.znt", "something else").ok());
  machine.dialogs.Answer("text.znt");
  ASSERT_TRUE(Click("mnuOpen").ok());
  EXPECT_THAT(machine.dialogs.TakeMessages(), ElementsAre("This file type is not recognized."));
  EXPECT_EQ(ws.tracks.Record(3).Mode, kModeCV);
  machine.dialogs.Answer("missing.znt");
  ASSERT_TRUE(Click("mnuOpen").ok());
  EXPECT_THAT(machine.dialogs.messages, IsEmpty());
  EXPECT_THAT(panel.lblNotice.text(), HasSubstr("missing.znt"));
}

TEST_F(ControlPanel, OpeningKeepsTracksThatStandInNoFile) {
  frmControlPanel& panel = Panel();
  FillCV(2);
  ASSERT_TRUE(panel.SaveFile("run.znt").ok());
  ASSERT_TRUE(panel.OpenFile("run.znt").complete());
  EXPECT_FALSE(machine.files.Exists("home/Rescued tracks 1.znt")) << "all was saved";

  ws.tracks.Record(2).Title = "edited";
  machine.files.FailNext(MemoryFiles::Operation::kReplace, "disk full");
  EXPECT_FALSE(panel.OpenFile("run.znt").complete());
  EXPECT_EQ(ws.tracks.Record(2).Title, "edited");
  EXPECT_THAT(panel.lblNotice.text(), HasSubstr("disk full"));

  ASSERT_TRUE(panel.OpenFile("run.znt").complete());
  EXPECT_EQ(ws.tracks.Record(2).Title, "Pt");
  EXPECT_THAT(machine.files.Read("home/Rescued tracks 1.znt").value(), HasSubstr("Title=edited"));
  EXPECT_THAT(panel.lblNotice.text(), HasSubstr("Rescued tracks 1.znt"));
}

TEST_F(ControlPanel, ClosingEndsTheRunThenSavesThenClosesTheRest) {
  std::vector<std::string> steps;
  machine.desktop.on_quit = [&] { steps.emplace_back("quit"); };
  Panel();
  machine.desktop.Show("Graph1");
  machine.desktop.Show("frmSettings");
  ws.end_active_run = [&] {
    steps.emplace_back("end run");
    ws.settings.CVNum = 4;
    ws.end_active_run = nullptr;
  };
  ASSERT_TRUE(Panel().Find("mnuQuit")->UserClick().ok());
  EXPECT_THAT(steps, ElementsAre("end run", "quit"));
  EXPECT_THAT(machine.desktop.Loaded(), IsEmpty());
  EXPECT_THAT(machine.files.Read(SettingsPath("home")).value(), HasSubstr("CVNum= 4\r\n"));
  EXPECT_FALSE(ws.show_data_info);
  ws.ShowTrack(3);
  machine.Settle();
}

TEST_F(ControlPanel, AnswersThatComeTooLateDoNothing) {
  FillCV(0);
  Panel();
  FillCV(0);
  machine.dialogs.Answer("ok");
  ASSERT_TRUE(Panel().Find("mnuDeleteTrack")->UserClick().ok());
  machine.desktop.RequestClose("frmControlPanel");
  machine.Settle();
  EXPECT_EQ(ws.tracks.Record(0).Mode, kModeCV);
}

class SettingsWindow : public ::testing::Test, protected MainRig {
 protected:
  frmSettings& Window() { return *dynamic_cast<frmSettings*>(machine.desktop.Show("frmSettings")); }
};

TEST_F(SettingsWindow, ShowsWhatIsStored) {
  ws.settings.ADBoard = 2;
  ws.settings.DeviceName = "AIO07";
  ws.settings.CardNumber = 3;
  ws.settings.DynamicRange = 1;
  ws.settings.GPIBControl = 1;
  ws.settings.GPIBAddress = 5;
  ws.settings.DABoard = 1;
  ws.settings.RPMvsVoltageFile = "rpm.txt";
  ws.settings.PowerControl = 2;
  ws.settings.PrevGraphDrawSetting = 1;
  ws.settings.SoundFileName = "done.wav";
  frmSettings& window = Window();
  EXPECT_EQ(window.opnDevice.items()[2], "PCI-9112");
  EXPECT_EQ(window.opnDevice.selected(), 2);
  EXPECT_EQ(window.txtDevice.text(), "AIO07");
  EXPECT_EQ(window.txtCardNumber.text(), "3");
  EXPECT_EQ(window.chkDynamicRange.value(), 1);
  EXPECT_EQ(window.opnFGControl.items()[1], "Controll by GPIB-232CT-A");
  EXPECT_EQ(window.opnFGControl.selected(), 1);
  EXPECT_EQ(window.txtGPIBAddr.text(), "5");
  EXPECT_EQ(window.opnMotor.selected(), 1);
  EXPECT_EQ(window.txtRPMvsVoltageFile.text(), "rpm.txt");
  EXPECT_EQ(window.opnPowerControl.items()[1], "Printer Port");
  EXPECT_EQ(window.opnPowerControl.selected(), 2);
  EXPECT_EQ(window.opnDrawMethod.selected(), 1);
  EXPECT_EQ(window.txtSoundFileName.text(), "done.wav");
}

TEST_F(SettingsWindow, EveryChangeIsStoredAtOnce) {
  frmSettings& window = Window();
  ws.settings.GPIBAddress = 7;
  ASSERT_TRUE(window.opnDevice.UserChoose(0).ok());
  EXPECT_THAT(machine.dialogs.messages, IsEmpty());
  ASSERT_TRUE(window.opnDevice.UserChoose(1).ok());
  EXPECT_THAT(machine.dialogs.messages, ElementsAre("Zentoを再起動後有効になります"));
  ASSERT_TRUE(window.txtDevice.UserSet("AIO01").ok());
  ASSERT_TRUE(window.txtCardNumber.UserSet("2.5").ok());
  ASSERT_TRUE(window.chkDynamicRange.UserSet("2").ok());
  ASSERT_TRUE(window.opnFGControl.UserChoose(2).ok());
  ASSERT_TRUE(window.updAddr.UserStep(+1).ok());
  EXPECT_EQ(ws.settings.GPIBAddress, 7);
  ASSERT_TRUE(window.updAddr.UserStep(-1).ok());
  EXPECT_EQ(window.txtGPIBAddr.text(), "6");
  ASSERT_TRUE(window.opnMotor.UserChoose(1).ok());
  machine.dialogs.Answer("folder/rpm.txt");
  ASSERT_TRUE(window.cmdRPMvsVoltOpen.UserClick().ok());
  machine.Settle();
  ASSERT_TRUE(window.opnPowerControl.UserChoose(1).ok());
  ASSERT_TRUE(window.opnDrawMethod.UserChoose(1).ok());
  ASSERT_TRUE(window.txtSoundFileName.UserType("x.wav").ok());

  Settings expected;
  expected.ADBoard = 1;
  expected.DeviceName = "AIO01";
  expected.CardNumber = 2;
  expected.DynamicRange = 2;
  expected.GPIBControl = 2;
  expected.GPIBAddress = 6;
  expected.DABoard = 1;
  expected.RPMvsVoltageFile = "folder/rpm.txt";
  expected.PowerControl = 1;
  expected.PrevGraphDrawSetting = 1;
  expected.SoundFileName = "x.wav";
  EXPECT_EQ(ws.settings, expected);
  for (int i = 0; i < 9; ++i) ASSERT_TRUE(window.updAddr.UserStep(-1).ok());
  EXPECT_EQ(ws.settings.GPIBAddress, 0);
  ASSERT_TRUE(window.cmdOK.UserClick().ok());
  EXPECT_EQ(machine.desktop.Find("frmSettings"), nullptr);
  EXPECT_THAT(machine.files.List(), IsEmpty());
}

}  // namespace
}  // namespace zento
