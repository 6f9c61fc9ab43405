#include <gmock/gmock.h>

#include "host/path_text.h"
#include "text/lines.h"
#include "ui/main/control_panel.h"
#include "ui/main/main_test_rig.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class RecentAndDropped : public ::testing::Test, protected MainRig {
 protected:
  // A file with one track of that title.
  void Write(const std::filesystem::path& path, const std::string& title) {
    TrackStore tracks;
    for (int track = 0; track < kTracks; ++track) tracks.ClearTrack(track);
    TrackRecord& record = tracks.Record(0);
    record.Mode = kModeCV;
    record.Title = title;
    record.pnum = 1;
    ASSERT_TRUE(machine.files.Replace(path, FormatTracks(tracks)).ok());
  }
  std::string Remembered() {
    const auto bytes = machine.files.Read("home/Recent files.txt");
    return bytes.ok() ? bytes.value() : "";
  }
  // The captions of the entries that a person sees.
  std::vector<std::string> Captions() {
    std::vector<std::string> captions;
    for (int place = 0; place < 10; ++place) {
      const Control* entry = Panel().Find("mnuRecent" + std::to_string(place));
      if (entry->visible()) captions.push_back(entry->Value());
    }
    return captions;
  }
};

TEST_F(RecentAndDropped, TheLatestFileComesFirstAndOncePerFile) {
  EXPECT_THAT(Captions(), IsEmpty());
  Write("/data/a.znt", "a");
  Write("/data/b.znt", "b");
  Panel().OpenFile("/data/a.znt");
  Panel().OpenFile("/data/b.znt");
  Panel().OpenFile("/data/../data/./a.znt");
  ASSERT_TRUE(Panel().SaveFile("/other folder/銀 c").ok());
  EXPECT_THAT(Captions(),
              ElementsAre("1 銀 c.znt - /other folder", "2 a.znt - /data", "3 b.znt - /data"));
  EXPECT_EQ(Panel().Find("mnuRecent2")->tip(), "/data/b.znt");
  EXPECT_EQ(Remembered(), "/other folder/銀 c.znt\r\n/data/a.znt\r\n/data/b.znt\r\n");

  ASSERT_TRUE(Click("mnuRecent2").ok());
  EXPECT_EQ(Panel().lblTrackTitle.text(), "b");
  EXPECT_EQ(Captions().front(), "1 b.znt - /data");
  // What was not opened or saved is not remembered.
  Panel().OpenFile("/data/none.znt");
  machine.files.FailNext(MemoryFiles::Operation::kReplace);
  EXPECT_FALSE(Panel().SaveFile("/data/full.znt").ok());
  EXPECT_EQ(Captions().size(), 3u);
}

TEST_F(RecentAndDropped, SaysWhereARunGoesThatOutlivesItsTracks) {
  Write("/data/a.znt", "a");
  ws.running_flag = -1;
  Panel().FilesDropped({"/data/a.znt"});
  EXPECT_THAT(Panel().lblNotice.text(), HasSubstr("what runs now will be stored among these"));
  Panel().OpenFile("/data/none.znt");
  EXPECT_THAT(Panel().lblNotice.text(), Not(HasSubstr("what runs now")));
}

TEST_F(RecentAndDropped, TenAreKeptUntilTheNextStart) {
  for (int i = 0; i < 12; ++i) {
    const std::string path = "/data/" + std::to_string(i) + ".znt";
    Write(path, path);
    Panel().OpenFile(path);
  }
  machine.desktop.RequestClose("frmControlPanel");
  machine.Settle();
  const auto captions = Captions();
  ASSERT_EQ(captions.size(), 10u);
  EXPECT_EQ(captions.front(), "1 11.znt - /data");
  EXPECT_EQ(captions.back(), "10 2.znt - /data");
}

TEST_F(RecentAndDropped, AFileThatWentAwayIsSaidAndLeavesTheList) {
  Write("/data/a.znt", "a");
  Write("/data/b.znt", "b");
  Panel().OpenFile("/data/b.znt");
  Panel().OpenFile("/data/a.znt");
  ASSERT_TRUE(machine.files.Rename("/data/b.znt", "/data/moved.znt").ok());
  ASSERT_TRUE(Click("mnuRecent1").ok());
  EXPECT_EQ(Panel().lblNotice.text(), "NOT OPENED: /data/b.znt is no longer there");
  EXPECT_EQ(Panel().lblTrackTitle.text(), "a");
  EXPECT_THAT(Captions(), ElementsAre("1 a.znt - /data"));
  EXPECT_EQ(Remembered(), "/data/a.znt\r\n");
}

TEST_F(RecentAndDropped, AHomeThatCannotBeWrittenHoldsNothingUp) {
  Write("/data/a.znt", "a");
  Panel();
  machine.files.FailNext(MemoryFiles::Operation::kReplace, "disk full");
  Panel().OpenFile("/data/a.znt");
  EXPECT_EQ(Panel().lblTrackTitle.text(), "a");
  EXPECT_THAT(Panel().lblNotice.text(), HasSubstr("Opened /data/a.znt - remember the last files"));
  EXPECT_THAT(Panel().lblNotice.text(), HasSubstr("disk full"));
  EXPECT_THAT(Captions(), ElementsAre("1 a.znt - /data"));
}

TEST_F(RecentAndDropped, LongFoldersShowTheirEnd) {
  const std::string long_folder = "/" + std::string(40, 'x') + "/" + std::string(20, 'y') + "銀";
  const std::string caption = RecentCaption(4, PathFromText(long_folder + "/a.znt"));
  EXPECT_THAT(caption, ::testing::StartsWith("5 a.znt - ...x"));
  EXPECT_THAT(caption, ::testing::EndsWith("/" + std::string(20, 'y') + "銀"));
  EXPECT_LT(caption.size(), 70u);
}

TEST_F(RecentAndDropped, OpensTheFirstTrackFileAmongWhatIsDropped) {
  Write("/data/A.ZNT", "a");
  Write("/data/b.znt", "b");
  frmControlPanel& panel = Panel();
  panel.FilesDropped({"/data/A.ZNT"});
  EXPECT_EQ(panel.lblTrackTitle.text(), "a");
  EXPECT_EQ(panel.lblNotice.text(), "Opened /data/A.ZNT");
  panel.FilesDropped({"/data/notes.txt", "/data/b.znt", "/data/A.ZNT"});
  EXPECT_EQ(panel.lblTrackTitle.text(), "b");
  EXPECT_EQ(panel.lblNotice.text(),
            "Opened /data/b.znt - one file at a time: 2 others were not opened");
  panel.FilesDropped({"/data"});
  EXPECT_EQ(panel.lblNotice.text(), "NOT OPENED: /data is no track file (.znt)");
  EXPECT_EQ(panel.lblTrackTitle.text(), "b");
  EXPECT_THAT(machine.dialogs.messages, IsEmpty());
}

TEST_F(RecentAndDropped, ADropKeepsTheTracksThatNobodySaved) {
  Write("/data/a.znt", "a");
  frmControlPanel& panel = Panel();
  FillCV(4);
  panel.FilesDropped({"/data/a.znt"});
  EXPECT_THAT(panel.lblNotice.text(), HasSubstr("unsaved before: home/Rescued tracks"));
}

}  // namespace
}  // namespace zento
