#include "core/track_store.h"

#include <gmock/gmock.h>

#include "core/palette.h"
#include "core/sweeps.h"
#include "core/tables.h"

namespace zento {
namespace {

using ::testing::ElementsAre;

TrackRecord FullRecord() {
  TrackRecord record;
  record.Mode = kModeRDE;
  record.Title = "Pt in 0.1 M HClO4";
  record.MeasTime = "2026/11/22 21:32:39";
  record.Scanrate = 50;
  record.V = {0.1, 1.2, -0.2};
  record.Vxmin = -0.2;
  record.Vymin = -1e-3;
  record.Vxmax = 1.2;
  record.Vymax = 1e-3;
  record.RingXValue = 1.1;
  record.MaxTime = 56000;
  record.RPM = 1600;
  record.pnum = 3;
  record.Conc = 1.2e-6;
  record.Area = 0.2827;
  record.Weight = 0.01;
  record.ne = 4;
  record.DiskYscale = 0.001;
  record.RingYscale = 1e-5;
  record.TimeRecording = 1;
  record.ref = 3;
  record.pH = 1;
  record.StepTime = 30;
  record.VoltStep = 0.005;
  return record;
}

TEST(TrackStore, ClearingKeepsWhatDescribesTheCell) {
  TrackStore tracks;
  tracks.Record(4) = FullRecord();
  tracks.SetValue(0, 4, 2, 0.5);
  tracks.ClearTrack(4);

  TrackRecord expected;
  expected.ne = 1;
  expected.V = {0.1, 1.2, -0.2};
  expected.Weight = 0.01;
  expected.DiskYscale = 0.001;
  expected.RingYscale = 1e-5;
  expected.TimeRecording = 1;
  expected.ref = 3;
  expected.pH = 1;
  EXPECT_EQ(tracks.Record(4), expected);
  EXPECT_EQ(tracks.Value(0, 4, 2), 0.5);
}

TEST(TrackStore, CopyingAHeaderLeavesTheTargetsScales) {
  TrackStore tracks;
  tracks.Record(1) = FullRecord();
  tracks.Record(2).DiskYscale = 7;
  tracks.Record(2).RingYscale = 8;
  tracks.CopyTrackHeader(1, 2);
  TrackRecord expected = FullRecord();
  expected.DiskYscale = 7;
  expected.RingYscale = 8;
  expected.TimeRecording = 0;
  EXPECT_EQ(tracks.Record(2), expected);
}

TEST(TrackStore, CopyingPointsTakesTheThirdColumnOfRingModesOnly) {
  for (const auto& [mode, third] : {std::pair{kModeCV, 0.0},
                                    {kModeRDE, 3.0},
                                    {kModePS, 0.0},
                                    {kModeRPMvsj, 0.0},
                                    {kModeSSV, 3.0},
                                    {kModeSSVAll, 3.0}}) {
    TrackStore tracks;
    tracks.Record(0) = FullRecord();
    tracks.Record(0).Mode = mode;
    tracks.Record(0).pnum = 2;
    for (int column = 0; column < kTrackColumns; ++column) {
      tracks.SetValue(column, 0, 0, column + 1);
      tracks.SetValue(column, 0, 2, 99);  // behind pnum
    }
    tracks.CopyTrackData(0, 9);
    EXPECT_EQ(tracks.Value(0, 9, 0), 1);
    EXPECT_EQ(tracks.Value(1, 9, 0), 2);
    EXPECT_EQ(tracks.Value(2, 9, 0), third) << "mode " << mode;
    EXPECT_EQ(tracks.Value(0, 9, 2), 0) << "mode " << mode;
  }
}

TEST(TrackStore, PointsAreBoundedWhateverTheHeaderClaims) {
  TrackStore tracks;
  tracks.SetValue(0, 0, -1, 1);
  tracks.SetValue(0, 0, kMaxPoints, 1);
  EXPECT_TRUE(tracks.Column(0, 0).empty());
  tracks.SetValue(0, 0, kMaxPoints - 1, 1);
  EXPECT_EQ(tracks.Value(0, 0, kMaxPoints - 1), 1);
  EXPECT_EQ(tracks.Value(0, 0, kMaxPoints), 0);
  EXPECT_EQ(tracks.Value(0, 0, -1), 0);

  tracks.Record(1).pnum = 2000000000;
  EXPECT_EQ(tracks.Points(1, 1).size(), static_cast<std::size_t>(kMaxPoints));
  tracks.Record(1).pnum = -5;
  EXPECT_TRUE(tracks.Points(1, 1).empty());
}

TEST(Palette, FollowsTheHueCircle) {
  EXPECT_EQ(HLSToRGB(48, 16, 31), (Colour{128, 0, 255}));  // 31.5 rounds to 32, half way is 16
  EXPECT_EQ(HLSToRGB(0, 16, 32), (Colour{255, 0, 0}));
  EXPECT_EQ(HLSToRGB(64, 16, 32), (Colour{0, 0, 255}));
  EXPECT_EQ(HLSToRGB(128, 16, 32), (Colour{0, 255, 0}));
  EXPECT_EQ(HLSToRGB(77, 12, 0), (Colour{96, 96, 96}));
  EXPECT_EQ(kLightBlue, (Colour{0, 0, 255}));
  EXPECT_EQ(kLightRed, (Colour{255, 0, 0}));
}

TEST(Palette, TracksAreSaturatedAndPale) {
  for (int i = 0; i < kTrackColours; ++i) {
    const Colour pale = TrackPaleColor(i);
    const Colour full = TrackColor(i);
    EXPECT_EQ(std::min({pale.red, pale.green, pale.blue}), 152) << i;
    EXPECT_EQ(std::max({pale.red, pale.green, pale.blue}), 232) << i;
    EXPECT_EQ(std::min({full.red, full.green, full.blue}), 0) << i;
    EXPECT_EQ(std::max({full.red, full.green, full.blue}), 255) << i;
    for (int j = 0; j < i; ++j) EXPECT_NE(full, TrackColor(j)) << i << " and " << j;
  }
}

// Two cycles 0 -> 0.5 -> -0.3 -> 0 V in steps of 0.01 V.
void FillWithTwoCycles(TrackStore& tracks) {
  TrackRecord& record = tracks.Record(0);
  record.Mode = kModeCV;
  record.V = {0, 0.5, -0.3};
  std::int32_t point = 0;
  for (int cycle = 0; cycle < 2; ++cycle) {
    for (int i = cycle; i <= 50; ++i) tracks.SetValue(0, 0, point++, i * 0.01);
    for (int i = 49; i >= -30; --i) tracks.SetValue(0, 0, point++, i * 0.01);
    for (int i = -29; i <= 0; ++i) tracks.SetValue(0, 0, point++, i * 0.01);
  }
  record.pnum = point;
}

TEST(Sweeps, CyclesEndWhereTheFirstVertexIsPassed) {
  TrackStore tracks;
  FillWithTwoCycles(tracks);
  EXPECT_THAT(CycleBoundaries(tracks, 0), ElementsAre(0, 160, 320));
  EXPECT_EQ(FindVertex(tracks, 0, 0, 0.5), 50);
  EXPECT_EQ(FindVertex(tracks, 0, 50, -0.3), 130);
  EXPECT_EQ(FindVertex(tracks, 0, 321, 0.5), 320);

  tracks.Record(0).V[1] = 0.7;  // never within 0.1 V
  EXPECT_THAT(CycleBoundaries(tracks, 0), ElementsAre(0, 320));
  for (const Mode mode : {kModePS, kModeRPMvsj, kModeSSV, kModeSSVAll}) {
    tracks.Record(0).Mode = mode;
    EXPECT_THAT(CycleBoundaries(tracks, 0), ElementsAre(0, 320)) << mode;
  }
  tracks.Record(0).Mode = kModeMulti;
  EXPECT_EQ(CycleBoundaries(tracks, 0), std::vector<std::int32_t>(101));
}

TEST(Sweeps, EndForTracksThatAreNoSweeps) {
  TrackStore tracks;
  tracks.Record(0).Mode = kModeCV;
  EXPECT_THAT(CycleBoundaries(tracks, 0), ElementsAre(0, -1));  // no points
  // All vertices alike and passed at once.
  for (std::int32_t i = 0; i < 100; ++i) tracks.SetValue(0, 0, i, i * 0.01);
  tracks.Record(0).pnum = 100;
  EXPECT_THAT(CycleBoundaries(tracks, 0), ElementsAre(0, 99));
  // More turns than the list has room for.
  tracks.Record(0).V = {0, 0.05, 0};
  for (std::int32_t i = 0; i < 4000; ++i) tracks.SetValue(0, 0, i, i % 2 == 0 ? 0 : 0.05);
  tracks.Record(0).pnum = 4000;
  const std::vector<std::int32_t> boundaries = CycleBoundaries(tracks, 0);
  ASSERT_EQ(boundaries.size(), 101u);
  EXPECT_EQ(boundaries.back(), 3999);
}

TEST(Helpers, StepsAndLogarithms) {
  EXPECT_DOUBLE_EQ(TickStep(-0.2, 1.2), 0.2);
  EXPECT_DOUBLE_EQ(TickStep(0, 10), 1);
  EXPECT_DOUBLE_EQ(TickStep(0, 10.1), 2);
  EXPECT_DOUBLE_EQ(TickStep(1e-3, -1e-3), 5e-4);
  EXPECT_EQ(TickStep(3, 3), 1);
  EXPECT_FALSE(Log10OrEmpty(0));
  EXPECT_FALSE(Log10OrEmpty(-1));
  EXPECT_NEAR(*Log10OrEmpty(1000), 3, 1e-8);
  const std::vector<double> values = {2, -7, 5};
  EXPECT_EQ(ArrayMax(values), 5);
  EXPECT_EQ(ArrayMin(values), -7);
  EXPECT_EQ(AtOrNone(RefName, 9), "");
  EXPECT_EQ(AtOrNone(ModeName, -1), "None");
}

}  // namespace
}  // namespace zento
