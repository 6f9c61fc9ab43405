#include "analysis/exponential_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "text/status.h"

namespace zento {

namespace {

constexpr int kMaxRounds = 10;
// As many where least squares of y take over anyway.
constexpr int kRoundsBeforeSquares = 2;
// A round that gains less than this share of the squares was the last one.
constexpr double kWorthwhile = 1e-4;
// A time constant of so many times the data's extent is a straight line.
constexpr double kLongestTau = 1000;
// Where the final value is shifted to, in units of the data's rise: the class steps it by an eighth
// of itself and less, which must be small against the distances of most points.
constexpr double kFinal = 0.02;

bool AllFinite(std::span<const double> values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

Status CheckData(std::span<const double> x, std::span<const double> y, int parameters) {
  if (parameters != 3 && parameters != 5) {
    return Status::Failure("an exponential fit has 3 or 5 parameters, not " +
                           std::to_string(parameters));
  }
  if (x.size() != y.size()) return Status::Failure("x and y differ in length");
  const std::string points = std::to_string(x.size()) + " points";
  if (x.size() < static_cast<std::size_t>(parameters)) {
    return Status::Failure(points + " are too few for " + std::to_string(parameters) +
                           " parameters");
  }
  if (x.size() > static_cast<std::size_t>(SSVGaussNewtonLog::kMaxPoints)) {
    return Status::Failure(points + " are too many; " +
                           std::to_string(SSVGaussNewtonLog::kMaxPoints) + " can be fitted");
  }
  if (!AllFinite(x) || !AllFinite(y)) return Status::Failure("a value is not a finite number");
  const auto [least, greatest] = std::minmax_element(x.begin(), x.end());
  if (*least != x.front() || *greatest != x.back() || *least == *greatest) {
    return Status::Failure("x does not rise from the first point to the last");
  }
  const auto [lowest, highest] = std::minmax_element(y.begin(), y.end());
  if (*lowest == *highest) return Status::Failure("all values are equal");
  if (y.front() == y.back()) {
    return Status::Failure(
        "the first and the last value are equal, so the data neither rise nor fall");
  }
  if (!std::isfinite(x.back() - x.front()) || !std::isfinite(*highest - *lowest)) {
    return Status::Failure("the values are too large");
  }
  return Status::Ok();
}

Status CheckOptions(std::size_t points, int parameters, const ExponentialFitOptions& options) {
  const auto& [start, weights, attempts, random] = options;
  if (!start.empty()) {
    if (start.size() != static_cast<std::size_t>(parameters) || !AllFinite(start)) {
      return Status::Failure(std::to_string(parameters) + " finite start values are needed");
    }
    for (std::size_t j = 0; j < start.size(); ++j) {
      if (j != 2 && start[j] <= 0) {
        return Status::Failure("the start value of p" + std::to_string(j + 1) +
                               " must be positive");
      }
    }
  }
  if (weights.empty()) return Status::Ok();
  if (weights.size() != points || !AllFinite(weights) ||
      *std::min_element(weights.begin(), weights.end()) < 0) {
    return Status::Failure("every point needs a finite weight that is not negative");
  }
  if (*std::max_element(weights.begin(), weights.end()) == 0) {
    return Status::Failure("all weights are 0");
  }
  return Status::Ok();
}

// p1 ... p5 of v(t) = p3 - p1 exp(-t/p2) - p4 exp(-t/p5).
using ExponentialParameters = std::array<double, 5>;

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

// Start values for fitting a relaxation that rises over 0 <= t <= 1: the best, by the squares in v,
// of a grid of time constants from 0.005 to 5. For given ones the other parameters are a linear
// least-squares problem (Golub and Pereyra 1973, SIAM J. Numer. Anal. 10, 413). Takes every so many
// points of a long set. `parameters` is 3 or 5; where only one exponential can be told, two start
// from its halves. Nothing when no time constant gives a positive amplitude.
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

// Sums over points of the products of the model's slopes dy/dp with each other and with
// y - model, counted from 1.
struct ExponentialSums {
  SSVGaussNewtonLog::Matrix curvature{};
  SSVGaussNewtonLog::Vector gradient{};
  double squares = 0;
};

// For y = p3 - sign (p1 exp(-x/p2) + p4 exp(-x/p5)).
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

// The parameters of least squares in v (sign 1) near `p`, by damped Gauss-Newton steps (Marquardt
// 1963, J. Soc. Indust. Appl. Math. 11, 431), with all but p3 kept positive. Never worse than `p`.
// `converged` says whether a minimum was reached.
std::vector<double> RefineExponential(std::span<const double> t, std::span<const double> v,
                                      std::vector<double> p, bool& converged) {
  constexpr int kMaxSteps = 300;
  constexpr double kMostDamping = 1e8;
  constexpr double kLeastGain = 1e-12;  // relative gain
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
    converged = now.squares - then.squares <= kLeastGain * now.squares;
    p = next;
    now = then;
    damping /= 10;
    if (converged) return p;
  }
  // No step of any length is downhill: the sums' last digits are all that is left.
  converged = damping >= kMostDamping;
  return p;
}

// What a start led to, in the fitter's units.
struct Attempt {
  ExponentialParameters p{};
  double squares = std::numeric_limits<double>::infinity();
  int iterations = 0;
  bool converged = false;
};

class Fitter {
 public:
  Fitter(std::span<const double> x, std::span<const double> y, int parameters,
         const ExponentialFitOptions& options)
      : x_(x), y_(y), parameters_(parameters), options_(options) {
    sign_ = y.back() > y.front() ? 1 : -1;
    rise_ = std::fabs(y.back() - y.front());
    span_ = x.back() - x.front();
    for (std::size_t i = 0; i < x.size(); ++i) {
      t_.push_back((x[i] - x.front()) / span_);
      v_.push_back(sign_ * (y[i] - y.back()) / rise_);
    }
    fit_.setparanum(parameters);
    fit_.setGN(static_cast<std::int32_t>(x.size()));
    fit_.SetRandom(options.random);
  }

  Result<ExponentialFit> Run();

 private:
  void Try(const ExponentialParameters& start, int rounds);
  bool Round(Attempt& attempt);
  void Refine(Attempt& attempt) const;
  void Load(const ExponentialParameters& p);
  ExponentialParameters FromUser(std::span<const double> p) const;
  ExponentialParameters Random();
  double ModelOf(const ExponentialParameters& p, double t) const;
  double SquaresOf(const ExponentialParameters& p) const;
  Result<ExponentialFit> Describe() const;
  double ModelAt(std::span<const double> p, double x) const;
  std::vector<double> Errors(std::span<const double> p, double chi_square) const;

  std::span<const double> x_, y_;
  int parameters_;
  const ExponentialFitOptions& options_;
  int sign_;
  double rise_;
  double span_;
  std::vector<double> t_;  // x, from 0 to 1
  std::vector<double> v_;  // y, from -1 to 0, rising
  SSVGaussNewtonLog fit_;

  std::optional<Attempt> best_;
  int attempts_ = 0;
  int divergences_ = 0;
};

Result<ExponentialFit> Fitter::Run() {
  const int rounds = options_.weights.empty() ? kRoundsBeforeSquares : kMaxRounds;
  if (!options_.start.empty()) {
    Try(FromUser(options_.start), rounds);
  } else {
    if (const auto estimate = EstimateExponential(t_, v_, parameters_)) {
      Try(*estimate, rounds);
    }
    if (!best_) {
      for (int i = 0; i < options_.attempts; ++i) Try(Random(), 1);
    }
  }
  if (best_) return Describe();
  return Status::Failure("no fit was found from " + std::to_string(attempts_) + " start(s); " +
                         std::to_string(divergences_) + " ran away");
}

void Fitter::Try(const ExponentialParameters& start, int rounds) {
  ++attempts_;
  Attempt now;
  now.p = start;
  std::optional<Attempt> best;
  double before = std::numeric_limits<double>::infinity();
  for (int round = 0; round < rounds; ++round) {
    if (!Round(now)) break;
    now.converged = std::fabs(before - now.squares) <= kWorthwhile * now.squares;
    if (!best || now.squares < best->squares) best = now;
    best->converged = best->converged || now.converged;
    best->iterations = now.iterations;
    if (now.converged) break;
    before = now.squares;
  }
  if (!best) ++divergences_;
  if (options_.weights.empty()) {
    const double at_start = SquaresOf(start);
    if (std::isfinite(at_start) && (!best || at_start < best->squares)) {
      best = {start, at_start, best ? best->iterations : 0, false};
    }
    if (best) Refine(*best);
  }
  if (best && (!best_ || best->squares < best_->squares)) best_ = best;
}

void Fitter::Refine(Attempt& attempt) const {
  std::vector<double> p(attempt.p.begin(), attempt.p.begin() + parameters_);
  p = RefineExponential(t_, v_, std::move(p), attempt.converged);
  std::copy(p.begin(), p.end(), attempt.p.begin());
  if (parameters_ == 5 && attempt.p[1] > attempt.p[4]) {  // the faster relaxation comes first
    std::swap(attempt.p[0], attempt.p[3]);
    std::swap(attempt.p[1], attempt.p[4]);
  }
  attempt.squares = SquaresOf(attempt.p);
}

// False when the round led to nothing that can be used.
bool Fitter::Round(Attempt& attempt) {
  const double shift = kFinal - attempt.p[2];
  Load(attempt.p);
  for (int j = 0; j < parameters_; ++j) fit_.setp(j + 1, attempt.p[j]);
  fit_.setp(3, kFinal);
  std::int32_t iterations = 0;
  fit_.GAUSSNEWTONFitting(iterations);
  if (fit_.getdivergence() || fit_.restarts() > 0) return false;
  attempt.iterations += iterations;
  for (int j = 0; j < parameters_; ++j) attempt.p[j] = fit_.getp(j + 1);
  attempt.p[2] -= shift;
  attempt.squares = SquaresOf(attempt.p);
  return std::isfinite(attempt.squares);
}

// The data with the final value moved to kFinal. The class takes a 0 for a 1, so the smallest
// number stands for it.
void Fitter::Load(const ExponentialParameters& p) {
  for (std::size_t i = 0; i < t_.size(); ++i) {
    const auto point = static_cast<std::int32_t>(i) + 1;
    const double distance = p[2] - v_[i];
    const double v = kFinal - distance;
    fit_.setGX(point, t_[i]);
    fit_.setGY(point, v == 0 ? std::numeric_limits<double>::min() : v);
    const double weight = options_.weights.empty() ? p[2] - ModelOf(p, t_[i]) : options_.weights[i];
    fit_.setGW(point, distance > 0 ? weight : 0);
  }
}

ExponentialParameters Fitter::FromUser(std::span<const double> p) const {
  ExponentialParameters out{};
  for (const std::size_t amplitude : {0, 3}) {
    if (amplitude >= p.size()) break;
    out[amplitude] = p[amplitude] * std::exp(-x_.front() / p[amplitude + 1]) / rise_;
    out[amplitude + 1] = p[amplitude + 1] / span_;
  }
  out[2] = sign_ * (p[2] - y_.back()) / rise_;
  return out;
}

// The class draws final values about the last point.
ExponentialParameters Fitter::Random() {
  Load({1, 0.3, 0, 0, 1});
  fit_.SetInitialParameters();
  ExponentialParameters p{};
  for (int j = 0; j < parameters_; ++j) p[j] = fit_.getp(j + 1);
  p[2] -= kFinal;
  return p;
}

double Fitter::ModelOf(const ExponentialParameters& p, double t) const {
  const double one = p[2] - p[0] * std::exp(-t / p[1]);
  return parameters_ == 5 ? one - p[3] * std::exp(-t / p[4]) : one;
}

double Fitter::SquaresOf(const ExponentialParameters& p) const {
  double squares = 0;
  for (std::size_t i = 0; i < t_.size(); ++i) {
    const double residual = ModelOf(p, t_[i]) - v_[i];
    squares += residual * residual;
  }
  return squares;
}

double Fitter::ModelAt(std::span<const double> p, double x) const {
  double distance = p[0] * std::exp(-x / p[1]);
  if (parameters_ == 5) distance += p[3] * std::exp(-x / p[4]);
  return p[2] - sign_ * distance;
}

Result<ExponentialFit> Fitter::Describe() const {
  ExponentialFit result;
  result.direction = sign_;
  const auto& p = best_->p;
  if (p[1] > kLongestTau || p[4] > kLongestTau) {
    return Status::Failure("the data do not level off: a final value cannot be told from them");
  }
  result.parameters.assign(p.begin(), p.begin() + parameters_);
  for (const std::size_t amplitude : {0, 3}) {
    if (amplitude >= result.parameters.size()) break;
    const double tau = p[amplitude + 1] * span_;
    result.parameters[amplitude] = p[amplitude] * rise_ * std::exp(x_.front() / tau);
    result.parameters[amplitude + 1] = tau;
  }
  result.parameters[2] = y_.back() + sign_ * rise_ * p[2];
  for (const double x : x_) result.fitted.push_back(ModelAt(result.parameters, x));
  if (!AllFinite(result.parameters) || !AllFinite(result.fitted)) {
    return Status::Failure("x starts so far from 0 that the amplitude there is out of range");
  }
  result.chi_square = best_->squares * rise_ * rise_;
  result.iterations = best_->iterations;
  result.converged = best_->converged;
  result.attempts = attempts_;
  result.divergences = divergences_;
  result.errors = Errors(result.parameters, result.chi_square);
  return result;
}

// The roots of the diagonal of the inverse of J'J times the variance. Columns are scaled to length
// one first: amplitudes of nA beside time constants of hours would leave the inverse no digits.
std::vector<double> Fitter::Errors(std::span<const double> p, double chi_square) const {
  const auto n = static_cast<std::int32_t>(p.size());
  if (x_.size() <= p.size() || !options_.weights.empty()) return {};
  auto curvature = SumSlopes(x_, y_, p, sign_).curvature;
  SSVGaussNewtonLog::Vector scale{};
  for (std::int32_t a = 1; a <= n; ++a) scale[a] = std::sqrt(curvature[a][a]);
  for (std::int32_t a = 1; a <= n; ++a) {
    for (std::int32_t b = 1; b <= n; ++b) curvature[a][b] /= scale[a] * scale[b];
  }
  const double variance = chi_square / static_cast<double>(x_.size() - p.size());
  std::vector<double> errors;
  for (std::int32_t a = 1; a <= n; ++a) {
    SSVGaussNewtonLog::Matrix matrix = curvature;
    SSVGaussNewtonLog::Vector column{};
    column[a] = 1;
    bool ok = false;
    SSVGaussNewtonLog::GaussianElimination(matrix, column, n, ok);
    const double error = std::sqrt(variance * column[a]) / scale[a];
    if (!ok || !std::isfinite(error)) return {};
    errors.push_back(error);
  }
  return errors;
}

}  // namespace

Result<ExponentialFit> FitExponential(std::span<const double> x, std::span<const double> y,
                                      int parameters, const ExponentialFitOptions& options) {
  if (Status status = CheckData(x, y, parameters); !status.ok()) return status;
  if (Status status = CheckOptions(x.size(), parameters, options); !status.ok()) return status;
  return Fitter(x, y, parameters, options).Run();
}

}  // namespace zento
