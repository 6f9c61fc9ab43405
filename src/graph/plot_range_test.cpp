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
  EXPECT_EQ(range, (PlotRange{-0.1, -5, 0.3, 0.01}));
  constexpr double kInf = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(Extend(range, kInf, 0));
  EXPECT_FALSE(Extend(range, 9, std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(range, (PlotRange{-0.1, -5, 0.3, 0.01}));
}

TEST(LiveRange, ShowsAllPointsAndIsEnlargedRarely) {
  LiveRange range({-0.1, -0.01, 0.1, 0.01});
  int redraws = 0;
  for (int i = 0; i <= 20000; ++i) {
    const double x = -0.1 + i * 1e-4;  // a sweep to 1.9 V
    if (range.Extend(x, x * x)) ++redraws;
    ASSERT_TRUE(range.shown().x1 <= x && x <= range.shown().x2 && range.shown().y2 >= x * x);
  }
  EXPECT_EQ(range.data(), (PlotRange{-0.1, -0.01, 1.9, (-0.1 + 2) * (-0.1 + 2)}));
  EXPECT_LT(redraws, 100);
}

}  // namespace
}  // namespace zento
