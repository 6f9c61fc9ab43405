#include "analysis/gauss_newton_log.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "analysis/test_definitions.h"

namespace zento {

class SSVGaussNewtonLogFields {
 public:
  explicit SSVGaussNewtonLogFields(SSVGaussNewtonLog& fit) : fit_(fit) {}

  double sgn() const { return fit_.sgn; }
  std::vector<double>& LY() { return fit_.LY; }

  // Names the first difference; empty when there is none. A NaN equals every NaN.
  std::string DifferenceFrom(const LiteralFit& other) const {
    const auto arrays = {std::pair{"GX", Pair{&fit_.GX, &other.GX}},
                         std::pair{"GY", Pair{&fit_.GY, &other.GY}},
                         std::pair{"GW", Pair{&fit_.GW, &other.GW}},
                         std::pair{"LY", Pair{&fit_.LY, &other.LY}},
                         std::pair{"LYSaved", Pair{&fit_.LYSaved, &other.LYSaved}},
                         std::pair{"GFit", Pair{&fit_.GFit, &other.GFit}}};
    for (const auto& [name, pair] : arrays) {
      for (std::size_t i = 1; i < pair.second->size(); ++i) {
        if (!Same((*pair.first)[i], (*pair.second)[i])) return name + std::to_string(i);
      }
    }
    for (std::size_t j = 1; j <= 5; ++j) {
      if (!Same(fit_.p[j], other.p[j])) return "p" + std::to_string(j);
    }
    if (!Same(fit_.xaisqr, other.xaisqr)) return "xaisqr";
    if (!Same(fit_.sgn, other.sgn)) return "sgn";
    if (fit_.GN != other.GN || fit_.paranum != other.paranum) return "GN or paranum";
    if (fit_.exenum != other.exenum) return "exenum";
    if (fit_.divergence != other.divergence) return "divergence";
    if (fit_.restarts_ != other.restarts) return "restarts";
    return {};
  }

 private:
  using Pair = std::pair<const std::vector<double>*, const std::vector<double>*>;

  static bool Same(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
  }

  SSVGaussNewtonLog& fit_;
};

namespace {

using Fields = SSVGaussNewtonLogFields;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::function<double()> Numbers(unsigned seed) {
  return [random = std::mt19937_64(seed)]() mutable {
    return static_cast<double>(random() >> 11) * 0x1p-53;
  };
}

// The same data and start for both.
struct Twins {
  SSVGaussNewtonLog quick;
  LiteralFit plain{150};

  Twins() { plain.max_restarts = SSVGaussNewtonLog::kMaxRestarts; }

  void Parameters(int n) {
    EXPECT_TRUE(quick.setparanum(n));
    plain.paranum = n;
  }
  void Count(int n) {
    EXPECT_TRUE(quick.setGN(n));
    plain.GN = n;
  }
  void Point(int i, double x, double y, double w) {
    EXPECT_TRUE(quick.setGX(i, x) && quick.setGY(i, y) && quick.setGW(i, w));
    plain.GX[i] = x;
    plain.GY[i] = y == 0 ? 1.0 : y;
    plain.GW[i] = w;
  }
  void P(int j, double value) {
    EXPECT_TRUE(quick.setp(j, value));
    plain.p[j] = value;
  }
  void Randomness(unsigned seed) {
    EXPECT_TRUE(quick.SetRandom(Numbers(seed)));
    plain.random = Numbers(seed);
  }
  // Fits both and says what differs.
  std::string Fit() {
    std::int32_t count = -1;
    quick.GAUSSNEWTONFitting(count);
    if (count != plain.Fit()) return "iteration count";
    return Fields(quick).DifferenceFrom(plain);
  }
};

// How the cases came out, to know that they cover what they should.
struct Tally {
  int converged = 0, diverged = 0, ran_out = 0, restarted = 0, gave_up = 0, not_finite = 0;

  void Add(const SSVGaussNewtonLog& fit) {
    diverged += fit.getdivergence();
    ran_out += fit.getexenum() == SSVGaussNewtonLog::kMaxIterations;
    restarted += fit.restarts() > 0;
    gave_up += fit.restarts() == SSVGaussNewtonLog::kMaxRestarts;
    not_finite += std::isnan(fit.getxaisqr());
    converged += !fit.getdivergence() && fit.getexenum() < SSVGaussNewtonLog::kMaxIterations &&
                 fit.restarts() < SSVGaussNewtonLog::kMaxRestarts;
  }
};

// One random data set: shape, size, noise, weights and start all vary, and some are hopeless.
void FillRandomly(Twins& fit, unsigned seed) {
  std::mt19937_64 random(seed);
  const auto between = [&](double a, double b) {
    return a + (b - a) * static_cast<double>(random() >> 11) * 0x1p-53;
  };
  const int parameters = random() % 2 != 0 ? 3 : 5;
  // Some sets are longer than a block of the quick sums, and end within one.
  const int n = static_cast<int>(random() % 25 == 0 ? between(60, 140) : between(1, 20));
  const double direction = random() % 2 != 0 ? 1 : -1;
  const double scale = std::pow(10.0, between(-9, 5));
  const double noise = random() % 3 == 0 ? 0 : std::pow(10.0, between(-6, -0.5));
  const double final_value = between(-3, 3) * scale;
  const double tau = between(0.05, 2);
  fit.Parameters(parameters);
  fit.Count(n);
  for (int i = 1; i <= n; ++i) {
    const double x = (i - 1) * 3.0 / n;
    const double distance = std::exp(-x / tau) + (parameters == 5 ? 0.5 * std::exp(-x / 2.5) : 0);
    const double y = final_value + scale * (noise * between(-1, 1) - direction * distance);
    fit.Point(i, x, random() % 50 == 0 ? 0 : y, random() % 2 != 0 ? 1 : between(0, 3));
  }
  const auto flavour = random() % 10;
  if (flavour == 0) fit.Point(n, 3, fit.plain.GY[1], 1);                     // equal ends
  if (flavour == 1) fit.Point(1 + n / 2, 1, fit.plain.GY[1 + n / 2], 1e70);  // runs away
  if (flavour == 2) fit.Point(1 + n / 2, 1e9, fit.plain.GY[1 + n / 2], 1);   // ln 0
  if (flavour == 3) fit.Point(1 + n / 2, 1, random() % 2 != 0 ? kInfinity : kNaN, 1);
  fit.Randomness(seed);
  if (flavour < 6) {
    fit.quick.SetInitialParameters();
    fit.plain.SetInitialParameters();
    return;
  }
  for (const int j : {1, 4}) fit.P(j, scale * between(flavour == 6 ? -0.1 : 0.3, 2));
  for (const int j : {2, 5}) fit.P(j, between(flavour == 7 ? 0 : 0.02, 3));
  fit.P(3, final_value + scale * direction * between(-0.2, 0.5));
}

// One object carries out all of them, so each starts with the leftovers of the one before.
TEST(GaussNewtonLog, EqualsTheDefinitionBitForBit) {
  Tally tally;
  Twins fit;
  for (unsigned seed = 1; seed <= 1000; ++seed) {
    FillRandomly(fit, seed);
    ASSERT_EQ(fit.Fit(), "") << "case " << seed;
    tally.Add(fit.quick);
  }
  EXPECT_GT(tally.converged, 300);
  EXPECT_GT(tally.diverged, 100);
  EXPECT_GT(tally.ran_out, 100);
  EXPECT_GT(tally.restarted, 100);
  EXPECT_GT(tally.gave_up, 20);
  EXPECT_GT(tally.not_finite, 20);
}

// A relaxation without noise that comes from below (s = 1) or above. Weighted by the distance from
// the final value, so that residuals of the logarithms count as residuals of y; and the final value
// is small, for p3's step is a share of it.
TEST(GaussNewtonLog, RecoversKnownParameters) {
  constexpr int kCount = 61;
  for (const double s : {1.0, -1.0}) {
    SSVGaussNewtonLog fit;
    fit.setparanum(5);
    fit.setGN(kCount);
    for (int i = 1; i <= kCount; ++i) {
      const double x = (i - 1) * 0.1;
      const double distance = 2 * std::exp(-x / 0.4) + std::exp(-x / 2);
      EXPECT_TRUE(fit.setGX(i, x) && fit.setGY(i, s * (0.1 - distance)) && fit.setGW(i, distance));
    }
    const double truth[] = {0, 2, 0.4, s * 0.1, 1, 2};
    const double start[] = {0, 1.8, 0.3, s * 0.12, 1.1, 1.8};
    for (int j = 1; j <= 5; ++j) fit.setp(j, start[j]);
    std::int32_t iterations = 0;
    // A fit ends as soon as an iteration gains little; going on from there brings it home.
    for (int round = 0; round < 20; ++round) fit.GAUSSNEWTONFitting(iterations);
    EXPECT_FALSE(fit.getdivergence());
    for (int j = 1; j <= 5; ++j)
      EXPECT_NEAR(fit.getp(j), truth[j], 0.02 * std::fabs(truth[j])) << j;
    EXPECT_NEAR(fit.getGFit(1), s * -2.9, 0.01);
  }
}

TEST(GaussNewtonLog, RefusesIndicesOutOfRange) {
  constexpr std::int32_t kLast = SSVGaussNewtonLog::kMaxPoints;
  SSVGaussNewtonLog fit;
  double value = 42;
  for (const std::int32_t i : {-1, 0, kLast + 1, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_FALSE(fit.setGX(i, 1) || fit.setGY(i, 1) || fit.setGW(i, 1)) << i;
    EXPECT_TRUE(std::isnan(fit.getGFit(i)) && std::isnan(fit.getp(i))) << i;
    EXPECT_FALSE(fit.LogModel(i, value) || fit.LogResidual(i, value)) << i;
    EXPECT_FALSE(fit.DirectResidual(i, value) || fit.PerturbedResidual(i, 1, 1, value)) << i;
  }
  for (const std::int32_t j : {-1, 0, 6}) {
    EXPECT_FALSE(fit.setp(j, 1) || fit.PerturbedResidual(1, 1, j, value)) << j;
  }
  EXPECT_EQ(value, 42);
  EXPECT_FALSE(fit.setGN(-1) || fit.setGN(kLast + 1) || fit.setparanum(4) || fit.SetRandom({}));
  EXPECT_TRUE(fit.setGX(kLast, 1) && fit.setGY(kLast, 1) && fit.setGW(kLast, 1));
  EXPECT_TRUE(fit.setGN(kLast) && fit.setp(5, 1) && fit.setparanum(5));
  std::vector<double> small(kLast);
  EXPECT_FALSE(fit.LogTransform(small, small));
  std::int32_t iterations = -1;
  fit.GAUSSNEWTONFitting(iterations);  // the last block reaches the end of the arrays
}

TEST(GaussNewtonLog, PerturbsOneParameterAndPutsItBack) {
  Twins fit;
  FillRandomly(fit, 6);  // five parameters
  fit.Parameters(5);
  for (int j = 1; j <= 5; ++j) fit.P(j, 0.7 + 0.1 * j);
  EXPECT_TRUE(fit.quick.LogTransform(fit.plain.GY, Fields(fit.quick).LY()));
  fit.plain.LogTransform(fit.plain.GY, fit.plain.LY);
  for (int j = 1; j <= 5; ++j) {
    double value = 0;
    EXPECT_TRUE(fit.quick.PerturbedResidual(2, 0.03, j, value));
    EXPECT_EQ(value, fit.plain.PerturbedResidual(2, 0.03, j)) << j;
    EXPECT_EQ(Fields(fit.quick).DifferenceFrom(fit.plain), "") << j;
  }
  Fields(fit.quick).LY()[1] = 99;
  fit.quick.RestoreLogData();
  EXPECT_EQ(Fields(fit.quick).DifferenceFrom(fit.plain), "");
}

TEST(GaussNewtonLog, EliminatesWithPivoting) {
  using Fit = SSVGaussNewtonLog;
  // 3y = 6; 2x + y + z = 7; 4x - y + 3z = 5: rows must move.
  Fit::Matrix matrix{{{}, {0, 0, 3, 0}, {0, 2, 1, 1}, {0, 4, -1, 3}}};
  Fit::Vector vector{0, 6, 7, 5};
  bool ok = false;
  Fit::GaussianElimination(matrix, vector, 3, ok);
  EXPECT_TRUE(ok);
  EXPECT_NEAR(vector[1], 4, 1e-14);
  EXPECT_NEAR(vector[2], 2, 1e-14);
  EXPECT_NEAR(vector[3], -3, 1e-14);

  // The second column vanishes once the first is eliminated; what was reduced stays.
  Fit::Matrix singular{{{}, {0, 1, 2, 3}, {0, 2, 4, 5}, {0, 1, 2, 1}}};
  Fit::Vector right{0, 1, 4, 2};
  Fit::GaussianElimination(singular, right, 3, ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(right, (Fit::Vector{0, 4, -1, 0}));
  for (const std::int32_t n : {0, 7}) {
    ok = true;
    Fit::GaussianElimination(matrix, vector, n, ok);
    EXPECT_FALSE(ok) << n;
  }
}

}  // namespace
}  // namespace zento
