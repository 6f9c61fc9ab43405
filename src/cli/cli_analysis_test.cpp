// Analysis from the command line: the report is the window's, options reach it, nothing is written.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "core/track_file.h"
#include "core/track_store.h"
#include "host/native/native_files.h"
#include "support/cli_fixture.h"

namespace zento {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// Track 0: a ring-disk sweep from 1 V to 0 V and back in which a tenth of the current is
// peroxide's; track 2: a decay with a time constant of 2 s; track 4: an exponential rise of the
// current with the potential.
std::string SomeTracks() {
  TrackStore tracks;
  for (int track = 0; track < kTracks; ++track) tracks.ClearTrack(track);
  const auto begin = [&](int track, std::int32_t mode, int points, const char* title) {
    TrackRecord& record = tracks.Record(track);
    record.Mode = mode;
    record.pnum = points;
    record.Title = title;
    return &record;
  };
  TrackRecord* sweep = begin(0, kModeRDE, 401, "ring and disk");
  sweep->V = {1, 0, 1};
  sweep->RPM = 1600;
  for (int i = 0; i < 401; ++i) {
    tracks.SetValue(0, 0, i, std::abs(1 - 0.005 * i));
    tracks.SetValue(1, 0, i, -1e-4);
    tracks.SetValue(2, 0, i, 0.4e-5);
  }
  begin(2, kModePS, 200, "decay");
  for (int i = 0; i < 200; ++i) {
    tracks.SetValue(0, 2, i, 0.05 * i);
    tracks.SetValue(1, 2, i, 1e-6 + 5e-5 * std::exp(-0.05 * i / 2));
  }
  begin(4, kModeCV, 101, "wave");
  for (int i = 0; i < 101; ++i) {
    tracks.SetValue(0, 4, i, 0.2 + 0.001 * i);
    tracks.SetValue(1, 4, i, 1e-6 * std::pow(10, 0.001 * i / 0.12));
  }
  return FormatTracks(tracks);
}

class CliAnalysisTest : public CliFixture {
 protected:
  CliAnalysisTest() { Write("some.znt", SomeTracks()); }
  json Json() const { return json::parse(out_); }
};

TEST_F(CliAnalysisTest, PrintsTheReportAndNothingElse) {
  EXPECT_EQ(Run({"o2", In("some.znt"), "--collection", "0.4", "--step", "0.3"}), kExitOk);
  // I_d 1e-4 A, I_r/N 1e-5 A: 90/110. The ends of the windows, 0.02 V from each step, are open.
  EXPECT_EQ(out_,
            "Edisk/V\t%H2O\n0.993\t81.8\n0.698\t81.8\n0.397\t81.8\n0.097\t81.8\n0.297\t81.8\n"
            "0.6\t81.8\n0.898\t81.8\n");
  EXPECT_THAT(err_, IsEmpty());
}

TEST_F(CliAnalysisTest, EntriesReachTheWindow) {
  EXPECT_EQ(Run({"tafel", In("some.znt"), "--track", "4", "--redox-potential", "0.2", "--area",
                 "0.5", "--points", "10:90", "--json", "--quality"}),
            kExitOk);
  const json wave = Json();
  EXPECT_EQ(wave["command"], "tafel");
  EXPECT_EQ(wave["rows"].size(), 81u);
  EXPECT_NEAR(wave["rows"][0][0].get<double>(), 0.01, 1e-12);
  EXPECT_NEAR(wave["quantities"]["i0"]["value"].get<double>(), 2e-6, 1e-10);
  EXPECT_NEAR(wave["quantities"]["alpha_n"]["value"].get<double>(), 0.05916 / 0.12, 1e-4);
  EXPECT_NEAR(wave["fit"]["slope"].get<double>(), 1 / 0.12, 1e-4);
  EXPECT_THAT(err_, HasSubstr("81 points"));

  // The same entries as text, with the last point by the arrows and the first as it comes.
  EXPECT_EQ(Run({"tafel", In("some.znt"), "--track", "4", "--points", ":", "--json"}), kExitOk);
  EXPECT_EQ(Json()["rows"].size(), 101u);
  EXPECT_EQ(Run({"cottrell", In("some.znt"), "--track", "4", "--json"}), kExitScriptLine);
  EXPECT_EQ(Json()["refusal"], "the window has nothing to calculate for this track");
}

// Three rotation rates with exact Koutecky-Levich currents, one of them over a base line.
TEST_F(CliAnalysisTest, OptionsOfOneTrackAmongSeveral) {
  TrackStore tracks;
  for (int track = 0; track < kTracks; ++track) tracks.ClearTrack(track);
  constexpr double kSlope = 500;   // cm2 s^(1/2)/A
  constexpr double kLimit = 0.04;  // A/cm2
  for (const int track : {1, 2, 3}) {
    TrackRecord& record = tracks.Record(track);
    record.Mode = kModeRDE;
    record.RPM = 600 * track;
    record.pnum = 100;
    const double current = 0.5 / (kSlope / std::sqrt(record.RPM / 60) + 1 / kLimit);
    for (int i = 0; i < 100; ++i) {
      tracks.SetValue(0, track, i, 0.01 * i);
      tracks.SetValue(1, track, i, i < 50 ? current + (track == 2 ? 2e-3 : 0) : 1.0);
    }
  }
  Write("rates.znt", FormatTracks(tracks));
  EXPECT_EQ(Run({"kl",          In("rates.znt"), "--tracks",        "1-3",
                 "--potential", "0.45",          "--half-width",    "0.2",
                 "--points",    ":49",           "--area",          "0.5",
                 "--base",      "2=value",       "--base-value",    "2=2e-3",
                 "--solve",     "electrons",     "--diffusion",     "1e-5",
                 "--viscosity", "0.01",          "--concentration", "1e-6",
                 "--json"}),
            kExitOk);
  const json fit = Json()["fit"];
  EXPECT_EQ(fit["points"], 3);
  EXPECT_NEAR(fit["slope"].get<double>(), kSlope, 0.05);
  EXPECT_NEAR(fit["intercept"].get<double>(), 1 / kLimit, 0.05);
  EXPECT_EQ(Run({"kl", In("rates.znt")}), kExitScriptLine) << "the file says of no track to use it";
  EXPECT_THAT(err_, HasSubstr("Please check at least one 'Use' Check Box"));
  EXPECT_THAT(out_, IsEmpty());
}

TEST_F(CliAnalysisTest, SettingsAreBuiltInUnlessAHomeIsNamed) {
  fs::create_directories(folder_ / "home");
  Write("home/Parameters.txt", "O2CE= 0.2\r\nO2VStep= 0.3\r\n");
  const auto water = [&] { return Json()["rows"][0][3].get<double>(); };
  EXPECT_EQ(Run({"o2", In("some.znt"), "--json", "--home", In("home")}), kExitOk);
  EXPECT_NEAR(water(), 100 * 80.0 / 120, 1e-9);
  EXPECT_EQ(Run({"o2", In("some.znt"), "--json", "--home", In("home"), "--collection", "0.1"}),
            kExitOk);
  EXPECT_NEAR(water(), 100 * 60.0 / 140, 1e-9) << "an option has the last word";
  EXPECT_EQ(Run({"o2", In("some.znt"), "--json"}), kExitOk);
  EXPECT_NEAR(water(), 100 * 90.0 / 110, 1e-9);
  EXPECT_EQ(Run({"o2", In("some.znt"), "--home", In("nowhere")}), kExitFailure);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "home"), {}), 1) << "nothing is written";
}

TEST_F(CliAnalysisTest, ARefusalGoesToStandardErrorWithStatusTwo) {
  const std::string before = NativeFiles().Read(In("some.znt")).value();
  EXPECT_EQ(Run({"o2", In("some.znt"), "--collection", "0"}), kExitScriptLine);
  EXPECT_THAT(out_, IsEmpty());
  EXPECT_THAT(err_, HasSubstr("message: "));
  EXPECT_EQ(Run({"o2", In("some.znt"), "--collection", "0", "--json"}), kExitScriptLine);
  EXPECT_TRUE(Json()["refusal"].is_string());
  // The window writes its area into the track, in memory.
  EXPECT_EQ(Run({"tafel", In("some.znt"), "--track", "4", "--area", "0.7"}), kExitOk);
  EXPECT_EQ(NativeFiles().Read(In("some.znt")).value(), before);
}

TEST_F(CliAnalysisTest, WrongOptionsAndFilesAreFailures) {
  const std::vector<std::string> wrong[] = {
      {"o2", In("none.znt")},
      {"o2", In("some.znt"), "--track", "3"},
      {"o2", In("some.znt"), "--step", "wide"},
      {"tafel", In("some.znt"), "--collection", "0.4"},
      {"tafel", In("some.znt"), "--area"},
      {"tafel", In("some.znt"), "--area", "1", "--area", "2"},
      {"fit", In("some.znt"), "--points", "2"},
      {"fit", In("some.znt"), "--parameters", "4"},
      {"fit", In("some.znt"), "--start", "1,x,2"},
      {"fit", In("some.znt"), "--track", "2", "--y", "2"},
      {"fit", In("some.znt"), "--track", "1"},
  };
  for (const auto& arguments : wrong) {
    EXPECT_EQ(Run(arguments), kExitFailure) << testing::PrintToString(arguments);
    EXPECT_THAT(out_, IsEmpty());
    EXPECT_THAT(err_, Not(IsEmpty()));
  }
  Write("not.znt", "something else");
  EXPECT_EQ(Run({"tafel", In("not.znt")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("is no track file"));
}

TEST_F(CliAnalysisTest, FitsARelaxation) {
  EXPECT_EQ(Run({"fit", In("some.znt"), "--track", "2", "--points", "4:", "--json"}), kExitOk);
  const json decay = Json();
  const auto value = [&](const char* name) {
    return decay["quantities"][name]["value"].get<double>();
  };
  EXPECT_NEAR(value("p1"), 5e-5, 1e-8);
  EXPECT_NEAR(value("p2"), 2, 1e-3);
  EXPECT_NEAR(value("p3"), 1e-6, 1e-8);
  EXPECT_EQ(decay["quantities"]["p2"]["unit"], "s");
  EXPECT_EQ(decay["rows"].size(), 196u);
  EXPECT_EQ(Run({"fit", In("some.znt"), "--track", "2"}), kExitOk);
  EXPECT_THAT(out_, StartsWith("File\tsome.znt\nTrack\t2\nTitle\tdecay\nPoints\t0\t199\n"));
  EXPECT_THAT(out_, HasSubstr("x: t /s\ty: I /A\tfit\n0\t"));
  // Level data have no relaxation; a column that is not there is not level.
  EXPECT_EQ(Run({"fit", In("some.znt"), "--track", "0", "--x", "1", "--y", "2"}), kExitScriptLine);
  EXPECT_THAT(out_, IsEmpty());
  EXPECT_EQ(Run({"fit", In("some.znt"), "--track", "4", "--y", "2"}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("track 4 has no column 2, only 0 (E/V), 1 (I/A)"));
}

}  // namespace
}  // namespace zento
