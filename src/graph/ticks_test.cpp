#include "graph/ticks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/tables.h"

namespace zento {
namespace {

using testing::ElementsAre;

std::vector<double> Values(const Ticks& ticks) {
  std::vector<double> values;
  for (int i = 0; i < ticks.count; ++i) values.push_back(ticks.Value(i));
  return values;
}

TEST(Ticks, RunFromTheMultipleNotAboveTheStartToTheEnd) {
  const struct {
    double from, to, step;
    std::vector<double> ticks;
  } rows[] = {{-0.25, 1, 0.5, {-0.5, 0, 0.5, 1}},
              {1, 1, 0.5, {1}},
              {1.2, -1, 0.5, {1, 0.5, 0, -0.5, -1}},  // down, for the first lies beyond the end
              {1.2, -1, -0.5, {1.5, 1, 0.5, 0, -0.5, -1}},
              {-1, 1, -0.5, {}}};
  for (const auto& row : rows) {
    EXPECT_EQ(Values(MakeTicks(row.from, row.to, row.step, 100)), row.ticks) << row.from;
  }
  // 0.1 * 3 is a little more than 0.3, and still the last tick.
  EXPECT_EQ(MakeTicks(0, 0.3, 0.1, 100).count, 4);
}

TEST(Ticks, RoundingLeavesAnExactZero) {
  for (const double value : Values(MakeTicks(-0.3, 0.3, 0.1, 100))) {
    EXPECT_TRUE(value == 0 || std::abs(value) > 0.09);
  }
  EXPECT_THAT(Values(MakeTicks(3e-17, 2e-16, 3e-17, 100)), testing::Contains(0.0));
}

TEST(Ticks, HostileStepsAndRangesStayBounded) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kMax = std::numeric_limits<double>::max();
  const double values[] = {0, 1, -1, 1e-320, 1e-15, 1e20, -1e300, kMax, -kMax, kInf, -kInf, kNan};
  for (const double from : values) {
    for (const double to : values) {
      for (const double step : values) {
        const Ticks ticks = MakeTicks(from, to, step, 50);
        EXPECT_LE(ticks.count, 52);
        for (const double value : Values(ticks)) EXPECT_TRUE(std::isfinite(value));
      }
    }
  }
  EXPECT_EQ(MakeTicks(0, 1, 0, 50).count, 0);
  EXPECT_EQ(MakeTicks(0, 1, kNan, 50).count, 0);
  // A million ticks become a coarser grid of the same origin.
  const Ticks coarse = MakeTicks(0, 1, 1e-6, 10);
  EXPECT_EQ(coarse.count, 11);
  EXPECT_DOUBLE_EQ(coarse.Value(3), 0.3);
  const std::pair<double, double> rounded[] = {{0.3, 1}, {1.5, 2}, {2.1, 5},   {5.1, 10},
                                               {10, 10}, {11, 20}, {230, 500}, {700, 1000}};
  for (const auto& [ratio, up] : rounded) EXPECT_DOUBLE_EQ(RoundUp125(ratio), up) << ratio;
}

TEST(TickLabels, FollowThePatternButNeverMislead) {
  EXPECT_THAT(TickLabels(MakeTicks(0, 0.2, 0.1, 10), "0.0"), ElementsAre("0.0", "0.1", "0.2"));
  // 0.05 would read 0.1.
  EXPECT_THAT(TickLabels(MakeTicks(-0.1, 0.1, 0.05, 10), "0.0"),
              ElementsAre("-0.1", "", "0.0", "", "0.1"));
  // Nothing fits: digits that do.
  EXPECT_THAT(TickLabels(MakeTicks(0.41, 0.43, 0.01, 10), "0.0"),
              ElementsAre("0.41", "0.42", "0.43"));
  EXPECT_THAT(TickLabels(MakeTicks(3e-17, 3e-17, 3e-17, 10), "0.0"), ElementsAre("0.0"));
}

TEST(TickPattern, ShowsEveryStepExactly) {
  EXPECT_EQ(TickPattern(0.05, 1), "0.00");
  EXPECT_EQ(TickPattern(0.1, 1), "0.0");
  EXPECT_EQ(TickPattern(1000, 5000), "0");
  EXPECT_EQ(TickPattern(2e-7, 1.6e-5), "0.00e+0");
  EXPECT_EQ(TickPattern(1e7, 1e9), "0.00e+0");
  EXPECT_EQ(TickPattern(0, NAN), "0.0###e+0");
  for (double span = 1e-9; span < 1e9; span *= 3.7) {
    for (const double offset : {0.0, 1.0, -20.0}) {
      const double from = offset * span;
      const double to = from + span;
      const Ticks ticks = MakeTicks(from, to, TickStep(from, to), 20);
      const double largest = std::max(std::abs(from), std::abs(to));
      const std::vector<std::string> labels = TickLabels(ticks, TickPattern(ticks.step, largest));
      EXPECT_THAT(labels, testing::Not(testing::Contains(""))) << from << " " << to;
    }
  }
}

}  // namespace
}  // namespace zento
