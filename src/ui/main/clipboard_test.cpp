// Tracks through the clipboard: the main window's menu, the special copy, long copies.

#include <gmock/gmock.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "core/track_file.h"
#include "core/track_history.h"
#include "exchange/exporters.h"
#include "exchange/test_tracks.h"
#include "ui/main/clipboard_special_copy_form.h"
#include "ui/main/main_test_rig.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class ClipboardTest : public ::testing::Test, protected MainRig {
 protected:
  ClipboardTest() {
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
  std::string Copied(int track, std::string_view entry) {
    panel->ShowDataInfo(track);
    EXPECT_TRUE(Click(std::string(entry)).ok());
    return machine.clipboard.Text();
  }
  void PasteOn(int track, const std::string& text) {
    machine.clipboard.SetText(text);
    panel->ShowDataInfo(track);
    EXPECT_TRUE(Click("mnuPastefromClip").ok());
  }
  std::string Export(const char* format, int track, const ExportOptions& options = {}) {
    auto text = ExportText(*FindExporter(format), {ws.tracks, track, ws.FileTitle, options});
    return text.ok() ? text.value() : std::string("kept");
  }

  frmControlPanel* panel;
};

TEST_F(ClipboardTest, EveryModeGoesRoundWithItsHeaderAndPoints) {
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

// The formats that have an entry in the menu; an empty track, or one of another mode, leaves the
// clipboard alone.
TEST_F(ClipboardTest, TheMenuCopiesWhatTheFormatsWrite) {
  int entries = 0;
  for (const Exporter& exporter : Exporters()) {
    if (exporter.menu_entry.empty()) continue;
    ++entries;
    EXPECT_EQ(panel->Find(exporter.menu_entry)->Value(), exporter.caption);
    for (const int track : {2, 5, 11}) {
      machine.clipboard.SetText("kept");
      EXPECT_EQ(Copied(track, exporter.menu_entry), Export(exporter.id.data(), track))
          << exporter.id << " of track " << track;
    }
  }
  EXPECT_EQ(entries, 4);
  EXPECT_THAT(Copied(2, "mnuCopyOnlyExpData"), StartsWith("title 2\r\n\r\nPotential/V\t"));
  EXPECT_EQ(panel->lblNotice.text(), "Copied track 2 to the clipboard");
}

TEST_F(ClipboardTest, PastingIsOneStepThatCanBeTakenBack) {
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

TEST_F(ClipboardTest, WithoutAModeThePointsStayAndTheTrackIsEmpty) {
  PasteOn(11, "0.1\t1\r\n0.2\t2\r\n");
  EXPECT_EQ(ws.tracks.Record(11).Mode, kModeNone);
  EXPECT_EQ(ws.tracks.Record(11).pnum, 2);
  EXPECT_EQ(ws.tracks.Record(11).Vxmax, 0);
  EXPECT_EQ(ws.tracks.Value(1, 11, 1), 2);
  EXPECT_THAT(panel->lblNotice.text(), HasSubstr("stays empty"));
}

TEST_F(ClipboardTest, APointBeyondTheLastIsSaid) {
  std::string text = "Mode\tCV\n";
  for (int i = 0; i < kMaxPoints + 2; ++i) text += "1\t2\n";
  PasteOn(11, text);
  EXPECT_EQ(ws.tracks.Record(11).pnum, kMaxPoints);
  EXPECT_THAT(panel->lblNotice.text(), HasSubstr("2 MORE HAD NO ROOM"));
}

TEST_F(ClipboardTest, ALongCopyGoesOnBehindTheProgressWindowAndCanBeEnded) {
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

class SpecialCopy : public ClipboardTest {
 protected:
  SpecialCopy() {
    ws.settings.O2CE = 0.39;
    panel->ShowDataInfo(2);
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

TEST_F(SpecialCopy, PassesEveryOptionOn) {
  EXPECT_EQ(Copy(), Export("all", 2));  // how it begins
  Set("opnDiskUnit", "1");
  Set("opnRingUnit", "2");
  Set("opnNormalisation", "2");
  Set("chkH2O", "1");
  Set("txtCE", "0.25");
  Set("chkAbsolute", "1");
  Set("opnPolarity", "2");
  Set("chkHeader", "0");
  ExportOptions options;
  options.header_block = false;
  options.table.disk_unit = 2;
  options.table.ring_unit = 3;
  options.table.normalisation = Normalisation::kPerWeight;
  options.table.water_fraction = true;
  options.table.collection_efficiency = 0.25;
  options.table.absolute = true;
  options.table.filter = PointFilter::kNegative;
  EXPECT_EQ(Copy(), Export("special", 2, options));
  EXPECT_EQ(ws.settings.O2CE, 0.25);
  options.table.logarithm = true;
  Set("chkLog", "1");
  EXPECT_EQ(Copy(), Export("special", 2, options));
  Set("opnPolarity", "0");
  options.table.filter = PointFilter::kAll;
  for (const auto& [box, text, thinning] :
       std::vector<std::tuple<const char*, const char*, Thinning>>{
           {"txtOrder", "2", {0, 0, 2}},
           {"txtDistance", "0.3", {0, 0.3, 0}},
           {"txtAngle", "20", {20, 0, 0}}}) {
    Set(box, text);
    options.thinning = thinning;
    const std::string copied = Copy();
    EXPECT_EQ(copied, Export("special", 2, options)) << box;
    options.thinning = {};
    EXPECT_NE(copied, Export("special", 2, options)) << box;
    Set(box, "none");
  }
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
  panel->ShowDataInfo(7);
  form->Activate();
  EXPECT_FALSE(form->opnRingUnit.enabled());
  EXPECT_TRUE(form->chkH2O.enabled());
  panel->ShowDataInfo(11);
  form->Activate();
  EXPECT_FALSE(form->cmdCopy.enabled());
  // Two cycles.
  TrackRecord& record = ws.tracks.Record(1);
  record.pnum = 9;
  record.V = {0, 0.2, 0};
  for (std::int32_t i = 0; i < 9; ++i) {
    ws.tracks.SetValue(0, 1, i, 0.1 * std::vector<int>{0, 1, 2, 1}[static_cast<unsigned>(i) % 4]);
  }
  panel->ShowDataInfo(1);
  form->Activate();
  EXPECT_FALSE(form->chkH2O.enabled());
  EXPECT_EQ(form->lblCycles.text(), "of 2");
  ASSERT_TRUE(form->updCycle.UserStep(+1).ok());
  ASSERT_TRUE(form->updCycle.UserStep(+1).ok());
  EXPECT_EQ(form->txtCycle.text(), "2");
  ExportOptions second;
  second.cycle = 2;
  EXPECT_EQ(Copy(), Export("special", 1, second));
  EXPECT_NE(Copy(), Export("special", 1));
}

}  // namespace
}  // namespace zento
