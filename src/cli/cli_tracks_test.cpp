// Tracks in and out of files from the command line, through the windows.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "analysis/savitzky_golay.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "host/native/native_files.h"
#include "program/home.h"
#include "support/cli_fixture.h"
#include "text/number.h"

namespace zento {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class CliTracksTest : public CliFixture {
 protected:
  CliTracksTest() {
    fs::create_directories(folder_ / "below");
    WriteTrack("a.znt", 3, "Pt in 0.1M HClO4", kModeCV, 0, 50);
    WriteTrack("b.znt", 7, "Pt/C, rotating", kModeRDE, 1600, 10);
    WriteTrack("below/c.znt", 0, "Pt below", kModeCV, 0, 100);
  }

  void WriteTrack(const char* name, int track, const char* title, Mode mode, double rpm,
                  double scan_rate) {
    TrackStore tracks;
    for (int i = 0; i < kTracks; ++i) tracks.ClearTrack(i);
    TrackRecord& record = tracks.Record(track);
    record.Mode = mode;
    record.Title = title;
    record.RPM = rpm;
    record.Scanrate = scan_rate;
    record.pnum = 3;
    for (int i = 0; i < 3; ++i) {
      tracks.SetValue(0, track, i, 0.1 * i);
      tracks.SetValue(1, track, i, 1e-6 / (i + 3));
      tracks.SetValue(2, track, i, 1e-7 * i);
    }
    Write(name, FormatTracks(tracks));
  }
  std::string Table(const std::string& file, const char* track) {
    EXPECT_EQ(Run({"table", file, "--track", track, "--headings"}), kExitOk) << err_;
    return out_;
  }
};

TEST_F(CliTracksTest, CsvHasUnits) {
  EXPECT_EQ(Run({"table", In("b.znt"), "--track", "7", "--csv"}), kExitOk);
  EXPECT_EQ(out_,
            "E/V,disk I/A,ring I/A\r\n"
            "0,3.3333E-07,0\r\n"
            "0.1,2.5E-07,1E-07\r\n"
            "0.2,2E-07,2E-07\r\n");
}

TEST_F(CliTracksTest, ImportPutsATrackOfAnotherFileBesideTheOthers) {
  const std::string before = Bytes("a.znt");
  const std::string source = Table(In("b.znt"), "7");
  EXPECT_EQ(Run({"import", In("a.znt"), "--from", In("b.znt"), "--source", "7", "--track", "12",
                 "--save", In("out.znt")}),
            kExitOk);
  EXPECT_THAT(err_, HasSubstr("Track 7 was imported into track 12"));
  EXPECT_EQ(Table(In("out.znt"), "12"), source);
  EXPECT_EQ(Table(In("out.znt"), "3"), Table(In("a.znt"), "3"));
  EXPECT_EQ(Bytes("a.znt"), before);
}

TEST_F(CliTracksTest, TheWindowsRefusalSavesNothing) {
  EXPECT_EQ(Run({"import", In("a.znt"), "--from", In("b.znt"), "--source", "2", "--track", "0",
                 "--save", In("out.znt")}),
            kExitScriptLine);
  EXPECT_THAT(err_, HasSubstr("Please select a varid track!"));
  EXPECT_FALSE(IsThere("out.znt"));
}

TEST_F(CliTracksTest, SavingReplacesOnlyWhatItMay) {
  const auto import_to = [&](const char* out, std::vector<std::string> more) {
    std::vector<std::string> arguments = {"import", In("a.znt"), "--from", In("b.znt"), "--source",
                                          "7",      "--track",   "3",      "--save",    In(out)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  };
  const std::string a = Bytes("a.znt");
  const std::string c = Bytes("below/c.znt");
  EXPECT_EQ(import_to("below/c", {}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("c.znt exists already"));
  EXPECT_EQ(Bytes("below/c.znt"), c);
  EXPECT_EQ(import_to("a.znt", {"--overwrite"}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("never changed"));
  EXPECT_EQ(Bytes("a.znt"), a);
  EXPECT_EQ(import_to("nowhere/c.znt", {}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("there is no folder"));
  EXPECT_EQ(import_to("below/c.znt", {"--overwrite"}), kExitOk);
  EXPECT_NE(Bytes("below/c.znt"), c);
}

TEST_F(CliTracksTest, SearchPrintsWhatFits) {
  EXPECT_EQ(Run({"search", In(""), "--title", "Pt 0.1M"}), kExitOk);
  EXPECT_EQ(out_, "file\ttrack\ttitle\tmode\trpm\tscan rate/mVs-1\n" + In("a.znt") +
                      "\t3\tPt in 0.1M HClO4\tCV\t0\t50\n");
  EXPECT_THAT(err_, HasSubstr("1 track found in 2 files"));

  EXPECT_EQ(Run({"search", In(""), "--mode", "CV", "--subfolders", "--json"}), kExitOk);
  const auto hits = nlohmann::json::parse(out_);
  ASSERT_EQ(hits.size(), 2u);
  EXPECT_EQ(hits[1]["file"], In("below/c.znt"));
  EXPECT_EQ(hits[1]["scan_rate"], 100);

  EXPECT_EQ(Run({"search", In(""), "--rpm", "1600", "--scan-rate", "10", "--json"}), kExitOk);
  EXPECT_EQ(nlohmann::json::parse(out_)[0]["title"], "Pt/C, rotating");
  EXPECT_EQ(Run({"search", In(""), "--rpm", "1600", "--scan-rate", "20", "--json"}), kExitOk);
  EXPECT_EQ(out_, "[]\n");
}

TEST_F(CliTracksTest, SearchRefusesWhatMakesNoSense) {
  EXPECT_EQ(Run({"search", In(""), "--scan-rate", "0"}), kExitScriptLine);
  EXPECT_THAT(err_, HasSubstr("Please input scanrate!"));
  EXPECT_THAT(out_, IsEmpty());
  EXPECT_EQ(Run({"search", In(""), "--rpm", "fast"}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("--rpm: 'fast' is not a number"));
  EXPECT_EQ(Run({"search", In("a.znt")}), kExitFailure);
  EXPECT_THAT(err_, Not(HasSubstr("o such file"))) << "it is there, but no folder";
  EXPECT_EQ(Run({"search", In(""), "--mode", "cv"}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("is not one of CV RDE PS"));
  EXPECT_EQ(Run({"search", In("none")}), kExitFailure);
}

// 512 points, 1 ms apart: a slow curve with hum of 50 Hz.
class CliTransformTest : public CliTracksTest {
 protected:
  void SetUp() override {
    CliTracksTest::SetUp();
    TrackStore tracks;
    for (const int track : {2, 4}) {
      TrackRecord& record = tracks.Record(track);
      record.Mode = kModeCV;
      record.Title = "hum";
      record.Scanrate = 50;
      record.MaxTime = kPoints;
      record.DiskYscale = 0.001;
      record.Area = 0.5;
      record.pnum = kPoints;
      for (int i = 0; i < kPoints; ++i) {
        tracks.SetValue(0, track, i, 0.01 * i);
        tracks.SetValue(1, track, i, 1e-6 * (Slow(i) + 0.1 * std::sin(2 * kPi * i / 20)));
      }
    }
    tracks.Record(4).Title = "other";
    ASSERT_TRUE(NativeFiles().Replace(folder_ / "hum.znt", FormatTracks(tracks)).ok());
    before_ = Bytes("hum.znt");
  }
  void TearDown() override {
    EXPECT_EQ(Bytes("hum.znt"), before_);
    CliTracksTest::TearDown();
  }
  static constexpr int kPoints = 512;
  static constexpr double kPi = 3.141592653589793;
  static double Slow(int i) { return 1 - std::cos(2 * kPi * i / kPoints); }

  // The tracks of a file that a command has written.
  std::unique_ptr<TrackStore> Saved(const char* name) {
    auto tracks = std::make_unique<TrackStore>();
    EXPECT_TRUE(ReadTracks(Bytes(name), *tracks).complete());
    return tracks;
  }
  static double WorstHum(const TrackStore& tracks, int track) {
    double worst = 0;
    for (int i = 60; i < kPoints - 60; ++i) {
      worst = std::max(worst, std::abs(tracks.Value(1, track, i) * 1e6 - Slow(i)));
    }
    return worst;
  }

  std::string before_;
};

TEST_F(CliTransformTest, FilterTakesTheHumOut) {
  EXPECT_EQ(Run({"filter", In("hum.znt"), "--cut-off", "30", "--into", "7", "--title", "quiet",
                 "--save", In("out.znt")}),
            kExitOk)
      << err_;
  const auto saved = Saved("out.znt");
  EXPECT_GT(WorstHum(*saved, 2), 0.09);
  EXPECT_LT(WorstHum(*saved, 7), 0.01);
  EXPECT_EQ(saved->Record(7).Title, "quiet");
  EXPECT_EQ(saved->Value(0, 7, 100), saved->Value(0, 2, 100));

  EXPECT_EQ(Run({"filter", In("hum.znt"), "--track", "4", "--cut-off", "30", "--x-cut-off", "400",
                 "--save", In("same.znt")}),
            kExitOk);
  EXPECT_LT(WorstHum(*Saved("same.znt"), 4), 0.01);
  EXPECT_EQ(Saved("same.znt")->Record(4).Title, "other");
}

TEST_F(CliTransformTest, SmoothMakesTheHumLower) {
  EXPECT_EQ(Run({"smooth", In("hum.znt"), "--track", "4", "--points", "15", "--into", "7", "--save",
                 In("out.znt")}),
            kExitOk)
      << err_;
  EXPECT_LT(WorstHum(*Saved("out.znt"), 7), 0.05);
  EXPECT_EQ(Saved("out.znt")->Record(7).Title, "Smooth_other");
  EXPECT_EQ(Run({"smooth", In("hum.znt"), "--all", "--method", "savitzky-golay", "--points", "15",
                 "--save", In("all.znt")}),
            kExitOk)
      << err_;
  for (const int track : {2, 4}) EXPECT_LT(WorstHum(*Saved("all.znt"), track), 0.095);
  EXPECT_EQ(Run({"smooth", In("hum.znt"), "--all", "--points", "4", "--skip", "255", "--save",
                 In("skipped.znt")}),
            kExitOk);
  EXPECT_THAT(err_, HasSubstr("--points: 4 became "));
  EXPECT_EQ(Bytes("skipped.znt"), before_);
  EXPECT_NE(Run({"smooth", In("hum.znt"), "--all", "--into", "7", "--save", In("x.znt")}), kExitOk);
}

// The file that goes with the program, against the least-squares cubic in whole numbers.
TEST(InstalledData, SmoothingCoefficients) {
  NativeFiles files;
  const auto table = ReadSavitzkyGolay(files, DataFolders());
  ASSERT_TRUE(table.ok()) << table.why();
  ASSERT_EQ(table->size(), kMostSavitzkyGolayRows);
  for (int r = 0; r < static_cast<int>(table->size()); ++r) {
    const SavitzkyGolayRow& row = table.value()[static_cast<std::size_t>(r)];
    const int m = 2 + r;
    for (int k = 0; k <= m; ++k) {
      // Madden, Anal. Chem. 50 (1978) 1383, for a window of 2 m + 1 points.
      const int numerator = 3 * (3 * m * m + 3 * m - 1 - 5 * k * k);
      const int denominator = (4 * m * m - 1) * (2 * m + 3);
      EXPECT_EQ(row.a[static_cast<std::size_t>(k)] * denominator, row.divisor * numerator);
    }
  }
}

TEST_F(CliTransformTest, CalcSubtracts) {
  EXPECT_EQ(Run({"calc", In("hum.znt"), "--a", "2", "--b", "4", "--operator", "minus", "--factor-a",
                 "3", "--into", "5", "--save", In("out.znt")}),
            kExitOk)
      << err_;
  const auto saved = Saved("out.znt");
  EXPECT_NEAR(saved->Value(1, 5, 100), 2 * saved->Value(1, 2, 100), 1e-9);
  EXPECT_EQ(saved->Record(5).Title, "( 3* Track 2- 1* Track 4)[xBshift= 0]");
}

TEST_F(CliTransformTest, WhatCannotBeDoneSavesNothing) {
  EXPECT_EQ(
      Run({"calc", In("hum.znt"), "--a", "2", "--b", "9", "--into", "5", "--save", In("out.znt")}),
      kExitFailure);
  EXPECT_THAT(err_, HasSubstr("the window has nothing to write: "));
  EXPECT_EQ(Run({"filter", In("hum.znt"), "--track", "9", "--save", In("out.znt")}), kExitFailure);
  EXPECT_THAT(err_, HasSubstr("track 9 is empty"));
  EXPECT_NE(Run({"calc", In("hum.znt"), "--a", "2", "--save", In("out.znt")}), kExitOk);
  EXPECT_FALSE(IsThere("out.znt"));
}

TEST_F(CliTransformTest, TableAsTheEditMenuCopiesIt) {
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "4", "--as", "all"}), kExitOk);
  EXPECT_THAT(out_, StartsWith("Filename\thum.znt\r\nMode\tMode:CV\r\nTitle\tother\r\n"));
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "2", "--as", "special", "--no-header", "--unit",
                 "uA", "--per", "area", "--order", "511"}),
            kExitOk);
  EXPECT_EQ(out_, "Potential/V\tDisk/μAcm-2\r\n0.0000\t0\r\n5.1100\t" +
                      PlainNumber(Saved("hum.znt")->Value(1, 2, 511) / 0.5 * 1e6) + "\r\n");
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "2", "--as", "special", "--per", "weight"}),
            kExitScriptLine);
  EXPECT_THAT(out_, IsEmpty());
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "2", "--as", "i-t"}), kExitFailure);
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "2", "--unit", "mA"}), kExitFailure);
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "2", "--as", "all", "--log"}), kExitFailure);
}

TEST_F(CliTransformTest, WhatTableCopiesPastePutsBack) {
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "4", "--as", "all"}), kExitOk);
  Write("copy.txt", "\xEF\xBB\xBF" + out_);  // as spreadsheets begin a file
  EXPECT_EQ(Run({"paste", In("hum.znt"), "--track", "11", "--from", In("copy.txt"), "--save",
                 In("out.znt")}),
            kExitOk)
      << err_;
  EXPECT_EQ(Run({"table", In("out.znt"), "--track", "11", "--as", "data"}), kExitOk);
  const std::string again = out_;
  EXPECT_EQ(Run({"table", In("hum.znt"), "--track", "4", "--as", "data"}), kExitOk);
  EXPECT_EQ(again, out_);
  Write("copy.txt", "1\t2\r\n");
  EXPECT_EQ(Run({"paste", In("hum.znt"), "--track", "11", "--from", In("copy.txt"), "--save",
                 In("none.znt")}),
            kExitFailure);
  EXPECT_FALSE(IsThere("none.znt"));
}

}  // namespace
}  // namespace zento
