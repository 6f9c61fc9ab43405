#include "analysis/exponential_squares.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace zento {

namespace {

constexpr std::size_t kTaus = 30;
constexpr double kShortest = 0.005;
constexpr double kLongest = 5;
constexpr std::size_t kMostPoints = 1000;
// Columns of the problem: the data, the constant, and an exponential for each time constant.
constexpr std::size_t kData = 0;
constexpr std::size_t kConstant = 1;
constexpr std::size_t kFirstDecay = 2;

constexpr std::size_t kColumns = kFirstDecay + kTaus;

using Products = std::array<std::array<double, kColumns>, kColumns>;

double Tau(std::size_t column) {
  const auto k = static_cast<double>(column - kFirstDecay);
  return kShortest * std::pow(kLongest / kShortest, k / (kTaus - 1));
}

// Sums of all products of two columns; the search needs no more.
Products SumProducts(std::span<const double> t, std::span<const double> v) {
  const std::size_t stride = (t.size() + kMostPoints - 1) / kMostPoints;
  Products products{};
  std::array<double, kColumns> row{};
  row[kConstant] = 1;
  for (std::size_t i = 0; i < t.size(); i += stride) {
    row[kData] = v[i];
    for (std::size_t k = kFirstDecay; k < kColumns; ++k) row[k] = std::exp(-t[i] / Tau(k));
    for (std::size_t a = 0; a < kColumns; ++a) {
      for (std::size_t b = 0; b < kColumns; ++b) products[a][b] += row[a] * row[b];
    }
  }
  return products;
}

struct Candidate {
  double squares = std::numeric_limits<double>::infinity();
  SSVGaussNewtonLog::Vector coefficient{};
};

// Least squares of the data on the given columns.
Candidate Solve(const Products& products, std::span<const std::size_t> columns) {
  SSVGaussNewtonLog::Matrix matrix{};
  Candidate found;
  const auto n = static_cast<std::int32_t>(columns.size());
  for (std::int32_t a = 1; a <= n; ++a) {
    found.coefficient[a] = products[columns[a - 1]][kData];
    for (std::int32_t b = 1; b <= n; ++b) matrix[a][b] = products[columns[a - 1]][columns[b - 1]];
  }
  bool ok = false;
  SSVGaussNewtonLog::GaussianElimination(matrix, found.coefficient, n, ok);
  if (!ok) return found;
  double squares = products[kData][kData];
  for (std::int32_t a = 1; a <= n; ++a) {
    squares -= found.coefficient[a] * products[columns[a - 1]][kData];
    // The exponentials are taken from the constant.
    if (a > 1 && !(found.coefficient[a] < 0)) return found;
  }
  if (std::isfinite(squares)) found.squares = squares;
  return found;
}

}  // namespace

std::optional<ExponentialParameters> EstimateExponential(std::span<const double> t,
                                                         std::span<const double> v,
                                                         int parameters) {
  const Products products = SumProducts(t, v);
  double least = std::numeric_limits<double>::infinity();
  ExponentialParameters best{};
  const auto consider = [&](std::span<const std::size_t> columns) {
    const Candidate found = Solve(products, columns);
    if (!(found.squares < least)) return;
    least = found.squares;
    best = {-found.coefficient[2], Tau(columns[1]), found.coefficient[1], 0, 0};
    if (columns.size() < 3) return;
    best[3] = -found.coefficient[3];
    best[4] = Tau(columns[2]);
  };
  for (std::size_t fast = kFirstDecay; fast < kColumns; ++fast) {
    if (parameters == 3) consider(std::array{kConstant, fast});
    for (std::size_t slow = fast + 1; parameters == 5 && slow < kColumns; ++slow) {
      consider(std::array{kConstant, fast, slow});
    }
  }
  if (std::isfinite(least)) return best;
  if (parameters == 3) return std::nullopt;
  // One exponential is all that the data show.
  auto one = EstimateExponential(t, v, 3);
  if (one) *one = {(*one)[0] / 2, (*one)[1] / 1.5, (*one)[2], (*one)[0] / 2, (*one)[1] * 1.5};
  return one;
}

ExponentialSums SumSlopes(std::span<const double> x, std::span<const double> y,
                          std::span<const double> p, int sign) {
  ExponentialSums sums;
  SSVGaussNewtonLog::Vector slope{};
  slope[3] = 1;
  const std::size_t n = p.size();
  for (std::size_t i = 0; i < x.size(); ++i) {
    double residual = y[i] - p[2];
    for (std::size_t a = 0; a < n; a += 3) {  // amplitude p[a], time constant p[a + 1]
      const double decay = sign * std::exp(-x[i] / p[a + 1]);
      residual += p[a] * decay;
      slope[a + 1] = -decay;
      slope[a + 2] = -p[a] * decay * (x[i] / p[a + 1]) / p[a + 1];
    }
    for (std::size_t a = 1; a <= n; ++a) {
      sums.gradient[a] += slope[a] * residual;
      for (std::size_t b = 1; b <= n; ++b) sums.curvature[a][b] += slope[a] * slope[b];
    }
    sums.squares += residual * residual;
  }
  return sums;
}

namespace {

// The damped step from p; empty when it cannot be made or leaves a parameter's range.
std::vector<double> Step(const ExponentialSums& sums, std::vector<double> p, double damping) {
  auto matrix = sums.curvature;
  auto change = sums.gradient;
  const std::size_t n = p.size();
  for (std::size_t a = 1; a <= n; ++a) matrix[a][a] *= 1 + damping;
  bool ok = false;
  SSVGaussNewtonLog::GaussianElimination(matrix, change, static_cast<std::int32_t>(n), ok);
  for (std::size_t a = 1; ok && a <= n; ++a) {
    p[a - 1] += change[a];
    ok = std::isfinite(p[a - 1]) && (a == 3 || p[a - 1] > 0);
  }
  if (!ok) p.clear();
  return p;
}

}  // namespace

std::vector<double> RefineExponential(std::span<const double> t, std::span<const double> v,
                                      std::vector<double> p, bool& converged) {
  constexpr int kMaxSteps = 300;
  constexpr double kMostDamping = 1e8;
  constexpr double kWorthwhile = 1e-12;  // relative gain
  converged = false;
  double damping = 1e-3;
  ExponentialSums now = SumSlopes(t, v, p, 1);
  for (int step = 0; step < kMaxSteps && damping < kMostDamping; ++step) {
    const std::vector<double> next = Step(now, p, damping);
    const ExponentialSums then = next.empty() ? now : SumSlopes(t, v, next, 1);
    if (next.empty() || !(then.squares < now.squares)) {
      damping *= 10;
      continue;
    }
    converged = now.squares - then.squares <= kWorthwhile * now.squares;
    p = next;
    now = then;
    damping /= 10;
    if (converged) return p;
  }
  // No step of any length is downhill: the sums' last digits are all that is left.
  converged = damping >= kMostDamping;
  return p;
}

}  // namespace zento
