#include "core/track_file.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "core/track_header.h"
#include "core/track_store.h"
#include "core/workstation.h"
#include "host/virtual/memory_services.h"
#include "text/codepage.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Outcome = TrackFileLoad::Outcome;

// A file of the signature and the given lines, which end in CR LF.
std::string File(std::initializer_list<std::string_view> lines) {
  std::string file = "ZENTO File\r\n";
  for (const std::string_view line : lines) file.append(line).append("\r\n");
  return file;
}

void Fill(TrackStore& tracks, int slot, Mode mode, std::int32_t points) {
  TrackRecord& record = tracks.Record(slot);
  record.Mode = mode;
  record.pnum = points;
  for (std::int32_t i = 0; i < points; ++i) {
    tracks.SetValue(0, slot, i, 0.1 * i - 0.2);
    tracks.SetValue(1, slot, i, -1.2345e-5 * (i + slot));
    tracks.SetValue(2, slot, i, 2.5e-9 * i);
  }
}

TEST(TrackFile, HasTheFormOfItsKind) {
  TrackStore tracks;
  tracks.kl.KLSubVal = {0, -1e-6};
  Fill(tracks, 3, kModeRDE, 3);
  TrackRecord& record = tracks.Record(3);
  record.Title = "a=b";
  record.MeasTime = "2026/11/22 21:32:39";
  record.Scanrate = 0.05;
  record.V = {0.8, -0.2, 0};
  record.Vxmin = -0.2;
  record.Conc = 1e-6;
  record.StepTime = 30;
  const std::string zeros = " 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0";
  EXPECT_EQ(FormatTracks(tracks), File({"KLUseFlag=" + zeros,
                                        "KLNStart=" + zeros,
                                        "KLNEnd=" + zeros,
                                        "KLBaseMode=" + zeros,
                                        "KLBaseTrack=" + zeros,
                                        "KLBaseNEnd=" + zeros,
                                        "KLSubVal= 0 -1E-06 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0",
                                        "DataNum= 3",
                                        "Mode= 2",
                                        "Title=a=b",
                                        "MeasTime=2026/11/22 21:32:39",
                                        "Scanrate= .05",
                                        "V1st= .8",
                                        "V2nd=-.2",
                                        "V3rd= 0",
                                        "Vxmax= 0",
                                        "Vymax= 0",
                                        "Vxmin=-.2",
                                        "Vymin= 0",
                                        "MaxTime= 0",
                                        "RingXValue= 0",
                                        "RPM= 0",
                                        "pnum= 3",
                                        "Conc= 1E-06",
                                        "Area= 0",
                                        "Weight= 0",
                                        "ref= 0",
                                        "ne= 0",
                                        "DiskYscale= 0",
                                        "RingYscale= 0",
                                        "TimeRecording= 0",
                                        "pH= 0",
                                        "Table",
                                        "-0.2000\t-3.7035e-5\t0.0e+0",
                                        "-0.1000\t-4.938e-5\t2.5e-9",
                                        "0.0000\t-6.1725e-5\t5.0e-9"}));
}

TEST(TrackFile, ReadsBackEveryMode) {
  TrackStore tracks;
  tracks.kl.KLUseFlag = {1, -1, 1};
  tracks.kl.KLNStart = {100000, -7};
  tracks.kl.KLSubVal = {-1.5e-7, 2};
  tracks.kl.Resize();
  for (int track = 0; track < kTracks; ++track) {
    if (track % 8 == 0) continue;
    Fill(tracks, track, static_cast<Mode>(track % 8), 4 + track);
    TrackRecord& record = tracks.Record(track);
    record.Title = "Title " + std::to_string(track);
    record.V = {0.1 * track, 1.0 / 3, -2e-7};
    record.Vxmin = -1.0 / 7;
    record.Vxmax = track;
    record.Vymin = -1e-300;
    record.Vymax = 1e300;
    record.MaxTime = 12345678;
    record.RPM = 1600.5;
    record.ref = 4;
    record.ne = 2;
    record.DiskYscale = 1e-3;
    record.RingYscale = 1e-5;
    record.TimeRecording = track % 2;
    record.Area = 0.2827;
    record.Weight = 1e-9;
    record.pH = 12.97;
  }
  TrackStore read;
  ASSERT_TRUE(ReadTracks(FormatTracks(tracks), read).complete());
  EXPECT_EQ(read.kl.KLUseFlag, tracks.kl.KLUseFlag);
  EXPECT_EQ(read.kl.KLNStart, tracks.kl.KLNStart);
  EXPECT_EQ(read.kl.KLSubVal, tracks.kl.KLSubVal);
  for (int track = 0; track < kTracks; ++track) {
    if (track % 8 == 0) {
      EXPECT_EQ(read.Record(track).Mode, kModeNone);
      continue;
    }
    EXPECT_EQ(read.Record(track), tracks.Record(track)) << track;
    const int mode = track % 8;
    const bool third = mode == kModeRDE || mode == kModeSSV || mode == kModeSSVAll ||
                       (mode == kModeRPMvsj && tracks.Record(track).TimeRecording == 1);
    for (std::int32_t i = 0; i < tracks.Record(track).pnum; ++i) {
      EXPECT_NEAR(read.Value(0, track, i), tracks.Value(0, track, i), 0.5e-4);
      const double current = tracks.Value(1, track, i);
      EXPECT_NEAR(read.Value(1, track, i), current, std::fabs(current) * 0.5e-4);
      EXPECT_NEAR(read.Value(2, track, i), third ? tracks.Value(2, track, i) : 0, 1e-13) << track;
    }
  }
  TrackStore again;
  ASSERT_TRUE(ReadTracks(FormatTracks(read), again).complete());
  EXPECT_EQ(FormatTracks(again), FormatTracks(read));
}

TEST(TrackFile, AnyTitleComesBack) {
  for (const std::string& title :
       {std::string("電位 /V μA"), std::string("=x=Table"), std::string(" blanks \t and tabs "),
        std::string("nul \0 inside", 12), std::string("ﾃｽﾄ"), std::string("\xEF\xBB\xBFmark")}) {
    TrackStore tracks;
    Fill(tracks, 0, kModeCV, 1);
    tracks.Record(0).Title = title;
    TrackStore read;
    ASSERT_TRUE(ReadTracks(FormatTracks(tracks), read).complete());
    EXPECT_EQ(read.Record(0).Title, title);
    EXPECT_EQ(read.Record(0).pnum, 1);
  }
  TrackStore tracks;
  Fill(tracks, 0, kModeCV, 1);
  tracks.Record(0).Title = "one\r\nMode= 5\nTable\r";
  TrackStore read;
  ASSERT_TRUE(ReadTracks(FormatTracks(tracks), read).complete());
  EXPECT_EQ(read.Record(0).Title, "one  Mode= 5 Table ");
  EXPECT_EQ(read.Record(0).Mode, kModeCV);
}

TEST(TrackFile, OlderFilesAreCodePage932) {
  // "電位" in code page 932, then a title that by accident is valid UTF-8 as well.
  const std::string file = File({"DataNum=0", "Mode=1", "Title=\x93\x64\x88\xCA", "pnum=0", "Table",
                                 "DataNum=1", "Mode=1", "Title=\xC3\xBD", "pnum=0", "Table"});
  TrackStore tracks;
  ASSERT_TRUE(ReadTracks(file, tracks).complete());
  EXPECT_EQ(tracks.Record(0).Title, "電位");
  EXPECT_EQ(tracks.Record(1).Title, "ﾃｽ");
  TrackStore imported;
  ASSERT_TRUE(ImportTrack(file, 1, imported, 5).complete());
  EXPECT_EQ(imported.Record(5).Title, "ﾃｽ");
}

TEST(TrackFile, ReplacesTheTracksButNotTheListsItDoesNotName) {
  TrackStore tracks;
  for (int track = 0; track < kTracks; ++track) Fill(tracks, track, kModeCV, 2);
  tracks.kl.Resize();
  tracks.kl.KLNEnd[20] = 77;
  tracks.Record(4).pH = 7;
  ASSERT_TRUE(ReadTracks(File({"KLUseFlag= 1 0 1",
                               "KLSubVal= 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 "
                               "16 17 18 19 20 21 22"}),
                         tracks)
                  .complete());
  for (int track = 0; track < kTracks; ++track) EXPECT_EQ(tracks.Record(track).Mode, kModeNone);
  EXPECT_EQ(tracks.Record(4).pH, 7);
  EXPECT_EQ(tracks.kl.KLNEnd[20], 77);
  ASSERT_EQ(tracks.kl.KLUseFlag.size(), static_cast<std::size_t>(kTracks));
  EXPECT_EQ(tracks.kl.KLUseFlag[2], 1);
  ASSERT_EQ(tracks.kl.KLSubVal.size(), static_cast<std::size_t>(kTracks));
  EXPECT_EQ(tracks.kl.KLSubVal[20], 21);
}

TEST(TrackFile, OtherFormsOfHeaderLinesAreRead) {
  TrackStore tracks;
  ASSERT_TRUE(ReadTracks("ZENTO File\nDataNum=2.4\nMode=1.5\rMode 3\n=4\nScanrate=  5e1mV\n"
                         "VoltStep=.005\nStepTime=30\nmode=7\nref=2.5",
                         tracks)
                  .complete());
  const TrackRecord& record = tracks.Record(2);
  EXPECT_EQ(record.Mode, 2);
  EXPECT_EQ(record.Scanrate, 50);
  EXPECT_EQ(record.VoltStep, 0.005);
  EXPECT_EQ(record.StepTime, 30);
  EXPECT_EQ(record.ref, 2);
}

TEST(TrackFile, OtherLineEndsInTables) {
  for (const std::string& end :
       {std::string("\n"), std::string("\r"), std::string("\r\n"), std::string("\r\r\n")}) {
    TrackStore tracks;
    std::string file = "ZENTO File\nDataNum=1\nMode=1\npnum=3\nTable\n";
    for (const char* line : {".1\t1E-3\textra", " -1 \t +2.5e+2 ", "0.5\t7", "DataNum=2"}) {
      file.append(line).append(end);
    }
    const TrackFileLoad load = ReadTracks(file.append("Title=next"), tracks);
    ASSERT_TRUE(load.complete()) << load.status.why();
    EXPECT_THAT(tracks.Points(0, 1), ElementsAre(0.1, -1, 0.5));
    EXPECT_THAT(tracks.Points(1, 1), ElementsAre(1e-3, 250, 7));
    EXPECT_EQ(tracks.Record(2).Title, "next");
  }
}

TEST(TrackFile, ThirdColumnsFollowTheMode) {
  const auto third = [](std::string_view mode, std::string_view number, std::string_view time) {
    TrackStore tracks;
    const TrackFileLoad load =
        ReadTracks(File({number, mode, "pnum=1", time, "Table", "1\t2\t3"}), tracks);
    EXPECT_TRUE(load.complete());
    return tracks.Value(2, number == "DataNum=0" ? 0 : 4, 0);
  };
  EXPECT_EQ(third("Mode=1", "DataNum=4", ""), 0);
  EXPECT_EQ(third("Mode=2", "DataNum=4", ""), 3);
  EXPECT_EQ(third("Mode=4", "DataNum=4", "TimeRecording=0"), 0);
  EXPECT_EQ(third("Mode=4", "DataNum=4", "TimeRecording=1"), 3);
  EXPECT_EQ(third("Mode=5", "DataNum=4", ""), 0);
  EXPECT_EQ(third("Mode=5", "DataNum=0", ""), 3);
  EXPECT_EQ(third("Mode=6", "DataNum=4", ""), 3);
  EXPECT_EQ(third("Mode=7", "DataNum=4", ""), 3);

  TrackStore tracks;
  ASSERT_TRUE(ReadTracks(File({"DataNum=0", "Mode=5", "pnum=2", "Table", "0\t1\t10", "0\t1\t20",
                               "DataNum=9", "Mode=5", "pnum=2", "Table", "0\t1", "0\t1"}),
                         tracks)
                  .complete());
  EXPECT_THAT(tracks.Points(2, 9), ElementsAre(10, 20));
  EXPECT_EQ(tracks.Value(2, 3, 1), 20);
  EXPECT_EQ(tracks.Value(2, 10, 0), 0);
  // Imported alone, a channel is a track of two columns.
  TrackStore imported;
  ASSERT_TRUE(ImportTrack(FormatTracks(tracks), 0, imported, 0).complete());
  EXPECT_EQ(imported.Value(2, 0, 1), 0);
}

TEST(TrackFile, WhatIsMissingKeepsItsPointsAndIsRemarkedOn) {
  TrackStore tracks;
  for (std::int32_t i = 0; i < 3; ++i) tracks.SetValue(0, 0, i, 9);
  const TrackFileLoad load =
      ReadTracks(File({"Mode=1", "pnum=3", "Table", "1\t1", "2\t2"}), tracks);
  EXPECT_TRUE(load.complete());
  EXPECT_THAT(tracks.Points(0, 0), ElementsAre(1, 2, 9));
  EXPECT_THAT(load.remarks, ElementsAre("track 0: the file ends after 2 of 3 points"));
}

TEST(TrackFile, BreaksOffAtWhatIsNoNumber) {
  for (const std::string_view bad :
       {"", "x\t1", "1\tx", "1", "1\t", "\t1", "1\t2e-", "1 2\t3", "1\t2,5", "nan\t1", "1\t0x1"}) {
    TrackStore tracks;
    tracks.SetValue(0, 1, 1, 9);
    const TrackFileLoad load =
        ReadTracks(File({"DataNum=1", "Mode=1", "Title=kept", "pnum=3", "Table", "1\t1", bad,
                         "3\t3", "DataNum=2", "Mode=1"}),
                   tracks);
    EXPECT_EQ(load.outcome, Outcome::kBrokenOff) << bad;
    EXPECT_THAT(load.status.why(), HasSubstr("track 1: point 1: \""));
    EXPECT_EQ(tracks.Record(1).Title, "kept");
    EXPECT_EQ(tracks.Value(0, 1, 0), 1);
    EXPECT_EQ(tracks.Record(2).Mode, kModeNone);
    EXPECT_EQ(tracks.kl.KLSubVal.size(), static_cast<std::size_t>(kTracks));
  }
}

TEST(TrackFile, OtherFilesChangeNothing) {
  for (const std::string_view bytes : {"", "ZENTO", "ZENTO File 2\r\nDataNum=0\r\nMode=1\r\n",
                                       "zento file\r\n", "\nZENTO File\n"}) {
    TrackStore tracks;
    Fill(tracks, 0, kModeCV, 2);
    const std::string before = FormatTracks(tracks);
    EXPECT_EQ(ReadTracks(bytes, tracks).outcome, Outcome::kNotRecognized);
    EXPECT_EQ(ImportTrack(bytes, 0, tracks, 0).outcome, Outcome::kNotRecognized);
    EXPECT_EQ(FormatTracks(tracks), before);
  }
}

TEST(TrackFile, HostileNumbersStayWithinTheStore) {
  TrackStore tracks;
  const TrackFileLoad load =
      ReadTracks(File({"DataNum=-1",          "Mode=1",  "pnum=2",   "Table",  "1\t1",  "2\t2",  //
                       "DataNum=21",          "Mode=1",  "pnum=2",   "Table",  "x",     "2\t2",  //
                       "DataNum=99999999999", "Mode=1",  "pnum=1",   "Table",  "1\t1",           //
                       "DataNum=3",           "Mode=1",  "pnum=-7",  "Table",  "1\t1",           //
                       "DataNum=4",           "Mode=99", "pnum=2e9", "ref=-5", "Table", "1\t2"}),
                 tracks);
  EXPECT_TRUE(load.complete()) << load.status.why();
  EXPECT_EQ(load.remarks.size(), 5u);
  EXPECT_EQ(tracks.Record(0).Mode, kModeNone);
  EXPECT_EQ(tracks.Record(21).Mode, kModeNone);
  EXPECT_EQ(tracks.Record(3).pnum, 0);
  EXPECT_EQ(tracks.Record(4).pnum, kMaxPoints);
  EXPECT_EQ(tracks.Value(1, 4, 0), 2);
  EXPECT_LT(tracks.Column(0, 4).capacity(), 100u);  // the claim alone costs nothing
}

TEST(TrackFile, PointsBeyondTheCapacityAreLeftOutAndRemarkedOn) {
  std::string file = File({"DataNum=7", "Mode=1", "pnum=50000", "Table"});
  for (int i = 0; i < 50000; ++i) file += std::to_string(i) + "\t1e-6\r\n";
  file += "DataNum=8\r\nMode=1\r\npnum=1\r\nTable\r\n5\t6\r\n";
  TrackStore tracks;
  const TrackFileLoad load = ReadTracks(file, tracks);
  EXPECT_TRUE(load.complete());
  EXPECT_THAT(load.remarks, ElementsAre("track 7: of 50000 points the first 40001 were read, a "
                                        "track has room for no more"));
  EXPECT_EQ(tracks.Value(0, 7, 40000), 40000);
  EXPECT_EQ(tracks.Value(0, 8, 0), 5);
}

TEST(TrackFile, ImportsOneTrackIntoAnySlot) {
  TrackStore source;
  Fill(source, 0, kModeCV, 5);
  Fill(source, 7, kModeRDE, 3);
  source.Record(7).Title = "seven";
  const std::string file = FormatTracks(source);

  TrackStore tracks;
  Fill(tracks, 2, kModePS, 9);
  tracks.Record(2).StepTime = 1;
  const std::string before = FormatTracks(tracks);
  EXPECT_TRUE(ImportTrack(file, 6, tracks, 2).complete());
  EXPECT_EQ(FormatTracks(tracks), before);

  EXPECT_TRUE(ImportTrack(file, 7, tracks, 22).complete());
  EXPECT_EQ(tracks.Record(22).Title, "seven");
  EXPECT_EQ(tracks.Record(22).pnum, 3);
  EXPECT_EQ(tracks.Value(2, 22, 2), 5e-9);
  EXPECT_EQ(FormatTracks(tracks), before);

  TrackHeaders headers;
  EXPECT_TRUE(ReadHeaders(file, headers).complete());
  EXPECT_EQ(headers[7], source.Record(7));
  EXPECT_EQ(headers[0].pnum, 5);
  EXPECT_EQ(headers[3], TrackRecord());
}

TEST(TrackFile, OpensAndSavesThroughFiles) {
  Workstation ws;
  MemoryFiles files;
  Fill(ws.tracks, 0, kModeCV, 2);
  ASSERT_TRUE(SaveTracksAs(ws, files, "folder/data.ZNT").ok());
  EXPECT_EQ(ws.FileTitle, "data.ZNT.znt");
  ASSERT_TRUE(SaveTracksAs(ws, files, "folder/run.znt").ok());
  EXPECT_EQ(ws.FileTitle, "run.znt");

  files.FailNext(MemoryFiles::Operation::kReplace, "no space left on device");
  const Status failed = SaveTracksAs(ws, files, "folder/other.znt");
  EXPECT_THAT(failed.why(), HasSubstr("no space left on device"));
  EXPECT_EQ(ws.FileTitle, "run.znt");

  Workstation other;
  EXPECT_TRUE(OpenTracks(other, files, "folder/run.znt").complete());
  EXPECT_EQ(other.FileTitle, "run.znt");
  EXPECT_EQ(other.DataGeneration, 1);
  EXPECT_EQ(OpenTracks(other, files, "missing.znt").outcome, Outcome::kUnreadable);
  ASSERT_TRUE(files.Replace("bad.znt", File({"Mode=1", "pnum=1", "Table", "?"})).ok());
  const TrackFileLoad bad = OpenTracks(other, files, "bad.znt");
  EXPECT_EQ(bad.outcome, Outcome::kBrokenOff);
  EXPECT_THAT(bad.status.why(), HasSubstr("bad.znt: track 0: point 0"));
  EXPECT_EQ(other.FileTitle, "run.znt");
  EXPECT_EQ(other.DataGeneration, 1);
}

// Line by line over the whole file, as the format is explained.
bool ReadLineByLine(std::string_view bytes, TrackHeaders& records) {
  TrackFileLines lines(bytes);
  int target = 0;
  for (auto kind = lines.Next(); kind != TrackFileLines::Kind::kEnd; kind = lines.Next()) {
    if (kind == TrackFileLines::Kind::kTable) continue;
    if (lines.key() == "DataNum") target = lines.Number();
    if (target < 0 || target >= kTracks) continue;
    const bool text = lines.key() == "Title" || lines.key() == "MeasTime";
    ApplyTrackKey(records[static_cast<std::size_t>(target)], lines.key(),
                  text ? lines.Text() : std::string(lines.value()));
  }
  return lines.recognized();
}

std::string SmallFile() {
  std::string file = "ZENTO File\r\nKLUseFlag= 0 0\r\n";
  for (const int track : {0, 3, 20, 21, 7}) {
    file += "DataNum= " + std::to_string(track) + "\r\nMode= 1\r\nTitle=Pt a=b 白金\r\npnum= 3\r\n";
    file += "Table\r\n0.1000\t1.0e-5\r\n0.2000\t2.0e-5\r\n0.3000\t3.0e-5\r\n";
  }
  return file;
}

// What a hand, another program or a broken disk may leave of a track file.
std::vector<std::string> OddFiles() {
  const std::string file = SmallFile();
  std::string lone_cr = file;
  std::erase(lone_cr, '\n');
  std::string doubled;
  for (const char c : file) doubled += c == '\r' ? "\r\r" : std::string(1, c);
  std::string wrong_count = file;
  wrong_count.replace(wrong_count.find("pnum= 3"), 7, "pnum= 40000");
  return {file,
          "\xEF\xBB\xBF" + file,
          lone_cr,
          doubled,
          wrong_count,
          file.substr(0, file.rfind("\xE9\x87") + 1),  // cut off in a character
          file + "DataNum= 5\r\nMode= 2\r\nTitle=\x94\x92\x8B\xE0\r\n",
          file + "MeasTime=\xFF=x",
          file + std::string(5000, '7') + "=8\r\nTitle=" + std::string(3000, 'T') + "\r\nMode= 4",
          file + std::string(100, '=') + "\n\nMode\n=\nMode==3\nTitle=",
          "ZENTO File",
          "ZENTO Files\r\n" + file,
          "ZENTO File \r\nMode= 3",
          "ZENTO Fil",
          "",
          "\xEF\xBB\xBF"};
}

TEST(TrackHeaderStream, PiecesOfAnySizeGiveWhatReadingLineByLineGives) {
  std::mt19937 random(5);
  for (const std::string& file : OddFiles()) {
    TrackHeaders expected;
    const bool recognized = ReadLineByLine(file, expected);
    for (int round = 0; round < 40; ++round) {
      TrackHeaders records;
      TrackHeaderStream stream(records);
      std::uniform_int_distribution<std::size_t> size(1, round < 20 ? 4 : 400);
      for (std::string_view rest = file; !rest.empty();) {
        const std::string_view piece = rest.substr(0, size(random));
        stream.Feed(std::string(piece));
        rest.remove_prefix(piece.size());
      }
      EXPECT_EQ(stream.Finish().complete(), recognized) << file;
      EXPECT_EQ(records, expected) << file;
    }
  }
}

TEST(TrackHeaderStream, RandomBytesAroundKeysGiveWhatReadingLineByLineGives) {
  std::mt19937 random(6);
  const std::vector<std::string> words = {"Title=", "DataNum= 3", "DataNum=25", "\r",    "\n",
                                          "\r\n",   "=",          "\xE7\x99",   "\xBD",  "x",
                                          "Mode=",  "2",          "\x8B",       "Table", "pnum= 9"};
  for (int round = 0; round < 3000; ++round) {
    std::string file = "ZENTO File\n";
    for (int i = 0; i < 40; ++i) file += words[random() % words.size()];
    TrackHeaders expected;
    TrackHeaders records;
    ReadLineByLine(file, expected);
    TrackHeaderStream stream(records);
    const std::size_t cut = random() % file.size();
    stream.Feed(std::string_view(file).substr(0, cut));
    stream.Feed(std::string_view(file).substr(cut));
    ASSERT_TRUE(stream.Finish().complete());
    ASSERT_EQ(records, expected) << testing::PrintToString(file);
  }
}

TEST(TrackHeaderStream, LinesWithoutEndTakeNoMemoryAndForeignFilesEndAtOnce) {
  TrackHeaders records;
  TrackHeaderStream stream(records);
  EXPECT_TRUE(stream.Feed("ZENTO File\r\nMode= 3\r\nTitle="));
  const std::string piece(1 << 20, 'x');
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(stream.Feed(piece));
  EXPECT_TRUE(stream.Finish().complete());
  EXPECT_EQ(records[0].Mode, 3);
  EXPECT_LT(records[0].Title.size(), TrackHeaderStream::kLongestLine);

  TrackHeaderStream foreign(records);
  EXPECT_FALSE(foreign.Feed("PK\x03\x04 something that is no track file"));
}

TEST(TrackHeaderStream, AFailedReadLeavesTheRecordsAsTheyWere) {
  MemoryFiles files;
  ASSERT_TRUE(files.Replace("a.znt", SmallFile()).ok());
  TrackHeaders records;
  records[3].Title = "before";
  files.FailNext(MemoryFiles::Operation::kRead);
  EXPECT_EQ(ReadTrackHeaders(files, "a.znt", records).outcome, TrackFileLoad::Outcome::kUnreadable);
  EXPECT_EQ(records[3].Title, "before");
  const TrackFileLoad load = ReadTrackHeaders(files, "a.znt", records);
  EXPECT_TRUE(load.complete());
  EXPECT_EQ(load.remarks.size(), 1U);  // track 21
  EXPECT_EQ(records[3].Title, "Pt a=b 白金");
}

}  // namespace
}  // namespace zento
