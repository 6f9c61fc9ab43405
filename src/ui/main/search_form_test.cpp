#include "ui/main/search_form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/track_history.h"
#include "text/natural_order.h"
#include "ui/main/import_form.h"
#include "ui/main/main_test_rig.h"

namespace zento {
namespace {

std::string FileOf(const std::vector<std::pair<int, std::string>>& titles, double rpm = 0) {
  TrackStore tracks;
  for (const auto& [track, title] : titles) {
    TrackRecord& record = tracks.Record(track);
    record.Mode = track % 2 == 0 ? kModeCV : kModePS;
    record.Title = title;
    record.RPM = rpm;
    record.Scanrate = 50 + track;
    record.pnum = 3;
    for (int i = 0; i < 3; ++i) {
      tracks.SetValue(0, track, i, 0.1 * i);
      tracks.SetValue(1, track, i, 1e-3 * (i + track));
    }
  }
  return FormatTracks(tracks);
}

class SearchFormTest : public testing::Test {
 protected:
  SearchFormTest() {
    Put("/data/run10.znt", FileOf({{0, "Pt/C in 0.1M HClO4"}, {3, "gold"}}));
    Put("/data/Run2.ZNT", FileOf({{2, "pt/C 0.1m"}}, 1600));
    Put("/data/notes.txt", FileOf({{1, "no track file by its name"}}));
    Put("/data/foreign.znt", "PK\x03\x04");
    Put("/data/sub/deep.znt", FileOf({{4, "deep"}}));
    rig_.ws.home = "/data";
    rig_.Panel();
  }
  void Put(const char* path, const std::string& bytes) {
    ASSERT_TRUE(rig_.machine.files.Replace(path, bytes).ok());
  }
  frmSearchTrack& Window() {
    return *dynamic_cast<frmSearchTrack*>(rig_.machine.desktop.Show("frmSearchTrack"));
  }
  frmImportTrack& Import() {
    return *dynamic_cast<frmImportTrack*>(rig_.machine.desktop.Show("frmImportTrack"));
  }
  std::string Search(frmSearchTrack& window) {
    EXPECT_TRUE(window.cmdSearch.UserClick().ok());
    EXPECT_TRUE(rig_.machine.RunUntil([&] { return !window.searching(); }, 60'000'000));
    std::string titles;
    for (int row = 0; row < window.SearchResult.rows(); ++row) {
      titles += window.SearchResult.Cell(row, 2) + "; ";
    }
    return titles;
  }
  std::vector<std::string> Messages() { return rig_.machine.dialogs.TakeMessages(); }

  MainRig rig_;
};

TEST_F(SearchFormTest, LooksFirstWhereTheLastTrackFileLies) {
  rig_.Panel().OpenFile("/data/sub/deep.znt");
  EXPECT_EQ(Window().lists.folder(), "/data/sub");
  ASSERT_TRUE(rig_.Click("mnuSaveAs").ok());
  ASSERT_EQ(rig_.machine.dialogs.file_questions.size(), 1u);
  EXPECT_EQ(rig_.machine.dialogs.file_questions[0].folder, "/data/sub");
  EXPECT_EQ(rig_.machine.dialogs.file_questions[0].suggested, "deep.znt");
}

TEST_F(SearchFormTest, WithoutCriteriaEveryTrackOfEveryTrackFileInTheFolderIsFound) {
  frmSearchTrack& window = Window();
  EXPECT_EQ(window.lists.File1.items(),
            (std::vector<std::string>{"foreign.znt", "Run2.ZNT", "run10.znt"}));
  EXPECT_EQ(Search(window), "pt/C 0.1m; Pt/C in 0.1M HClO4; gold; ");
  EXPECT_EQ(window.SearchResult.Value(),
            "/data/Run2.ZNT\t2\tpt/C 0.1m\tCV\t1600\t52\n"
            "/data/run10.znt\t0\tPt/C in 0.1M HClO4\tCV\t0\t50\n"
            "/data/run10.znt\t3\tgold\tPS\t0\t53");
  EXPECT_EQ(window.lblState.text(),
            "3 tracks found in 3 files; 1 file could not be read as track files");
  EXPECT_TRUE(window.cmdSearch.enabled());
  Put("/data/later/x.znt", FileOf({{5, "a folder before sub"}}));
  EXPECT_TRUE(window.chkSubfolders.UserClick().ok());
  EXPECT_EQ(Search(window), "pt/C 0.1m; Pt/C in 0.1M HClO4; gold; a folder before sub; deep; ");
}

TEST_F(SearchFormTest, EveryCriterionThatIsOnHasToHold) {
  frmSearchTrack& window = Window();
  EXPECT_TRUE(window.KeyWords.UserSet("Pt 0.1M").ok());
  EXPECT_TRUE(window.opnTitle.UserClick().ok());
  EXPECT_EQ(Search(window), "Pt/C in 0.1M HClO4; ");
  EXPECT_TRUE(window.KeyWords.UserSet("t").ok());
  EXPECT_TRUE(window.txtRPM.UserSet("1600").ok());
  EXPECT_TRUE(window.opnRPM.UserClick().ok());
  EXPECT_EQ(Search(window), "pt/C 0.1m; ");
  EXPECT_TRUE(window.txtRPM.UserSet("0").ok());  // a sensible rate
  EXPECT_EQ(Search(window), "Pt/C in 0.1M HClO4; ");
  EXPECT_TRUE(window.opnTitle.UserClick().ok());
  EXPECT_TRUE(window.opnRPM.UserClick().ok());
  EXPECT_TRUE(window.cbxMeasurement.UserSet("3").ok());
  EXPECT_TRUE(window.opnMeasurement.UserClick().ok());
  EXPECT_EQ(Search(window), "gold; ");
  EXPECT_TRUE(window.txtScanrate.UserSet("53.5").ok());
  EXPECT_TRUE(window.opnScanrate.UserClick().ok());
  EXPECT_EQ(Search(window), "");
}

TEST_F(SearchFormTest, RefusesCriteriaWithoutSenseInOrder) {
  frmSearchTrack& window = Window();
  EXPECT_TRUE(window.opnTitle.UserClick().ok());
  EXPECT_TRUE(window.opnRPM.UserClick().ok());
  EXPECT_TRUE(window.opnScanrate.UserClick().ok());
  EXPECT_TRUE(window.txtRPM.UserSet("-1").ok());
  EXPECT_TRUE(window.cmdSearch.UserClick().ok());
  EXPECT_TRUE(window.KeyWords.UserSet("x").ok());
  EXPECT_TRUE(window.cmdSearch.UserClick().ok());
  EXPECT_TRUE(window.txtRPM.UserSet("0").ok());
  EXPECT_TRUE(window.cmdSearch.UserClick().ok());
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Please input keywords!", "Please input RPM!",
                                                  "Please input scanrate!"}));
  EXPECT_FALSE(window.searching());
}

TEST_F(SearchFormTest, HoldsTheFirstTwoHundredInTheOrderOfTheFiles) {
  std::vector<std::pair<int, std::string>> tracks;
  for (int track = 0; track < kTracks; ++track) tracks.emplace_back(track, "t");
  for (int file = 1; file <= 15; ++file) {
    Put(("/many/" + std::to_string(file) + ".znt").c_str(), FileOf(tracks));
  }
  frmSearchTrack& window = Window();
  ASSERT_TRUE(window.lists.ShowFolder("/many").ok());
  Search(window);
  ASSERT_EQ(window.SearchResult.rows(), 200);
  EXPECT_EQ(window.SearchResult.Cell(199, 0), "/many/10.znt");
  EXPECT_EQ(window.SearchResult.Cell(199, 1), "10");
  EXPECT_NE(window.lblState.text().find("there may be more"), std::string::npos);
}

TEST_F(SearchFormTest, AHugeFileIsReadInSlicesAndCanBeCancelled) {
  std::string huge = FileOf({{0, "early"}});
  huge.resize(std::size_t{80} << 20, '7');
  huge += "\r\nDataNum= 9\r\nMode= 1\r\nTitle=late\r\n";
  Put("/huge/a.znt", huge);
  frmSearchTrack& window = Window();
  ASSERT_TRUE(window.lists.ShowFolder("/huge").ok());
  EXPECT_TRUE(window.cmdSearch.UserClick().ok());
  EXPECT_FALSE(window.cmdSearch.enabled());
  rig_.machine.RunFor(1500);
  EXPECT_TRUE(window.searching());
  EXPECT_GT(window.SearchProgress.position(), 0);
  EXPECT_LT(window.SearchProgress.position(), window.SearchProgress.maximum());
  EXPECT_TRUE(window.cmdCancel.UserClick().ok());
  EXPECT_FALSE(window.searching());
  EXPECT_TRUE(window.cmdSearch.enabled());
  EXPECT_EQ(window.lblState.text(), "Cancelled: 0 tracks found in 0 of 1 file");
  EXPECT_EQ(Search(window), "early; late; ");
}

TEST_F(SearchFormTest, AFoundTrackIsShownAndImportedAndCanBeTakenBack) {
  frmSearchTrack& window = Window();
  EXPECT_TRUE(window.cmdImport.UserClick().ok());
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Please Select a Track!"}));
  Search(window);
  EXPECT_TRUE(window.SearchResult.UserClickCell(2, 0).ok());
  EXPECT_EQ(rig_.ws.tracks.Record(22).Title, "gold");
  EXPECT_EQ(rig_.ws.tracks.Record(0).Mode, kModeNone);
  EXPECT_TRUE(window.UpDown1.UserStep(-1).ok());
  EXPECT_EQ(window.txtTrack.text(), "20");
  EXPECT_TRUE(window.txtTrack.UserSet("5").ok());
  EXPECT_TRUE(window.cmdImport.UserClick().ok());
  EXPECT_EQ(window.lblTrackTitle.text(), "gold");
  EXPECT_EQ(rig_.ws.tracks.Value(1, 5, 2), 5e-3);
  EXPECT_EQ(rig_.ws.history.UndoName(), "Import of track 5");
  ASSERT_TRUE(rig_.ws.history.Undo(rig_.ws.tracks).ok());
  EXPECT_EQ(rig_.ws.tracks.Record(5).Mode, kModeNone);

  // The file has changed since.
  Put("/data/run10.znt", FileOf({{0, "other"}}));
  EXPECT_TRUE(window.cmdImport.UserClick().ok());
  EXPECT_EQ(Messages(),
            (std::vector<std::string>{"Import track: /data/run10.znt: no track 3 in it"}));
  EXPECT_EQ(rig_.ws.history.UndoName(), "");
}

TEST_F(SearchFormTest, LongPathsShowTheirLastThirtyCharacters) {
  Put("/long/測定測定測定測定測定測定測定測定測定測定測定測定測定測定測定測定測定/a.znt",
      FileOf({{0, "x"}}));
  frmSearchTrack& window = Window();
  ASSERT_TRUE(window.lists.ShowFolder("/long").ok());
  EXPECT_TRUE(window.lists.Dir1.UserOpen(1).ok());
  Search(window);
  EXPECT_EQ(window.SearchResult.Cell(0, 0),
            "測定測定測定測定測定測定測定測定測定測定測定測定/a.znt");
}

TEST_F(SearchFormTest, TheSheetShowsTheTracksOfAFileAndOneIsImported) {
  frmImportTrack& window = Import();
  EXPECT_TRUE(window.cmdImport.UserClick().ok());
  ASSERT_TRUE(window.ChooseFile("/data/run10.znt").ok());
  EXPECT_EQ(window.fgcDataSheet.rows(), 22);
  EXPECT_EQ(window.fgcDataSheet.Cell(0, 4), "scanrate");
  EXPECT_EQ(window.fgcDataSheet.Cell(4, 0), "3");
  EXPECT_EQ(window.fgcDataSheet.Cell(4, 2), "gold");
  EXPECT_EQ(window.fgcDataSheet.Cell(5, 2), " ");
  EXPECT_TRUE(window.fgcDataSheet.UserClickCell(5, 0).ok());  // empty
  EXPECT_TRUE(window.cmdImport.UserClick().ok());
  EXPECT_EQ(Messages(), (std::vector<std::string>(2, "Please select a varid track!")));
  EXPECT_TRUE(window.fgcDataSheet.UserClickCell(4, 2).ok());
  EXPECT_EQ(rig_.ws.tracks.Record(22).Title, "gold");
  rig_.ws.ShowTrack(7);
  EXPECT_TRUE(window.cmdImport.UserClick().ok());
  EXPECT_EQ(rig_.ws.tracks.Record(7).Title, "gold");
  EXPECT_EQ(rig_.Panel().lblTrackTitle.text().find("gold") != std::string::npos, true);
  EXPECT_EQ(rig_.ws.history.UndoName(), "Import of track 7");

  ASSERT_TRUE(window.ChooseFile("/data/foreign.znt").ok());
  EXPECT_EQ(window.fgcDataSheet.Cell(4, 2), " ");
  EXPECT_EQ(window.selected_track(), -1);
}

TEST_F(SearchFormTest, FoldersAreWalkedAndTheLastOneIsRemembered) {
  frmImportTrack& window = Import();
  EXPECT_EQ(window.lists.Dir1.items(), (std::vector<std::string>{"..", "sub"}));
  EXPECT_EQ(window.lists.Drive1.selected(), 0);
  EXPECT_TRUE(window.lists.Dir1.UserOpen(1).ok());
  EXPECT_EQ(window.lists.txtFolder.text(), "/data/sub");
  EXPECT_EQ(window.lists.File1.items(), (std::vector<std::string>{"deep.znt"}));
  EXPECT_TRUE(window.cmdClose.UserClick().ok());
  rig_.machine.Settle();
  frmSearchTrack& search = Window();
  EXPECT_EQ(search.lists.txtFolder.text(), "/data/sub");
  EXPECT_TRUE(search.lists.Dir1.UserOpen(0).ok());
  EXPECT_EQ(search.lists.txtFolder.text(), "/data");
  EXPECT_TRUE(search.lists.txtFolder.UserSet("/nowhere").ok());
  EXPECT_EQ(Messages().size(), 1U);
  EXPECT_EQ(search.lists.txtFolder.text(), "/data");
  EXPECT_TRUE(search.lists.Drive1.UserChoose(0).ok());
  EXPECT_EQ(search.lists.Dir1.items(), (std::vector<std::string>{"data"}));
}

TEST(NaturalLess, SortsAsAPersonDoes) {
  std::vector<std::string> names = {"b", "a10", "A2", "a2", "a02", "a", "", "a 1", "10", "9"};
  std::sort(names.begin(), names.end(),
            [](const auto& a, const auto& b) { return NaturalLess(a, b); });
  EXPECT_EQ(names,
            (std::vector<std::string>{"", "9", "10", "a", "a 1", "A2", "a02", "a2", "a10", "b"}));
}

}  // namespace
}  // namespace zento
