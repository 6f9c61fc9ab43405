#include "graph/track_preview.h"

#include <gmock/gmock.h>

#include <set>
#include <tuple>
#include <vector>

#include "core/palette.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Rgb = std::tuple<int, int, int>;
Rgb Of(Colour colour) {
  return {colour.red, colour.green, colour.blue};
}

// Notes the colours of the curves and the texts around them.
class NotingSurface : public Surface {
 public:
  Size Extent() const override { return {600, 400}; }
  void Clear(Colour) override {}
  void Line(Point, Point, Colour colour, double) override { lines.push_back(Of(colour)); }
  void Polyline(std::span<const Point> points, Colour colour, double) override {
    if (points.size() > 1) lines.push_back(Of(colour));
  }
  void Dots(std::span<const Point> points, Colour colour) override {
    if (!points.empty()) dots.push_back(Of(colour));
  }
  void Circle(Point, double, Colour, const Colour*) override {}
  void Box(Rect, Colour) override {}
  void FillBox(Rect, Colour) override {}
  void Text(Point, std::string_view text, const TextStyle&) override { texts.emplace(text); }
  Size Measure(std::string_view text, const TextStyle& style) const override {
    return {static_cast<double>(text.size()) * style.size * 0.6, style.size};
  }
  void SetClip(Rect) override {}
  void ClearClip() override {}

  std::vector<Rgb> lines;
  std::vector<Rgb> dots;
  std::set<std::string, std::less<>> texts;
};

class EmptyForm : public Form {
 public:
  explicit EmptyForm(Host& host) : Form(host, "form", "") {}
  LayoutNode Layout() override { return {}; }
};

class Preview : public ::testing::Test {
 protected:
  // Points (i / 10, i), with i as third column.
  void Fill(int track, Mode mode, std::int32_t points) {
    tracks.Record(track).Mode = mode;
    tracks.Record(track).pnum = points;
    for (std::int32_t i = 0; i < points; ++i) {
      tracks.SetValue(0, track, i, 0.1 * i);
      tracks.SetValue(1, track, i, 1e-3 * i);
      tracks.SetValue(2, track, i, i);
    }
  }
  // The colours of what is drawn, without axes and grid: those of colours that an empty plot has.
  std::vector<Rgb> Colours(int track, PreviewStyle style) {
    NotingSurface empty;
    plot.Clear();
    plot.Paint(empty);
    const std::set<Rgb> frame(empty.lines.begin(), empty.lines.end());
    surface = {};
    DrawTrack(plot, tracks, track, RangeOf(tracks, track), style);
    plot.Paint(surface);
    std::vector<Rgb> drawn;
    const auto& all = style == PreviewStyle::kLines ? surface.lines : surface.dots;
    for (const Rgb& colour : all) {
      if (!frame.contains(colour) && (drawn.empty() || drawn.back() != colour)) {
        drawn.push_back(colour);
      }
    }
    return drawn;
  }

  VirtualHost machine;
  EmptyForm form{machine.host};
  PreviewPlot plot{form, "PrevGraph"};
  TrackStore tracks;
  NotingSurface surface;
};

TEST_F(Preview, EachCycleHasItsColour) {
  // 0 -> 0.5 -> 0 -> 0.5 -> 0 V: boundaries 0, 10, 20.
  Fill(0, kModeCV, 21);
  tracks.Record(0).V = {0, 0.5, 0};
  for (int i = 0; i < 21; ++i) {
    const int phase = i % 10;
    tracks.SetValue(0, 0, i, 0.1 * (phase <= 5 ? phase : 10 - phase));
  }
  EXPECT_THAT(Colours(0, PreviewStyle::kLines),
              ElementsAre(Of(HLSToRGB(144 / 3 + 64, 16, 16)), Of(HLSToRGB(288 / 3 + 64, 16, 16))));
  EXPECT_THAT(Colours(0, PreviewStyle::kDots),
              ElementsAre(Of(HLSToRGB(164 / 3 + 64, 16, 16)), Of(HLSToRGB(328 / 3 + 64, 16, 16))));
  EXPECT_TRUE(surface.texts.contains("Potential /V"));
  EXPECT_TRUE(surface.texts.contains("Current /A"));
}

TEST_F(Preview, DiskAndRingAreBlueAndRed) {
  const Rgb blue = Of(QBColor(9));
  const Rgb red = Of(QBColor(12));
  for (const Mode mode : {kModeRDE, kModeSSV}) {
    Fill(1, mode, 5);
    EXPECT_THAT(Colours(1, PreviewStyle::kLines), ElementsAre(blue, red));
    EXPECT_THAT(Colours(1, PreviewStyle::kDots), ElementsAre(blue, red));
  }
  for (const Mode mode : {kModePS, kModeRPMvsj, kModeSSVAll}) {
    Fill(1, mode, 5);
    EXPECT_THAT(Colours(1, PreviewStyle::kLines), ElementsAre(blue));
  }
  EXPECT_FALSE(surface.texts.contains("Time /s"));
  Fill(1, kModePS, 5);
  Colours(1, PreviewStyle::kDots);
  EXPECT_TRUE(surface.texts.contains("Time /s"));
}

TEST_F(Preview, ChannelsShareTheTimeOfTrackZero) {
  for (int track = 0; track < 10; ++track) Fill(track, kModeMulti, 4);
  EXPECT_EQ(Colours(7, PreviewStyle::kLines).size(), 20u);
  EXPECT_EQ(Colours(7, PreviewStyle::kDots).back(), Of(TrackColor(9)));
  EXPECT_EQ(RangeOf(tracks, 7).x_max, 3);  // the time, not the potential
}

TEST_F(Preview, DrawsNothingForTracksWithoutPointsOrOfUnknownModes) {
  EXPECT_THAT(Colours(0, PreviewStyle::kLines), IsEmpty());
  for (const std::int32_t mode : {1, 2, 5, 8, 99, -3}) {
    tracks.Record(0).Mode = mode;
    EXPECT_THAT(Colours(0, PreviewStyle::kLines), IsEmpty()) << mode;
    EXPECT_THAT(Colours(0, PreviewStyle::kDots), IsEmpty()) << mode;
  }
  Fill(0, kModeRDE, 5);
  tracks.Record(0).Mode = 99;
  EXPECT_THAT(Colours(0, PreviewStyle::kLines), IsEmpty());
}

TEST_F(Preview, FallsBackOnTheDataWhereTheRangeIsEmpty) {
  Fill(0, kModePS, 11);
  EXPECT_EQ(RangeOf(tracks, 0), (PreviewRange{0, 0, 1, 0.01}));
  tracks.Record(0).Vxmin = -2;
  tracks.Record(0).Vymax = 5;
  EXPECT_EQ(RangeOf(tracks, 0), (PreviewRange{-2, 0, 0, 5}));
}

}  // namespace
}  // namespace zento
