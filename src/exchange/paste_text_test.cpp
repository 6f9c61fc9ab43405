#include "exchange/paste_text.h"

#include "core/modes.h"
#include "core/track.h"
#include "core/track_store.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace zento {
namespace {

using ::testing::ElementsAre;

struct PasteOf {
  explicit PasteOf(const std::string& text, const TrackRecord& before = {}) {
    tracks.Record(3) = before;
    pasted = PasteText(text, tracks, 3);
  }
  std::vector<double> operator[](int column) {
    const auto points = tracks.Points(column, 3);
    return {points.begin(), points.end()};
  }
  const TrackRecord& record() { return tracks.Record(3); }
  TrackStore tracks;
  Pasted pasted;
};

TEST(PasteText, TakesWhatSpreadsheetsMakeOfLines) {
  const std::string rows[] = {"Mode", "Mode:RDE", "0.1", "1e-5", "2", "-0.25", "-1.5E-06", "3"};
  for (const std::string end : {"\r\n", "\n", "\r", "\r\r\n"}) {
    const std::string text = rows[0] + "\t" + rows[1] + end + end + rows[2] + "\t" + rows[3] +
                             "\t" + rows[4] + end + rows[5] + "\t" + rows[6] + "\t" + rows[7];
    for (const std::string& whole : {text, text + end}) {
      PasteOf paste(whole);
      EXPECT_EQ(paste.record().Mode, kModeRDE);
      EXPECT_THAT(paste[0], ElementsAre(0.1, -0.25));
      EXPECT_THAT(paste[1], ElementsAre(1e-5, -1.5e-6));
      EXPECT_THAT(paste[2], ElementsAre(2, 3));
    }
  }
}

TEST(PasteText, DecimalCommasCountOnlyWhereTheyCanBeNothingElse) {
  PasteOf paste(
      "Mode\tCV\nScanrate\t0,5\n0,1\t-1,5E-06\n0.2\t1,234.5\n1,2,3\t4\n1,234.5\t4\n ,5\t,5 ");
  EXPECT_EQ(paste.record().Scanrate, 0.5);
  EXPECT_THAT(paste[0], ElementsAre(0.1, 0.2, 0.5));
  EXPECT_THAT(paste[1], ElementsAre(-1.5e-6, 1, 0.5));
}

TEST(PasteText, CellsThatAreNoNumbersAre0AndFurtherOnesAreDropped) {
  PasteOf paste("Mode\tCV\n1\tx\ty\n2\t\n3\t4\t5\t6\n4\t5\t6\twater\nrow\t9\n7\n + 8\t1\n 9 \t1");
  EXPECT_THAT(paste[0], ElementsAre(1, 2, 3, 4, 9));
  EXPECT_THAT(paste[1], ElementsAre(0, 0, 4, 5, 1));
  EXPECT_THAT(paste[2], ElementsAre(0, 0, 5, 6, 0));
}

TEST(PasteText, HasRoomForTheShortestLinesThereAre) {
  std::string text = "7\t";
  for (int i = 1; i < 1000; ++i) text += "\n7\t";
  PasteOf paste(text);
  EXPECT_EQ(paste.pasted.points, 1000);
  EXPECT_GE(paste.tracks.Column(2, 3).size(), 1000u);
}

TEST(PasteText, FieldsKeepTheirValuesUntilALineReplacesThem) {
  TrackRecord before;
  before.Mode = kModePS;
  before.Title = "old";
  before.RPM = 400;
  before.ref = 3;
  before.V = {1, 2, 3};
  before.pnum = 9;
  PasteOf paste("Title\tnew\tnot this\r\npH\t7.4\r\nRef\tSHE\r\nV2nd\t0.5 V\r\n1\t2\r\n", before);
  EXPECT_EQ(paste.record().Title, "new");
  EXPECT_EQ(paste.record().Mode, kModePS);
  EXPECT_EQ(paste.record().RPM, 400);
  EXPECT_EQ(paste.record().ref, 3);
  EXPECT_EQ(paste.record().pH, 7.4);
  EXPECT_THAT(paste.record().V, ElementsAre(0, 0.5, 0));
  EXPECT_EQ(paste.record().pnum, 1);
}

TEST(PasteText, TheModeIsTheHighestNameInItsCell) {
  EXPECT_EQ(PasteOf("Mode\tMode:SSVAll").record().Mode, kModeSSVAll);
  EXPECT_EQ(PasteOf("Mode\tMode:SSV").record().Mode, kModeSSV);
  EXPECT_EQ(PasteOf("Mode\tssvall").record().Mode, kModeNone);
  EXPECT_EQ(PasteOf("mode\tCV").record().Mode, kModeNone);
}

TEST(PasteText, TheRangeReachesDownTo10AndUpToMinus10) {
  PasteOf sweep("Mode\tCV\n0.5\t-20\n4.5\t-12\n");
  EXPECT_EQ(sweep.record().Vxmin, 0.5);
  EXPECT_EQ(sweep.record().Vxmax, 4.5);
  EXPECT_EQ(sweep.record().Vymin, -20);
  EXPECT_EQ(sweep.record().Vymax, -10);
  PasteOf rates("Mode\tRPMvs.j\n400\t1\n900\t2\n");
  EXPECT_EQ(rates.record().Vxmin, 10);
  EXPECT_EQ(rates.record().Vxmax, 900);
}

TEST(PasteText, VerticesAreWhereTheSweepTurns) {
  PasteOf twice("Mode\tCV\n0.1\t0\n0.2\t0\n0.3\t0\n0.2\t0\n-0.1\t0\n0\t0\n0.2\t0\n0.1\t0\n");
  EXPECT_THAT(twice.record().V, ElementsAre(0.1, 0.3, -0.1));
  // Standing still is a direction too.
  PasteOf still("Mode\tCV\n0.1\t0\n0.1\t0\n0.2\t0\n0.2\t0\n0.3\t0\n0.1\t0\n");
  EXPECT_THAT(still.record().V, ElementsAre(0.1, 0.2, 0.2));
  PasteOf given("Mode\tCV\nV1st\t5\nV3rd\t1\n0.1\t0\n0.2\t0\n0.1\t0\n");
  EXPECT_THAT(given.record().V, ElementsAre(5, 0, 1));
}

}  // namespace
}  // namespace zento
