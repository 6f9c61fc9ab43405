#include "graph/decimate.h"

#include <gtest/gtest.h>

#include <random>

#include "graph/test_surface.h"

namespace zento {
namespace {

constexpr Colour kInk{255, 0, 0};
constexpr Colour kOther{0, 0, 255};

// Curves of very different kinds: noise within a pixel, plateaus, spikes, jumps.
std::vector<Point> Walk(unsigned seed, int count, int step) {
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> move(-step, step);
  std::uniform_int_distribution<int> kind(0, 9);
  std::vector<Point> points;
  Point at{100, 100};
  for (int i = 0; i < count; ++i) {
    const int choice = kind(random);
    if (choice < 4) at.y += move(random);
    if (choice > 5) at.x += move(random);
    if (choice == 9 && i % 50 == 0) at = {100.0 + move(random) * 9, 100.0 + move(random) * 9};
    points.push_back(at);
  }
  return points;
}

TEST(PixelPolyline, ChangesNoPixel) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    const std::vector<Point> points = Walk(seed, 400, 1 + static_cast<int>(seed % 7));
    const std::vector<Point> kept = DecimatePolyline(points);
    TestSurface whole({200, 200});
    TestSurface fewer({200, 200});
    whole.Polyline(points, kInk);
    fewer.Polyline(kept, kInk);
    EXPECT_TRUE(fewer.SamePixels(whole)) << "seed " << seed;
    EXPECT_EQ(kept.front(), points.front());
    EXPECT_EQ(kept.back(), points.back());
    // Of consecutive vertices in one column four stay at most.
    int run = 1;
    for (std::size_t i = 1; i < kept.size(); ++i) {
      run = kept[i].x == kept[i - 1].x ? run + 1 : 1;
      EXPECT_LE(run, 4) << "seed " << seed;
    }
  }
}

TEST(PixelPolyline, BeginsAnewAfterFinish) {
  PixelPolyline line;
  EXPECT_TRUE(line.Finish().empty());
  line.Add({1, 1});
  line.Add({1, 1});
  EXPECT_EQ(line.Finish().size(), 1U);
  EXPECT_TRUE(line.Finish().empty());
  line.Add({1, 5});
  line.Add({1, 9});
  ASSERT_EQ(line.Finish().size(), 2U);
}

TEST(PixelDots, DrawsEachPixelOnceAndTheLastColourWins) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> place(-3, 52);
  TestSurface whole({50, 50});
  TestSurface fewer({50, 50});
  {
    PixelDots dots(fewer);
    // More colours than fit one pass.
    for (int i = 0; i < 20000; ++i) {
      const Point at{static_cast<double>(place(random)), static_cast<double>(place(random))};
      const Colour colour{static_cast<std::uint8_t>(i % 300 % 256), 0,
                          static_cast<std::uint8_t>(i % 300 / 256)};
      whole.Dots({&at, 1}, colour);
      dots.Add(at, colour);
    }
  }
  EXPECT_TRUE(fewer.SamePixels(whole));
  PixelDots last(fewer);
  const std::size_t before = fewer.dots;
  for (const Point at :
       {Point{-1, 5}, Point{50, 5}, Point{5, 2.1e9}, Point{NAN, 5}, Point{49, 49}}) {
    last.Add(at, kOther);
  }
  last.Draw();
  EXPECT_EQ(fewer.dots, before + 1) << "the others lie outside";
  EXPECT_EQ(fewer.At(49, 49), kOther);
}

}  // namespace
}  // namespace zento
