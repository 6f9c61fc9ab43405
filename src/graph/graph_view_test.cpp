#include "graph/graph_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "core/palette.h"
#include "graph/graph_form.h"
#include "graph/test_surface.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

constexpr Colour kInk{255, 0, 0};
constexpr Colour kOther{0, 0, 255};
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

bool Overlap(const Rect& a, const Rect& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

class GraphTest : public testing::Test {
 protected:
  GraphTest() { graph.SetSize(0, 0, 400, 200); }

  TestSurface Painted(Size size) {
    TestSurface surface(size);
    graph.Picture1.Paint(surface);
    return surface;
  }

  VirtualHost machine;
  Graph graph{machine.host, "Graph1"};
};

TEST_F(GraphTest, MapsTheWorldWindowOntoTheSurface) {
  graph.View(0, 1, 10, -1);
  EXPECT_EQ(graph.VtoWX(0), 0);
  EXPECT_EQ(graph.VtoWY(1), 0);
  EXPECT_EQ(graph.VtoWX(10), 400);
  EXPECT_EQ(graph.VtoWY(-1), 200);
  EXPECT_EQ(graph.VtoWX(-0.001), -1);  // downwards, not towards 0
  EXPECT_EQ(graph.VtoWX(1e9), 2.1e9F);
  EXPECT_EQ(graph.VtoWX(-1e300), -2.1e9F);
  EXPECT_EQ(graph.VtoWY(kInf), -2.1e9F);
  EXPECT_EQ(graph.VtoWX(kNan), -2.1e9F);
}

TEST_F(GraphTest, WhatWasDrawnKeepsItsWindowThroughResizesAndOtherViews) {
  graph.View(0, 1, 10, -1);
  graph.VPset(5, 0, kInk);
  graph.Picture1.Resize({800, 400});
  EXPECT_EQ(graph.VtoWX(10), 400) << "as at the last View";
  graph.View(0, 100, 100, 0);
  EXPECT_EQ(graph.VtoWX(100), 800);
  graph.VPset(0.5, 0.5, kOther);
  const TestSurface picture = Painted({800, 400});
  EXPECT_EQ(picture.At(400, 200), kInk);
  EXPECT_EQ(picture.At(4, 398), kOther);
}

TEST_F(GraphTest, ALivePointTouchesOnlyItsPlace) {
  graph.View(0, 1, 1, 0);
  graph.Axis(0.1, 0.1, 10, "/V");
  TestView view(graph.Picture1);
  view.Screen();
  graph.VPset(0.25, 0.75, kInk);
  EXPECT_EQ(view.extensions, 1);
  EXPECT_LE(view.last_dirty.width * view.last_dirty.height, 9);
  EXPECT_EQ(view.screen.At(100, 50), kInk);
  graph.VPset(2, 0.5, kInk);
  graph.VPset(kNan, 0.5, kInk);
  EXPECT_EQ(view.extensions, 1);
  EXPECT_EQ(view.repaints, 1);
}

TEST_F(GraphTest, WhatWasDrawnLiveIsWhatARepaintShows) {
  graph.View(-1, 1, 1, -1);
  graph.Axis(0.5, 0.5, 10, "/V");
  TestView view(graph.Picture1);
  view.Screen();
  std::mt19937 random(3);
  std::uniform_real_distribution<double> place(-1.2, 1.2);
  for (int i = 0; i < 300; ++i) {
    const double x = place(random);
    const double y = place(random);
    const Colour colour = TrackColor(i % 10);
    if (i % 6 == 0) graph.VLine(x, y, y, x, colour);
    if (i % 6 == 1) graph.VCircle(x, y, 5, colour, static_cast<std::int16_t>(i % 9));
    if (i % 6 == 2) graph.VBox(x, y, x + 0.1, y - 0.3, colour);
    if (i % 6 == 3) graph.VFill(x, y, x - 0.1, y - 0.1, colour);
    if (i % 6 > 3) graph.VPset(x, y, colour);
  }
  EXPECT_EQ(view.repaints, 1);
  EXPECT_TRUE(view.screen.SamePixels(Painted({400, 200})));
}

TEST_F(GraphTest, LinesEndAtTheLimit) {
  graph.View(0, 200, 400, 0);
  graph.VLine(10, 100, 40000, 100, kInk);
  EXPECT_EQ(Painted({400, 200}).Count(kInk), 0);
  graph.VLine(10, 100, 32767, 100, kInk);
  EXPECT_EQ(Painted({400, 200}).Count(kInk), 390);
  // A curve goes on behind an end that cannot be drawn.
  const Point points[] = {{0, 50}, {9, 50}, {40000, 50}, {20, 50}, {29, 50}, {kNan, 0}, {0, 20}};
  graph.Curve(points, kOther, CurveStyle::kLines);
  EXPECT_EQ(Painted({400, 200}).Count(kOther), 20);
}

TEST_F(GraphTest, ACurveIsWhatItsPointsOneByOneAre) {
  std::vector<double> x;
  std::vector<double> y;
  for (int i = 0; i <= 40000; ++i) {
    x.push_back(std::cos(i * 1e-3));
    y.push_back(std::sin(i * 1.7e-3) + 0.05 * std::sin(i * 9.1));
  }
  for (const CurveStyle style : {CurveStyle::kDots, CurveStyle::kLines}) {
    graph.View(-1.1, 1.1, 1.1, -1.1);
    graph.Axis(0.5, 0.5, 10, "/V");
    graph.Curve(x, y, kInk, style);
    const TestSurface curve = Painted({1000, 700});
    TestSurface single({1000, 700});
    graph.Axis(0.5, 0.5, 10, "/V");
    graph.Picture1.Paint(single);
    const WorldMap map({-1.1, 1.1, 1.1, -1.1}, {1000, 700});
    for (std::size_t i = 0; i < x.size(); ++i) {
      const Point at = map({x[i], y[i]});
      if (style == CurveStyle::kDots) single.Dots({&at, 1}, kInk);
      if (style == CurveStyle::kLines && i > 0) single.Line(map({x[i - 1], y[i - 1]}), at, kInk);
    }
    EXPECT_TRUE(curve.SamePixels(single));
  }
}

TEST_F(GraphTest, AxisClearsAndLabels) {
  graph.View(0, 1, 10, -1);
  graph.VPset(5, 0.5, kInk);
  graph.Axis(2, 0.5, 10, "/V");
  const TestSurface crossing = Painted({400, 200});
  EXPECT_EQ(crossing.Count(kInk), 0);
  EXPECT_EQ(crossing.At(160, 3), kLightGrey);
  EXPECT_EQ(crossing.At(300, 50), kLightGrey);
  // Below the world y of 0, centred on the tick.
  ASSERT_NE(crossing.Find("4.0"), nullptr);
  EXPECT_EQ(crossing.Find("4.0")->rect.y, 102);
  EXPECT_EQ(crossing.Find("4.0")->rect.x + crossing.Find("4.0")->rect.width / 2, 160);
  ASSERT_NE(crossing.Find("5.0e-1"), nullptr);
  EXPECT_EQ(crossing.Find("/V")->rect.y, 124);

  // At the bottom edge, raised as far as it takes to be seen.
  graph.View(0, 2, 10, 1);
  graph.Axis(2, 0.5, 10, "/V");
  const TestSurface above = Painted({400, 200});
  const Rect title = above.Find("/V")->rect;
  EXPECT_EQ(title.y + title.height, 200);
  EXPECT_LE(above.Find("4.0")->rect.y + above.Find("4.0")->rect.height, title.y);
}

TEST_F(GraphTest, LabelsNeitherCollideNorAreCutOffAtAnySize) {
  graph.SetXFormat("0.00");
  const WorldWindow windows[] = {{-0.1, 1e-4, 0.9, -1e-4}, {0.2, 5, 0.9, 1},
                                 {-2, 1e-9, 10000, -3},    {0, 1, 1, 0},
                                 {1, -1, -1, 1},           {-5, -1, -1, -2}};
  for (const WorldWindow& world : windows) {
    for (const Size size : {Size{90, 60}, Size{240, 160}, Size{400, 200}, Size{1600, 1200}}) {
      graph.View(world.x1, world.y1, world.x2, world.y2);
      graph.Axis(std::abs(world.x2 - world.x1) / 20, std::abs(world.y2 - world.y1) / 20, 12, "/V");
      const TestSurface picture = Painted(size);
      EXPECT_FALSE(picture.texts.empty());
      for (std::size_t i = 0; i < picture.texts.size(); ++i) {
        const Rect& rect = picture.texts[i].rect;
        EXPECT_TRUE(rect.x >= 0 && rect.y >= 0 && rect.x + rect.width <= size.width &&
                    rect.y + rect.height <= size.height)
            << picture.texts[i].text << " at " << size.width;
        for (std::size_t k = 0; k < i; ++k) EXPECT_FALSE(Overlap(rect, picture.texts[k].rect));
      }
    }
  }
}

TEST_F(GraphTest, HostileStepsAndWindowsDrawSomethingInBoundedTime) {
  const double values[] = {0, kNan, kInf, -1, 1e-300, 1e300, 1};
  for (const double a : values) {
    for (const double b : values) {
      graph.View(a, b, b, a);
      graph.Axis(a, b, -5, "title");
      graph.VLine(a, b, b, a, kInk);
      graph.VFill(0, 0, 1, 1, kInk);
      const TestSurface picture = Painted({400, 200});
      EXPECT_LT(picture.calls, 2000);
    }
  }
}

TEST_F(GraphTest, WithoutAutoRedrawThePictureIsShownWhenItIsSwitchedOn) {
  graph.View(0, 1, 1, 0);
  TestView view(graph.Picture1);
  view.Screen();
  graph.SetAutoRedraw(false);
  graph.VPset(0.5, 0.5, kInk);
  EXPECT_EQ(view.Screen().Count(kInk), 0);
  graph.SetAutoRedraw(true);
  EXPECT_EQ(view.Screen().Count(kInk), 1);
}

TEST_F(GraphTest, WeeksOfMonitoringNeedNoMoreMemoryAndLoseNoPixel) {
  graph.View(-0.1, 0.01, 0.1, -0.01);
  graph.Axis(0.05, 0.005, 10, "/V");
  TestView view(graph.Picture1);
  view.Screen();
  std::mt19937 random(5);
  std::normal_distribution<double> noise(0, 2e-4);
  for (const Colour colour : {kInk, kOther, kInk}) graph.VPset(-0.05, -0.005, colour);
  for (int i = 0; i < 1000000; ++i) {
    graph.VPset(0.03 + noise(random), 0.003 + noise(random) / 20, i % 2 ? kInk : kOther);
  }
  EXPECT_LT(graph.Picture1.ItemCount(), 300000U);
  EXPECT_TRUE(view.screen.SamePixels(Painted({400, 200})));
  EXPECT_EQ(Painted({400, 200}).At(100, 150), kInk) << "of dots in one place, the last";
}

TEST_F(GraphTest, PositionAndSizeAreThePicturesWithoutTheStrip) {
  graph.SetSize(30, 40, 500, 300);
  std::int16_t width = 0, height = 0, left = 0, top = 5;
  graph.getSize(width, height);
  EXPECT_EQ((std::pair<int, int>{width, height}), std::pair(500, 300));
  EXPECT_EQ(graph.geometry().height, 326);
  EXPECT_EQ(graph.getPictureX(), 500);
  graph.SetPosition(1000, 0);
  graph.getPosition(left, top);
  EXPECT_EQ((std::pair<int, int>{left, top}), std::pair(1000, 0));
  EXPECT_EQ(graph.geometry().width, 500);
  graph.SetSize(0, 0, -5, 100);
  EXPECT_EQ(graph.Picture1.size(), (Size{500, 300}));
}

TEST_F(GraphTest, ReadoutFollowsThePointer) {
  graph.View(0, 1, 10, -1);
  EXPECT_EQ(graph.Picture1.Readout(), "");
  graph.Picture1.PointerMoved({{100, 50}, PointerButton::kNone, false, false});
  EXPECT_EQ(graph.Picture1.Readout(), "2.50, 0.50");
  graph.Picture1.PointerMoved({{300, 150}, PointerButton::kNone, false, false});
  EXPECT_EQ(graph.Picture1.Readout(), "7.50, -0.50");
  graph.Picture1.PointerLeft();
  EXPECT_EQ(graph.Picture1.Readout(), "");
}

TEST_F(GraphTest, TheButtonCopiesThePictureAsItIsNow) {
  graph.View(0, 1, 1, 0);
  graph.VPset(0.5, 0.5, kInk);
  ASSERT_TRUE(graph.CptoClipBtn.UserClick().ok());
  EXPECT_EQ(machine.clipboard.pictures, 1);
  EXPECT_EQ(machine.clipboard.picture_size, (Size{400, 200}));
  graph.Axis(0.1, 0.1, 10, "");
  TestSurface copied({400, 200});
  machine.clipboard.paint_picture(copied);
  EXPECT_EQ(copied.At(200, 100), kInk);
}

TEST(GraphWindow, ClosingHidesItWithItsPicture) {
  VirtualHost machine;
  machine.desktop.Register("Graph1",
                           [&] { return std::make_unique<Graph>(machine.host, "Graph1"); });
  auto* graph = machine.desktop.LoadAs<Graph>("Graph1");
  machine.desktop.Show("Graph1");
  graph->VPset(0.5, 0.5, kInk);
  machine.desktop.RequestClose("Graph1");
  EXPECT_FALSE(machine.desktop.Shown("Graph1"));
  EXPECT_EQ(machine.desktop.LoadAs<Graph>("Graph1"), graph);
  EXPECT_EQ(graph->Picture1.ItemCount(), 1U);
}

}  // namespace
}  // namespace zento
