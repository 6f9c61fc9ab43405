// Macros from the command line: what is saved, what is printed, how it ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "core/track_file.h"
#include "core/track_store.h"
#include "support/cli_fixture.h"

namespace zento {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr char kShortCV[] =
    "CV.RecordTrack 3\r\nCV.Title couple\r\nCV.Voltage -0.1 0.6 -0.1\r\nCV.RetainTime 1\r\n"
    "CV.Scanrate 200\r\nCV.Repeat 1\r\nCV.SamplingRate 5\r\nCV.Accumlation 5\r\nCV.Start\r\n";

class CliMacroTest : public CliFixture {
 protected:
  int Cli(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--home", In("home")});
    return CliFixture::Run(arguments);
  }
  // Runs a macro with this text on the bench.
  int Run(const std::string& macro, std::vector<std::string> more = {}) {
    Write("m.zmc", macro);
    more.insert(more.begin(), {"--bench", "sim", "run", In("m.zmc")});
    return Cli(more);
  }
  TrackStore Tracks(const char* name) const {
    TrackStore tracks;
    EXPECT_TRUE(ReadTracks(Bytes(name), tracks).complete()) << name;
    return tracks;
  }
};

TEST_F(CliMacroTest, SavesTracksCopiesTheLogAndTellsItsProgress) {
  EXPECT_EQ(Run(std::string(kShortCV) + "Mail.Address a@example.org\r\nMail.Send\r\n",
                {"--save", In("night"), "--log", In("log.txt")}),
            kExitOk)
      << err_;
  EXPECT_EQ(Tracks("night.znt").Record(3).Title, "couple");
  EXPECT_THAT(err_, HasSubstr("2026/01/01 09:00:01  line 9: CV.Start\n"));
  EXPECT_THAT(err_, HasSubstr("line 9: Cyclic voltammetry ended: the planned time is over; "));
  EXPECT_THAT(err_, HasSubstr("line 11: mail kept: in virtual time none is sent"));
  EXPECT_THAT(err_, EndsWith("zento-cli: Finished\n"));
  EXPECT_THAT(Bytes("log.txt"), HasSubstr("Mail to a@example.org sent"));
  EXPECT_EQ(Bytes("log.txt"), Bytes("home/Run log.txt"));
  EXPECT_FALSE(fs::exists(folder_ / "home" / "Rescued tracks 1.znt"));
}

TEST_F(CliMacroTest, KeepsTheTracksOfARunThatEndsEarly) {
  EXPECT_EQ(Run(std::string(kShortCV) + "Motor.On 400\r\nWait\r\nCV.Start\r\n",
                {"--save", In("part.znt")}),
            kExitScriptLine);
  EXPECT_EQ(Tracks("part.znt").Record(3).Mode, kModeCV);
  EXPECT_THAT(err_, HasSubstr("line 11: message:  11line Syntax error:Wait time/ms"));
  // Without a place of their own, or when that cannot be written.
  EXPECT_EQ(Run(kShortCV), kExitOk);
  EXPECT_EQ(Tracks("home/Rescued tracks 1.znt").Record(3).Mode, kModeCV);
  fs::create_directory(folder_ / "folder.znt");
  EXPECT_EQ(Run(kShortCV, {"--save", In("folder.znt"), "--overwrite"}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("NOT SAVED"));
  EXPECT_EQ(Tracks("home/Rescued tracks 2.znt").Record(3).Mode, kModeCV);
}

TEST_F(CliMacroTest, GoesOnWithLoadedTracksAndReplacesNoOthers) {
  ASSERT_EQ(Run(kShortCV, {"--save", In("a.znt")}), kExitOk);
  EXPECT_EQ(Run("CV.RPM 1", {"--save", In("a.znt")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("exists already"));
  EXPECT_EQ(Run(std::string(kShortCV) + "CV.RecordTrack 4\nCV.Start",
                {"--load", In("a.znt"), "--save", In("a.znt")}),
            kExitOk)
      << err_;
  EXPECT_EQ(Tracks("a.znt").Record(3).Title, "couple");
  EXPECT_EQ(Tracks("a.znt").Record(4).Title, "couple");
  Write("not.znt", "something else");
  EXPECT_EQ(Run("CV.RPM 1", {"--load", In("not.znt")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("not.znt"));
  EXPECT_EQ(Run("CV.RPM 1", {"--save", In("nowhere/b.znt")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("nowhere"));
}

TEST_F(CliMacroTest, IsCleanOnlyWhenNothingHadToBeSaid) {
  EXPECT_EQ(Run("CV.RPM 1\n' done"), kExitOk);
  EXPECT_EQ(Run("cv.rpm 1\nCV.RPM 1"), kExitScriptLine);
  EXPECT_THAT(err_, EndsWith("Finished; unknown commands: 1; 1 message\n"));
  EXPECT_EQ(Run("SSVMeasureMode"), kExitScriptLine);
  EXPECT_EQ(
      Run("CV.SamplingRate 1000\nCV.Accumlation 1\nCV.Scanrate 10\nCV.RetainTime 0\nCV.Start"),
      kExitScriptLine);
  EXPECT_THAT(err_, HasSubstr("line 5: message: Buffer overflow!"));
  EXPECT_EQ(Cli({"run", In("m.zmc")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("--bench sim"));
  EXPECT_EQ(Cli({"--bench", "sim", "run", In("none.zmc")}), kExitFailure);
}

TEST_F(CliMacroTest, CheckingNeitherWritesNorTakesTheHome) {
  Write("m.zmc", std::string(kShortCV) + "CV.Start\r\n");
  EXPECT_EQ(Cli({"check", In("m.zmc")}), kExitOk) << out_ << err_;
  EXPECT_THAT(out_, HasSubstr("2 measurements"));
  EXPECT_THAT(out_, HasSubstr("Track 4: line 10"));
  EXPECT_FALSE(fs::exists(folder_ / "home"));
  Write("m.zmc", "Wait\r\n");
  EXPECT_EQ(Cli({"check", In("m.zmc")}), kExitScriptLine);
  EXPECT_THAT(out_, HasSubstr("PROBLEM, line 1: message: \" 1line Syntax error:Wait time/ms\""));
}

// The example is what a person would begin with; a scenario looks at what it records.
TEST_F(CliMacroTest, TheExampleNightIsCleanButForTheMailsSettings) {
  const std::string night = std::string(ZENTO_EXAMPLES) + "/night.zmc";
  const auto cli = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"--bench", "sim", "--bench-set", "cell=oxygen"});
    return Cli(more);
  };
  ASSERT_EQ(cli({"run", night, "--save", In("night.znt")}), kExitOk) << err_;
  const TrackStore tracks = Tracks("night.znt");
  EXPECT_EQ(tracks.Record(4).Mode, kModeRDE);
  EXPECT_EQ(tracks.Record(5).Mode, kModePS);
  EXPECT_EQ(tracks.Record(6).Mode, kModeRPMvsj);
  EXPECT_EQ(cli({"check", night}), kExitScriptLine);
  EXPECT_THAT(out_, HasSubstr("there is no Mail.txt in the home"));
  Write("home/Mail.txt", "Server=mail.example.org\nSender=cell@example.org\n");
  EXPECT_EQ(cli({"check", night}), kExitOk) << out_;
}

TEST_F(CliMacroTest, AMailTestSaysWhatIsMissing) {
  EXPECT_EQ(Cli({"mail-test", "a@example.org"}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("Mail.txt"));
  EXPECT_THAT(out_, Not(HasSubstr("taken")));
}

}  // namespace
}  // namespace zento
