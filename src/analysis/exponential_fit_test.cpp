#include "analysis/exponential_fit.h"
#include "text/status.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace zento {
namespace {

struct Data {
  std::vector<double> x, y;
};

// y = p3 - s (p1 exp(-x/p2) + p4 exp(-x/p5)) with Gaussian noise.
Data Relaxation(const std::vector<double>& p, int s, std::size_t points, double first, double last,
                double noise = 0, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::normal_distribution<double> gauss(0, 1);
  Data data;
  for (std::size_t i = 0; i < points; ++i) {
    const double x = first + (last - first) * static_cast<double>(i) / static_cast<double>(points);
    double distance = p[0] * std::exp(-x / p[1]);
    if (p.size() == 5) distance += p[3] * std::exp(-x / p[4]);
    data.x.push_back(x);
    data.y.push_back(p[2] - s * distance + noise * gauss(random));
  }
  return data;
}

TEST(ExponentialFit, FindsWhatWasPutInWhateverScaleAndOffset) {
  const std::vector<std::vector<double>> truths = {{2, 0.4, 0.1},
                                                   {3e-6, 12, 7e-4},
                                                   {500, 1e-3, -1e4},
                                                   {2, 0.4, 0, 1, 2},
                                                   {1e-6, 30, -5e-6, 4e-6, 200}};
  for (const auto& truth : truths) {
    for (const int s : {1, -1}) {
      const double longest = truth.size() == 5 ? truth[4] : truth[1];
      for (const double first : {0.0, 0.5 * longest}) {
        const Data data = Relaxation(truth, s, 200, first, first + 4 * longest);
        const auto fit = FitExponential(data.x, data.y, static_cast<int>(truth.size()));
        ASSERT_TRUE(fit.ok()) << fit.why();
        EXPECT_TRUE(fit.value().converged);
        EXPECT_EQ(fit.value().direction, s);
        for (std::size_t j = 0; j < truth.size(); ++j) {
          const double scale = j == 2 ? truth[0] : truth[j];
          EXPECT_NEAR(fit.value().parameters[j], truth[j], 1e-4 * scale) << j;
        }
        EXPECT_NEAR(fit.value().fitted[7], data.y[7], 1e-6 * truth[0]);
      }
    }
  }
}

// The errors are worth something: over many noisy sets, long tails included, the parameters scatter
// about the truth by as much as the errors say.
TEST(ExponentialFit, ErrorsTellTheScatter) {
  const std::vector<double> truth{2, 0.4, 7};
  constexpr int kSets = 60;
  std::vector<double> pull(3), pull_squared(3);
  for (unsigned seed = 0; seed < kSets; ++seed) {
    const Data data = Relaxation(truth, seed % 2 != 0 ? 1 : -1, 120, 0, 4, 0.1, seed);
    const auto fit = FitExponential(data.x, data.y, 3);
    ASSERT_TRUE(fit.ok()) << fit.why();
    for (std::size_t j = 0; j < 3; ++j) {
      const double z = (fit.value().parameters[j] - truth[j]) / fit.value().errors[j];
      pull[j] += z / kSets;
      pull_squared[j] += z * z / kSets;
    }
    EXPECT_NEAR(fit.value().chi_square / 117, 0.01, 0.005);
  }
  for (std::size_t j = 0; j < 3; ++j) {
    EXPECT_NEAR(pull[j], 0, 0.5) << j;
    EXPECT_NEAR(pull_squared[j], 1, 0.6) << j;
  }
}

// Twice each of six points: the same fit, half the inverse of J'J, twice the squares, and 9 points
// left over instead of 3.
TEST(ExponentialFit, ErrorsCountThePointsThatAreLeftOver) {
  const Data once = Relaxation({2, 0.4, 5}, 1, 6, 0, 1.5, 0.02);
  Data twice;
  for (std::size_t i = 0; i < 12; ++i) {
    twice.x.push_back(once.x[i / 2]);
    twice.y.push_back(once.y[i / 2]);
  }
  const auto few = FitExponential(once.x, once.y, 3);
  const auto many = FitExponential(twice.x, twice.y, 3);
  ASSERT_TRUE(few.ok() && many.ok()) << few.why() << many.why();
  for (std::size_t j = 0; j < 3; ++j) {
    EXPECT_NEAR(few->errors[j] / many->errors[j], std::sqrt(9.0 / 3), 1e-3) << j;
  }
}

// A measured 0 is a 0 here, although the class takes it for a 1.
TEST(ExponentialFit, TakesZerosForWhatTheyAre) {
  Data data = Relaxation({2, 0.4, 0}, -1, 100, 0, 2);
  const double level = data.y[40];
  for (double& y : data.y) y -= level;
  ASSERT_EQ(data.y[40], 0);
  const auto fit = FitExponential(data.x, data.y, 3);
  ASSERT_TRUE(fit.ok()) << fit.why();
  EXPECT_NEAR(fit.value().parameters[0], 2, 1e-6);
  EXPECT_NEAR(fit.value().fitted[40], 0, 1e-6);
}

TEST(ExponentialFit, TakesStartValuesAndWeights) {
  Data data = Relaxation({2, 0.4, 5}, 1, 100, 0, 1.2, 1e-3);
  ExponentialFitOptions options;
  options.start = {1.5, 0.6, 5.3};
  auto fit = FitExponential(data.x, data.y, 3, options);
  ASSERT_TRUE(fit.ok()) << fit.why();
  EXPECT_EQ(fit.value().attempts, 1);
  EXPECT_NEAR(fit.value().parameters[1], 0.4, 5 * fit.value().errors[1]);

  // A wild point that weighs nothing does no harm; it did before.
  data.y[30] = 5;
  const double misled = FitExponential(data.x, data.y, 3).value().parameters[1];
  options.weights.assign(100, 1);
  options.weights[30] = 0;
  fit = FitExponential(data.x, data.y, 3, options);
  ASSERT_TRUE(fit.ok()) << fit.why();
  EXPECT_LT(std::fabs(fit.value().parameters[1] - 0.4), 0.01);
  EXPECT_GT(std::fabs(misled - 0.4), 0.02);
  EXPECT_TRUE(fit.value().errors.empty());
}

// One exponential leaves the second of two open, and an accelerating curve has none at all.
TEST(ExponentialFit, EndsOnDataOfAnotherKind) {
  const Data one = Relaxation({2, 0.4, 5}, 1, 60, 0, 2);
  const auto two_from_one = FitExponential(one.x, one.y, 5);
  ASSERT_TRUE(two_from_one.ok()) << two_from_one.why();
  EXPECT_LE(two_from_one.value().parameters[1], two_from_one.value().parameters[4]);
  EXPECT_NEAR(two_from_one.value().fitted[10], one.y[10], 1e-3);

  Data up = one;
  for (std::size_t i = 0; i < up.x.size(); ++i) up.y[i] = std::exp(2 * up.x[i]);
  const auto fit = FitExponential(up.x, up.y, 3);
  EXPECT_EQ(fit.why(), "the data do not level off: a final value cannot be told from them");
}

TEST(ExponentialFit, SaysWhatIsWrongWithTheInput) {
  const Data good = Relaxation({2, 0.4, 5}, 1, 20, 0, 2);
  const auto with_y = [&](std::size_t i, double value) {
    auto y = good.y;
    y[i] = value;
    return y;
  };
  const auto start = [](const std::vector<double>& p) {
    ExponentialFitOptions options;
    options.start = p;
    return options;
  };
  const auto weights = [](std::size_t count, double weight) {
    ExponentialFitOptions options;
    options.weights.assign(count, weight);
    return options;
  };
  const std::vector<double> many(SSVGaussNewtonLog::kMaxPoints + 1);
  const std::vector<double> level(20, 1);
  const struct {
    std::vector<double> x, y;
    int parameters;
    ExponentialFitOptions options;
    const char* why;
  } cases[] = {
      {good.x, good.y, 4, {}, "an exponential fit has 3 or 5 parameters, not 4"},
      {{0, 1}, {1, 2}, 3, {}, "2 points are too few for 3 parameters"},
      {{}, {}, 5, {}, "0 points are too few for 5 parameters"},
      {{0, 1, 2}, {1, 2}, 3, {}, "x and y differ in length"},
      {many, many, 3, {}, "40002 points are too many; 40001 can be fitted"},
      {good.x, with_y(3, INFINITY), 3, {}, "a value is not a finite number"},
      {good.x, with_y(3, NAN), 3, {}, "a value is not a finite number"},
      {level, good.y, 3, {}, "x does not rise from the first point to the last"},
      {good.x, level, 3, {}, "all values are equal"},
      {good.x,
       with_y(19, good.y[0]),
       3,
       {},
       "the first and the last value are equal, so the data neither rise nor fall"},
      {good.x, good.y, 3, start({1, 2}), "3 finite start values are needed"},
      {good.x, good.y, 3, start({1, -2, 5}), "the start value of p2 must be positive"},
      {good.x, good.y, 3, weights(19, 1), "every point needs a finite weight that is not negative"},
      {good.x, good.y, 3, weights(20, 0), "all weights are 0"},
  };
  for (const auto& [x, y, parameters, options, why] : cases) {
    EXPECT_EQ(FitExponential(x, y, parameters, options).why(), why);
  }
}

}  // namespace
}  // namespace zento
