#include "analysis/tafel.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <vector>

namespace zento {
namespace {

using ::testing::HasSubstr;

// 2.303 R T / F at 298.15 K, as the textbooks have it.
constexpr double kDecade = 0.05916;

struct Curve {
  std::vector<double> volts, amperes;
};

// i0 10^(slope (E - 0.3)) between two potentials.
Curve Exponential(double i0, double slope, double from, double to) {
  Curve curve;
  for (int k = 0; k <= 20; ++k) {
    const double volts = from + (to - from) * k / 20;
    curve.volts.push_back(volts);
    curve.amperes.push_back(i0 * std::pow(10.0, slope * (volts - 0.3)));
  }
  return curve;
}

TEST(Tafel, FindsTransferAndExchangeCurrentOnBothBranches) {
  for (const double sign : {1.0, -1.0}) {
    SCOPED_TRACE(sign);
    // (1 - alpha) n = 0.6, or alpha n = 0.6: 98.6 mV a decade.
    const Curve curve =
        Exponential(sign * 2e-6, sign * 0.6 / kDecade, 0.3 + sign * 0.15, 0.3 + sign * 0.25);
    const auto fit = FitTafel(curve.volts, curve.amperes, 0.3, 0.2);
    ASSERT_TRUE(fit.ok()) << fit.why();
    EXPECT_EQ(fit->branch, sign > 0 ? TafelBranch::kAnodic : TafelBranch::kCathodic);
    EXPECT_FALSE(fit->unusual_sign);
    EXPECT_NEAR(fit->alpha_n, 0.6, 2e-5);
    EXPECT_NEAR(fit->log_i0, std::log10(2e-6), 1e-9);
    EXPECT_NEAR(fit->i0_density, 1e-5, 1e-12);
    EXPECT_NEAR(fit->overpotential.front(), sign * 0.15, 1e-12);

    // A potentiostat that counts cathodic currents positive changes the numbers not at all.
    Curve turned = curve;
    for (double& i : turned.amperes) i = -i;
    const auto other = FitTafel(turned.volts, turned.amperes, 0.3, 0.2);
    EXPECT_EQ(other->alpha_n, fit->alpha_n);
    EXPECT_TRUE(other->unusual_sign);
  }
}

TEST(Tafel, PropagatesTheLinesErrors) {
  // log10|i| = -4, -3.9, -4: worked by hand, mean eta 0.1, spread 0.02, residuals of a level line
  // tilted by a hundredth.
  const std::vector<double> volts{0, 0.1, 0.2};
  const std::vector<double> amperes{std::pow(10, -4.001), std::pow(10, -3.9), std::pow(10, -3.999)};
  const auto fit = FitTafel(volts, amperes, 0, 0.5);
  ASSERT_TRUE(fit.ok());
  const double residuals = 0.1 * 0.1 * 2 / 3;
  const double slope_error = std::sqrt(residuals / 0.02);
  const double intercept_error = std::sqrt(residuals * (1.0 / 3 + 0.01 / 0.02));
  EXPECT_NEAR(fit->quality.line.slope, 0.01, 1e-9);
  EXPECT_NEAR(*fit->alpha_n_error, slope_error * kDecade, 1e-6);
  EXPECT_NEAR(*fit->log_i0_error, intercept_error, 1e-9);
  EXPECT_NEAR(*fit->i0_density_error / fit->i0_density, std::log(10.0) * intercept_error, 1e-9);
}

TEST(Tafel, LeavesOutPointsWithoutCurrent) {
  Curve curve = Exponential(2e-6, 8, 0.4, 0.5);
  const auto whole = FitTafel(curve.volts, curve.amperes, 0.3, 1);
  curve.volts.push_back(0.55);
  curve.amperes.push_back(0);
  const auto fit = FitTafel(curve.volts, curve.amperes, 0.3, 1);
  EXPECT_EQ(fit->left_out, 1u);
  EXPECT_EQ(fit->log_i0, whole->log_i0);
  EXPECT_EQ(fit->overpotential.size(), 21u);
}

TEST(Tafel, RefusesPointsWithoutALine) {
  const auto why = [](const std::vector<double>& volts, const std::vector<double>& amperes) {
    return FitTafel(volts, amperes, 0.3, 1).why();
  };
  EXPECT_THAT(why({0.1, 0.2, 0.3}, {-1e-6, 1e-6, 2e-6}), HasSubstr("2 positive, 1 negative"));
  EXPECT_THAT(why({0.1, 0.2}, {1e-6, 0}), HasSubstr("two points"));
  EXPECT_THAT(why({0.1, 0.1}, {1e-6, 2e-6}), HasSubstr("two points"));
  EXPECT_THAT(why({}, {}), HasSubstr("two points"));
  EXPECT_THAT(why({0.1, 0.2}, {1e-6, 1e-6}), HasSubstr("does not change"));
  EXPECT_THAT(why({100.1, 100.2}, {1e-9, 1}), HasSubstr("redox potential"));
  EXPECT_FALSE(FitTafel(std::vector{0.1, 0.2}, std::vector{1e-6, 2e-6}, 0.3, 1)->alpha_n_error);
}

}  // namespace
}  // namespace zento
