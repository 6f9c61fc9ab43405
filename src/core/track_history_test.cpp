#include "core/track_history.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>

#include "core/track_file.h"
#include "core/track_store.h"
#include "core/workstation.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct TrackHistoryTest : ::testing::Test {
  void Fill(int track, double first) {
    TrackRecord& record = ws.tracks.Record(track);
    record.Mode = kModeCV;
    record.Title = "t" + std::to_string(track);
    record.pnum = 3;
    for (std::int32_t i = 0; i < 3; ++i) ws.tracks.SetValue(1, track, i, first + i);
  }
  void Step(const std::string& name, int track, double value,
            TrackChange::Kind kind = TrackChange::Kind::kStep) {
    const TrackChange change(ws, name, {track}, kind);
    ws.tracks.SetValue(1, track, 0, value);
  }
  double First(int track) const { return ws.tracks.Value(1, track, 0); }
  bool Undo() { return ws.history.Undo(ws.tracks).ok(); }
  bool Redo() { return ws.history.Redo(ws.tracks).ok(); }

  Workstation ws;
};

TEST_F(TrackHistoryTest, StepsAreTakenBackAndDoneAgainToTheByte) {
  Fill(3, 1);
  Fill(5, 10);
  const std::string before = FormatTracks(ws.tracks);
  {
    const TrackChange change(ws, "Swap", {3, 5, 7, 99, -1});
    std::swap(ws.tracks.Record(3), ws.tracks.Record(5));
    std::swap(ws.tracks.Column(1, 3), ws.tracks.Column(1, 5));
  }
  Step("Smoothing", 5, 42);
  const std::string after = FormatTracks(ws.tracks);
  EXPECT_EQ(ws.history.UndoName(), "Smoothing");
  EXPECT_TRUE(Undo());
  const auto swapped = ws.history.Undo(ws.tracks);
  ASSERT_TRUE(swapped.ok());
  EXPECT_THAT(swapped.value(), ElementsAre(3, 5));
  EXPECT_EQ(FormatTracks(ws.tracks), before);
  EXPECT_FALSE(Undo());
  EXPECT_EQ(ws.history.RedoName(), "Swap");
  EXPECT_TRUE(Redo());
  EXPECT_TRUE(Redo());
  EXPECT_EQ(FormatTracks(ws.tracks), after);
  EXPECT_FALSE(Redo());
  EXPECT_TRUE(Undo());
  Step("Edit", 3, 7);  // another way from here
  EXPECT_FALSE(Redo());
}

TEST_F(TrackHistoryTest, WhatChangesNothingIsNoStep) {
  Fill(0, 1);
  Step("Edit", 0, 1);
  EXPECT_EQ(ws.history.UndoName(), "");
  ws.tracks.SetValue(1, 0, 0, std::numeric_limits<double>::quiet_NaN());
  Step("Edit", 0, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(ws.history.UndoName(), "");
}

TEST_F(TrackHistoryTest, ReadingATrackIsNoChange) {
  Fill(0, 1);
  Step("Edit", 0, 5);
  {
    const TrackChange change(ws, "Look", {0});
    ws.tracks.Points(2, 0);  // fills the column up
  }
  EXPECT_EQ(ws.history.UndoName(), "Edit");
  EXPECT_TRUE(Undo());
  EXPECT_EQ(First(0), 1);
  ws.tracks.Points(2, 0);
  EXPECT_TRUE(Redo());
  EXPECT_EQ(First(0), 5);
}

TEST_F(TrackHistoryTest, TheSignOfAZeroIsPutBack) {
  Fill(0, 0);
  Step("Basic operation", 0, -0.0);
  EXPECT_TRUE(Undo());
  EXPECT_FALSE(std::signbit(First(0)));
}

TEST_F(TrackHistoryTest, ChangesWithinAChangeAreOneStep) {
  Fill(0, 1);
  Fill(1, 1);
  {
    const TrackChange outer(ws, "All");
    Step("One", 0, 5);
    Step("Two", 1, 6);
  }
  EXPECT_EQ(ws.history.UndoName(), "All");
  EXPECT_TRUE(Undo());
  EXPECT_EQ(First(0) + First(1), 2);
  EXPECT_FALSE(Undo());
}

TEST_F(TrackHistoryTest, TypingIsOneStep) {
  using enum TrackChange::Kind;
  Fill(0, 1);
  Step("Edit of the title", 0, 2, kMerge);
  Step("Edit of the title", 0, 3, kMerge);
  Step("Edit of the title", 0, 4, kMerge);
  EXPECT_TRUE(Undo());
  EXPECT_EQ(First(0), 1);
  EXPECT_FALSE(Undo());
  EXPECT_TRUE(Redo());
  Step("Edit of the title", 0, 5, kMerge);  // begins anew
  EXPECT_TRUE(Undo());
  EXPECT_EQ(First(0), 4);
}

TEST_F(TrackHistoryTest, MeasuredPointsAreNeverTakenBack) {
  Fill(0, 1);
  Step("Edit", 0, 2);
  Step("Edit", 0, 3);
  ws.tracks.SetValue(1, 0, 2, 99);  // a measurement
  const auto undone = ws.history.Undo(ws.tracks);
  EXPECT_THAT(undone.why(), HasSubstr("track 0 was measured or changed otherwise since"));
  EXPECT_FALSE(Undo());  // the one before would be no better
  EXPECT_EQ(First(0), 3);
  EXPECT_EQ(ws.tracks.Value(1, 0, 2), 99);
  EXPECT_EQ(ws.history.UndoName(), "");
}

TEST_F(TrackHistoryTest, TwentyOfTheLargestStepsAreKept) {
  for (int column = 0; column < 2; ++column) {
    ws.tracks.Column(column, 4).assign(kMaxPoints, 1.0);
    ws.tracks.Column(column, 6).assign(kMaxPoints, 1.0);
  }
  ws.tracks.Record(4).pnum = ws.tracks.Record(6).pnum = kMaxPoints;
  Fill(1, 0);
  // More bytes than are kept otherwise.
  for (int i = 0; i < 120; ++i) {
    const TrackChange change(ws, std::to_string(i), {4, 6});
    ws.tracks.SetValue(1, 4, 0, 2.0 + i);
    ws.tracks.SetValue(1, 6, 0, 2.0 + i);
  }
  int undone = 0;
  while (Undo()) ++undone;
  EXPECT_GE(undone, 20);
  EXPECT_LE(undone, 60);
  int small = 0;
  for (int i = 1; i <= 300; ++i) Step(std::to_string(i), 1, i);
  while (Undo()) ++small;
  EXPECT_EQ(small, 200);
  EXPECT_EQ(First(1), 100);
}

}  // namespace
}  // namespace zento
