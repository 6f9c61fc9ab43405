#include "exchange/thinning.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace zento {
namespace {

using ::testing::ElementsAre;

struct Curve {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<std::int32_t> Thinned(const Thinning& thinning,
                                    const std::vector<std::int32_t>& ends) const {
    return ThinnedPoints({x, y, 2, 4}, ends, thinning);
  }
};

TEST(Thinning, EachRuleAlone) {
  // Right along the bottom, then up; the plot's two units wide and four high.
  const Curve corner{{0, 1, 2, 3, 4, 4, 4, 4}, {0, 0, 0, 0, 0, 2, 4, 6}};
  const std::vector<std::int32_t> ends = {0, 7};
  EXPECT_THAT(corner.Thinned({}, ends), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
  EXPECT_THAT(corner.Thinned({45, 0, 0}, ends), ElementsAre(0, 4, 7));
  EXPECT_THAT(corner.Thinned({91, 0, 0}, ends), ElementsAre(0, 7));
  EXPECT_THAT(corner.Thinned({0, 0.9, 0}, ends), ElementsAre(0, 2, 4, 6, 7));
  EXPECT_THAT(corner.Thinned({0, 0, 3}, ends), ElementsAre(0, 3, 6, 7));
  EXPECT_THAT(corner.Thinned({45, 0, 3}, ends), ElementsAre(0, 3, 4, 7));
  EXPECT_THAT(corner.Thinned({0, 100, 0}, {1, 3, 6}), ElementsAre(1, 3, 6));
}

TEST(Thinning, ATurnAddsUpUntilAPointIsKept) {
  Curve circle;
  for (int degree = 0; degree <= 360; ++degree) {
    circle.x.push_back(2 * std::cos(degree * std::numbers::pi / 180));
    circle.y.push_back(4 * std::sin(degree * std::numbers::pi / 180));
  }
  // A circle in the plot: a point about every 30 degrees, however fine the steps are.
  const auto kept = circle.Thinned({29.5, 0, 0}, {0, 360});
  ASSERT_EQ(kept.size(), 13u);
  for (std::size_t i = 0; i < kept.size(); ++i) EXPECT_EQ(kept[i], 30 * static_cast<int>(i));
}

TEST(Thinning, PointsThatStandStillHaveNoDirection) {
  const Curve halting{{0, 0, 0, 1, 1, 2, 2}, {0, 0, 0, 0, 0, 0, 1}};
  EXPECT_THAT(halting.Thinned({30, 0, 0}, {0, 6}), ElementsAre(0, 5, 6));
  EXPECT_THAT(halting.Thinned({30, 0, 0}, {3, 3}), ElementsAre(3));
}

}  // namespace
}  // namespace zento
