#include "graph/plot_range.h"

#include <gtest/gtest.h>

#include <limits>

namespace zento {
namespace {

TEST(PlotRange, GrowsByJustAsMuchAsItTakes) {
  PlotRange range{-0.1, -0.01, 0.1, 0.01};
  EXPECT_FALSE(Extend(range, 0.1, -0.01));
  EXPECT_TRUE(Extend(range, 0.3, 0));
  EXPECT_TRUE(Extend(range, 0, -5));
  constexpr double kInf = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(Extend(range, kInf, 0));
  EXPECT_FALSE(Extend(range, 9, std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(range, (PlotRange{-0.1, -5, 0.3, 0.01}));
}

TEST(LiveRange, ATenthMoreOnEachSideIsShownAndEnlargedRarely) {
  LiveRange range({0, -1, 10, 1});
  EXPECT_EQ(range.shown(), (PlotRange{-1, -1.2, 11, 1.2}));
  EXPECT_FALSE(range.Extend(11, 1.2));  // within the margin
  EXPECT_EQ(range.data(), (PlotRange{0, -1, 11, 1.2}));
  EXPECT_TRUE(range.Extend(20, -3.8));
  EXPECT_EQ(range.shown(), (PlotRange{-2, -4.3, 22, 1.7}));
  int redraws = 0;
  for (int i = 0; i <= 20000; ++i) {
    const double x = 20 + i * 1e-2;
    if (range.Extend(x, x * x)) ++redraws;
    ASSERT_TRUE(x <= range.shown().x2 && x * x <= range.shown().y2);
  }
  EXPECT_LT(redraws, 100);
}

}  // namespace
}  // namespace zento
