#include "graph/track_preview.h"

#include <gtest/gtest.h>

#include <string>

#include "core/modes.h"
#include "core/palette.h"
#include "core/track_store.h"
#include "graph/test_surface.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

constexpr Colour kDisk{0, 0, 255};
constexpr Colour kRing{255, 0, 0};
constexpr PreviewStyle kStyles[] = {PreviewStyle::kLines, PreviewStyle::kDots};

class EmptyForm : public Form {
 public:
  explicit EmptyForm(Host& host) : Form(host, "form", "") {}
  LayoutNode Layout() override { return {}; }
};

class Preview : public ::testing::Test {
 protected:
  // Points (i / 10, i / 1000), and a third column that falls from points / 1000.
  void Fill(int track, Mode mode, std::int32_t points) {
    tracks.Record(track).Mode = mode;
    tracks.Record(track).pnum = points;
    for (std::int32_t i = 0; i < points; ++i) {
      tracks.SetValue(0, track, i, 0.1 * i);
      tracks.SetValue(1, track, i, 1e-3 * i);
      tracks.SetValue(2, track, i, 1e-3 * (points - i));
    }
  }
  TestSurface Drawn(int track, PreviewStyle style) {
    DrawTrack(plot, tracks, track, RangeOf(tracks, track), style);
    TestSurface picture({600, 400});
    plot.Paint(picture);
    return picture;
  }

  VirtualHost machine;
  EmptyForm form{machine.host};
  PreviewPlot plot{form, "PrevGraph"};
  TrackStore tracks;
};

TEST_F(Preview, EachCycleHasItsColour) {
  // 0 -> 0.5 -> 0 -> 0.5 -> 0 V: boundaries 0, 10, 20.
  Fill(0, kModeCV, 21);
  tracks.Record(0).V = {0, 0.5, 0};
  for (int i = 0; i < 21; ++i) {
    const int phase = i % 10;
    tracks.SetValue(0, 0, i, 0.1 * (phase <= 5 ? phase : 10 - phase));
  }
  for (const int cycle : {1, 2}) {
    const Colour line = HLSToRGB(144 * cycle / 3 + 64, 16, 16);
    const Colour dot = HLSToRGB(164 * cycle / 3 + 64, 16, 16);
    EXPECT_GT(Drawn(0, PreviewStyle::kLines).Count(line), 100) << cycle;
    EXPECT_GE(Drawn(0, PreviewStyle::kDots).Count(dot), 8) << cycle << ", without those on the rim";
  }
}

TEST_F(Preview, AxisAndColoursFollowTheMode) {
  const struct {
    Mode mode;
    const char* title;
    const char* format;
    bool ring;
  } rows[] = {{kModeRDE, "Potential /V", "0.0", true},
              {kModePS, "Time /s", "###0.0", false},
              {kModeRPMvsj, "Rotation rate /rpm", "###0", false},
              {kModeSSV, "Potential /V", "0.0", true},
              {kModeSSVAll, "Potential /V", "0.0", false}};
  for (const auto& row : rows) {
    Fill(1, row.mode, 5);
    for (const PreviewStyle style : kStyles) {
      const TestSurface picture = Drawn(1, style);
      EXPECT_GT(picture.Count(kDisk), 0) << row.mode;
      EXPECT_EQ(picture.Count(kRing) > 0, row.ring) << row.mode;
      EXPECT_NE(picture.Find(row.title), nullptr) << row.mode;
      EXPECT_NE(picture.Find("Current /A"), nullptr);
    }
    EXPECT_STREQ(PreviewXFormat(row.mode), row.format);
  }
}

TEST_F(Preview, ChannelsShareTheTimeOfTrackZero) {
  for (int track = 0; track < 10; ++track) {
    Fill(track, kModeMulti, 4);
    for (int i = 0; i < 4; ++i) {
      tracks.SetValue(0, track, i, -1e-3 * (i + track) - 1e-3);
      tracks.SetValue(1, track, i, 1e-3 * (i + track));
      tracks.SetValue(2, track, i, track == 0 ? i : -7);
    }
  }
  tracks.Record(7).Vymin = -0.015;
  tracks.Record(7).Vymax = 0.015;
  EXPECT_EQ(RangeOf(tracks, 7), (DisplayRange{0, -0.015, 3, 0.015}));
  for (const PreviewStyle style : kStyles) {
    const TestSurface picture = Drawn(7, style);
    for (int channel = 0; channel < 10; ++channel) {
      EXPECT_GE(picture.Count(TrackColor(channel)), 1) << channel;
      EXPECT_GE(picture.Count(TrackPaleColor(channel)), 1) << channel;
    }
    EXPECT_NE(picture.Find("Time /s"), nullptr);
  }
}

TEST_F(Preview, WithoutPointsOrOfUnknownModeThereIsNoCurve) {
  Fill(1, kModeRDE, 5);
  const auto coloured = [this](int track, std::int32_t mode, PreviewStyle style) {
    tracks.Record(track).Mode = mode;
    const TestSurface picture = Drawn(track, style);
    return picture.Count(kDisk) + picture.Count(kRing);
  };
  for (const PreviewStyle style : kStyles) {
    for (const std::int32_t mode : {1, 2, 5}) EXPECT_EQ(coloured(0, mode, style), 0) << mode;
    for (const std::int32_t mode : {0, 8, 99, -3}) EXPECT_EQ(coloured(1, mode, style), 0) << mode;
  }
}

TEST_F(Preview, FallsBackOnTheDataWhereTheRangeIsEmpty) {
  Fill(0, kModePS, 11);
  EXPECT_EQ(RangeOf(tracks, 0), (DisplayRange{0, 0, 1, 0.01}));
  tracks.Record(0).Vxmin = -2;
  tracks.Record(0).Vymax = 5;
  EXPECT_EQ(RangeOf(tracks, 0), (DisplayRange{-2, 0, 0, 5}));
}

}  // namespace
}  // namespace zento
