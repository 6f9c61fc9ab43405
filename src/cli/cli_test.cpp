#include "cli/cli.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/settings_table.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "host/native/home.h"
#include "host/path_text.h"
#include "support/cli_fixture.h"
#include "text/lines.h"

namespace zento {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

using CliTest = CliFixture;

TEST_F(CliTest, AScriptMustSayWhatItRunsOnAndNeverGetsADifferentBench) {
  Write("s.zsc", "open frmPower\n");
  EXPECT_EQ(Run({"--home", In("home"), "script", In("s.zsc")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("--bench sim"));
  EXPECT_EQ(Run({"--bench", "hardware", "--clock", "virtual", "script", In("s.zsc")}),
            kExitFailure);
  EXPECT_THAT(err_, HasSubstr("real time"));
  EXPECT_EQ(Run({"--bench", "hardware", "--seed", "1", "script", In("s.zsc")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("for --bench sim"));
  EXPECT_EQ(Run({"--bench", "made-up", "script", In("s.zsc")}), kExitFailure);
  EXPECT_FALSE(fs::exists(folder_ / "home")) << "a refused script leaves nothing behind";
}

TEST_F(CliTest, OptionsMayStandBehindTheCommand) {
  Write("s.zsc", "get frmControlPanel.txtDatNum\n");
  EXPECT_EQ(Run({"script", In("s.zsc"), "--bench", "sim", "--home", In("測定 home")}), kExitOk);
  EXPECT_EQ(out_, "0\n");
  EXPECT_TRUE(fs::exists(folder_ / PathFromText("測定 home") / "Parameters.txt"));
}

TEST_F(CliTest, MessagesThatNobodyTookAreToldAtTheEnd) {
  fs::create_directory(folder_ / "home");
  Write("home/Parameters.txt", "ADBoard= 2\r\n");
  Write("s.zsc", "open frmMeasureCV\n");
  EXPECT_EQ(Run({"--bench", "hardware", "--home", In("home"), "script", In("s.zsc")}), kExitOk);
  EXPECT_THAT(err_, HasSubstr("line 1: frmMeasureCV did not open"));
  EXPECT_THAT(err_, testing::ContainsRegex("message: .*AD Board Trouble!"));
}

TEST_F(CliTest, TwoProgramsNeverShareAHome) {
  Write("s.zsc", "get frmControlPanel\n");
  {
    const auto lock = HomeLock::Take(folder_ / "home", "the other program");
    ASSERT_TRUE(lock.ok());
    EXPECT_EQ(Run({"--bench", "sim", "--home", In("home"), "script", In("s.zsc")}), kExitFailure);
    EXPECT_EQ(out_, "");
    EXPECT_THAT(err_, HasSubstr("in use by the other program"));
    EXPECT_FALSE(fs::exists(folder_ / "home" / "Parameters.txt")) << "nothing was opened";
  }
  EXPECT_EQ(Run({"--bench", "sim", "--home", In("home"), "script", In("s.zsc")}), kExitOk);
}

TEST_F(CliTest, TellsOfFilesItCannotRead) {
  EXPECT_EQ(Run({"--bench", "sim", "--home", In("home"), "script", In("none.zsc")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("none.zsc"));
  Write("not.znt", "something else");
  for (const char* command : {"info", "table"}) {
    std::vector<std::string> arguments = {command, In("not.znt")};
    if (arguments[0] == "table") arguments.insert(arguments.end(), {"--track", "0"});
    EXPECT_EQ(Run(arguments), kExitFailure) << command;
    EXPECT_THAT(err_, HasSubstr("not.znt"));
    EXPECT_EQ(out_, "");
  }
}

TEST_F(CliTest, PrintsSheetsAndTablesOfTrackFiles) {
  TrackStore tracks;
  TrackRecord& record = tracks.Record(7);
  record.Mode = kModeRDE;
  record.Title = "銀";
  record.ref = 2;
  record.pnum = 2;
  for (int column = 0; column < 3; ++column) {
    for (int point = 0; point < 2; ++point) {
      tracks.SetValue(column, 7, point, 0.5 * column + 0.001 * point);
    }
  }
  Write("a.znt", FormatTracks(tracks));
  EXPECT_EQ(Run({"info", In("a.znt")}), kExitOk);
  EXPECT_THAT(out_, StartsWith("Track\t7\nMode\tRDE\nTitle\t銀\n"));
  EXPECT_THAT(out_, HasSubstr("Reference\tAg|AgCl|sat.\n"));
  EXPECT_EQ(Run({"table", In("a.znt"), "--track", "7", "--headings"}), kExitOk);
  EXPECT_EQ(out_, "E/V\tdisk I/A\tring I/A\n0\t0.5\t1\n0.001\t0.501\t1.001\n");
  EXPECT_EQ(Run({"table", In("a.znt"), "--track", "3"}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("track 3 is empty"));
  EXPECT_EQ(Run({"table", In("a.znt"), "--track", "21"}), kExitFailure);
}

TEST_F(CliTest, ListsEverySettingAndEveryParameterOfTheBench) {
  Write("Parameters.txt", "CVNum= 4\r\n");
  EXPECT_EQ(Run({"settings", "--home", TextFromPath(folder_)}), kExitOk);
  EXPECT_THAT(out_, HasSubstr("CVNum\tinteger\t4\t"));
  std::size_t lines = 0;
  LineReader reader(out_);
  for (std::string_view line; reader.Next(line);) ++lines;
  EXPECT_EQ(lines, 2 + kCVPresets * PresetRows().size() + SettingRows().size());

  EXPECT_EQ(Run({"bench", "--bench-set", "E0=0.3", "--seed", "17"}), kExitOk);
  EXPECT_THAT(out_, testing::ContainsRegex("E0 +0\\.3 +V "));
  EXPECT_THAT(out_, testing::ContainsRegex("seed +17 "));
  EXPECT_EQ(Run({"bench", "--bench-set", "E0=high"}), kExitFailure);
  EXPECT_EQ(Run({"bench", "--bench-set", "cell=oxygen", "--bench-set", "R_u=7"}), kExitOk);
  EXPECT_THAT(out_, testing::ContainsRegex("C_dl +50 .*default of couple 20, array 20"));
  EXPECT_THAT(out_, testing::ContainsRegex("R_u +7 "));
}

}  // namespace
}  // namespace zento
