#include "core/track_header_stream.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/track_file_lines.h"
#include "core/track_keys.h"
#include "host/virtual/memory_services.h"
#include "text/number.h"

namespace zento {
namespace {

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
