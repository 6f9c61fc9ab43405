#include "analysis/gauss_newton_log.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <utility>

namespace zento {

namespace {

constexpr double kMaxResidual = 1e100;
constexpr double kMaxSquares = 1e50;
constexpr double kMaxSlope = 1e50;
constexpr double kLeastStep = 1e-50;
constexpr double kConverged = 0.001;  // relative change of the sum of squares
constexpr double kNotThere = std::numeric_limits<double>::quiet_NaN();

double Sign(double x) {
  return static_cast<double>(x > 0) - static_cast<double>(x < 0);
}

bool SameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// A 53 bit fraction of a generator that is the same on every platform; std's own distributions are
// not.
SSVGaussNewtonLog::Uniform OwnGenerator() {
  return [generator = std::mt19937_64{}]() mutable {
    return static_cast<double>(generator() >> 11) * 0x1p-53;
  };
}

// The sums of SSVGaussNewtonLog over a block of points: residuals of the log model and their
// forward-difference slopes, bit for bit as if computed point after point from the parameters.
//
// A point needs its residual once, an exponential for each time constant as it is and raised, and a
// logarithm for each parameter and two more; these are all the calls made. What lies between them
// is arithmetic on whole arrays, so that the compiler can do two at a time. exp and log must be the
// library's: a vectorised one rounds differently.
class LogBlock {
 public:
  static constexpr std::int32_t kPoints = 64;
  static constexpr std::size_t kSize = 7;  // SSVGaussNewtonLog's arrays, from index 1

  struct Model {
    const std::array<double, 6>& p;
    const std::array<double, kSize>& step;
    double sgn;
    std::int32_t paranum;
  };
  // Each pointer has kPoints readable doubles; the first `count` are used.
  struct Points {
    const double* x;
    const double* y;
    const double* weight;
    const double* log_data;
    std::int32_t count;
  };
  struct Sums {
    double squares;  // every point once per parameter
    std::array<std::array<double, kSize>, kSize> normal;
    std::array<double, kSize> right;
  };

  void Add(const Model& model, const Points& points, Sums& sums);

 private:
  using Column = std::array<double, kPoints>;

  static void Decay(const double* x, double tau, std::int32_t count, Column& out);
  static void TakeLog(std::int32_t count, Column& column);
  void EvaluateOne(const Model& model, const Points& points);
  void EvaluateTwo(const Model& model, const Points& points);
  void TransformRaised(const Model& model, const Points& points);
  void Differences(const Model& model, const Points& points);
  template <std::size_t kParameters>
  void Accumulate(std::int32_t count, Sums& sums) const;

  Column fast_{}, fast_raised_{};
  Column slow_{}, slow_raised_{};
  Column raised_log_data_{};
  // Index 0: ln of the model, then its weighted residual. Index j: the same with p(j) raised, then
  // the slope against p(j).
  std::array<Column, 6> value_{};
};

void LogBlock::Add(const Model& model, const Points& points, Sums& sums) {
  if (model.paranum == 3) {
    EvaluateOne(model, points);
  } else {
    EvaluateTwo(model, points);
  }
  TransformRaised(model, points);
  Differences(model, points);
  if (model.paranum == 3) {
    Accumulate<3>(points.count, sums);
  } else {
    Accumulate<5>(points.count, sums);
  }
}

void LogBlock::Decay(const double* x, double tau, std::int32_t count, Column& out) {
  for (std::int32_t i = 0; i < kPoints; ++i) out[i] = -x[i] / tau;
  for (std::int32_t i = 0; i < count; ++i) out[i] = std::exp(out[i]);
}

void LogBlock::TakeLog(std::int32_t count, Column& column) {
  for (std::int32_t i = 0; i < count; ++i) column[i] = std::log(column[i]);
}

void LogBlock::EvaluateOne(const Model& model, const Points& points) {
  const double p1 = model.p[1];
  const double p1_raised = p1 + model.step[1];
  Decay(points.x, model.p[2], points.count, fast_);
  Decay(points.x, model.p[2] + model.step[2], points.count, fast_raised_);
  for (std::int32_t i = 0; i < kPoints; ++i) {
    value_[0][i] = p1 * fast_[i];
    value_[1][i] = p1_raised * fast_[i];
    value_[2][i] = p1 * fast_raised_[i];
  }
  for (const int j : {0, 1, 2}) TakeLog(points.count, value_[j]);
}

void LogBlock::EvaluateTwo(const Model& model, const Points& points) {
  const double p1 = model.p[1];
  const double p4 = model.p[4];
  const double p1_raised = p1 + model.step[1];
  const double p4_raised = p4 + model.step[4];
  Decay(points.x, model.p[2], points.count, fast_);
  Decay(points.x, model.p[2] + model.step[2], points.count, fast_raised_);
  Decay(points.x, model.p[5], points.count, slow_);
  Decay(points.x, model.p[5] + model.step[5], points.count, slow_raised_);
  for (std::int32_t i = 0; i < kPoints; ++i) {
    const double fast = p1 * fast_[i];
    const double slow = p4 * slow_[i];
    value_[0][i] = slow + fast;
    value_[1][i] = slow + p1_raised * fast_[i];
    value_[2][i] = slow + p1 * fast_raised_[i];
    value_[4][i] = p4_raised * slow_[i] + fast;
    value_[5][i] = p4 * slow_raised_[i] + fast;
  }
  for (const int j : {0, 1, 2, 4, 5}) TakeLog(points.count, value_[j]);
}

// Raising p3 changes the data's logarithms, not the model's.
void LogBlock::TransformRaised(const Model& model, const Points& points) {
  const double p3_raised = model.p[3] + model.step[3];
  for (std::int32_t i = 0; i < points.count; ++i) {
    const double distance = points.y[i] - p3_raised;
    const bool ahead = model.sgn == -1 ? distance > 0 : model.sgn == 1 && distance < 0;
    raised_log_data_[i] = ahead ? std::log(std::fabs(distance)) : 0;
  }
}

// Slopes (raised - residual) / step, in the written order of AddPoint. For p3 the data were raised,
// not the model, so its slope is taken while value_[0] still is the model's logarithm.
void LogBlock::Differences(const Model& model, const Points& points) {
  for (std::int32_t i = 0; i < kPoints; ++i) {
    const double log_model = value_[0][i];
    const double residual = (log_model - points.log_data[i]) * points.weight[i];
    const double raised = (log_model - raised_log_data_[i]) * points.weight[i];
    value_[0][i] = residual;
    value_[3][i] = (raised - residual) / model.step[3];
  }
  for (std::int32_t j = 1; j <= model.paranum; ++j) {
    if (j == 3) continue;
    const double step = model.step[j];
    for (std::int32_t i = 0; i < kPoints; ++i) {
      const double raised = (value_[j][i] - points.log_data[i]) * points.weight[i];
      value_[j][i] = (raised - value_[0][i]) / step;
    }
  }
}

// One point's share of row j: columns j, j + 1, ... Written out without loops, for the compiler to
// keep the sums in registers.
template <std::size_t j, std::size_t... k>
void AddRow(const std::array<double, 6>& value, LogBlock::Sums& sums, std::index_sequence<k...>) {
  sums.squares = sums.squares + value[0] * value[0];
  ((sums.normal[j][j + k] = sums.normal[j][j + k] + value[j] * value[j + k]), ...);
  sums.right[j] = sums.right[j] - value[0] * value[j];
}

template <std::size_t... row>
void AddRows(const std::array<double, 6>& value, LogBlock::Sums& sums,
             std::index_sequence<row...>) {
  (AddRow<row + 1>(value, sums, std::make_index_sequence<sizeof...(row) - row>{}), ...);
}

template <std::size_t kParameters>
void LogBlock::Accumulate(std::int32_t count, Sums& sums) const {
  Sums local = sums;
  for (std::int32_t i = 0; i < count; ++i) {
    std::array<double, 6> value;
    for (std::size_t j = 0; j <= kParameters; ++j) value[j] = value_[j][i];
    AddRows(value, local, std::make_index_sequence<kParameters>{});
  }
  sums = local;
}

// Rows k ... n and columns k ... n of the matrix, and the vector, with row k the one of the largest
// element in column k. False when that is 0.
bool BringPivotUp(SSVGaussNewtonLog::Matrix& matrix, SSVGaussNewtonLog::Vector& vector,
                  std::int32_t k, std::int32_t n) {
  std::int32_t pivot = k;
  for (std::int32_t row = k + 1; row <= n; ++row) {
    if (std::fabs(matrix[row][k]) > std::fabs(matrix[pivot][k])) pivot = row;
  }
  if (matrix[pivot][k] == 0) return false;
  if (pivot == k) return true;
  std::swap_ranges(&matrix[k][k], &matrix[k][n] + 1, &matrix[pivot][k]);
  std::swap(vector[k], vector[pivot]);
  return true;
}

}  // namespace

// What one fit needs beside the object's fields.
struct SSVGaussNewtonLog::Workspace {
  Vector step{};
  // J'J, the upper triangle alone: what is below it stays 0, so that the elimination that follows
  // amounts to a back substitution.
  Matrix normal{};
  Vector right{};  // -J'r
  LogBlock block;
};

SSVGaussNewtonLog::SSVGaussNewtonLog() : uniform_(OwnGenerator()) {
  // Blocks are computed whole, so the last one may read (not use) points beyond the capacity.
  constexpr std::size_t kRoom = kMaxPoints + 1 + LogBlock::kPoints;
  for (auto* array : {&GX, &GY, &LY}) array->assign(kRoom, 0.0);
  GW.assign(kRoom, 1.0);
  for (auto* array : {&GFit, &LYSaved}) array->assign(kMaxPoints + 1, 0.0);
}

bool SSVGaussNewtonLog::SetRandom(Uniform uniform) {
  if (!uniform) return false;
  uniform_ = std::move(uniform);
  return true;
}

bool SSVGaussNewtonLog::setGX(std::int32_t i, double value) {
  if (!IsPoint(i)) return false;
  GX[i] = value;
  return true;
}

bool SSVGaussNewtonLog::setGY(std::int32_t i, double value) {
  if (!IsPoint(i)) return false;
  GY[i] = value == 0 ? 1.0 : value;
  return true;
}

bool SSVGaussNewtonLog::setGW(std::int32_t i, double value) {
  if (!IsPoint(i)) return false;
  GW[i] = value;
  return true;
}

bool SSVGaussNewtonLog::setGN(std::int32_t points) {
  if (points < 0 || points > kMaxPoints) return false;
  GN = points;
  return true;
}

bool SSVGaussNewtonLog::setp(std::int32_t i, double value) {
  if (!IsParameter(i)) return false;
  p[i] = value;
  return true;
}

bool SSVGaussNewtonLog::setparanum(std::int32_t parameters) {
  if (parameters != 3 && parameters != 5) return false;
  paranum = parameters;
  return true;
}

double SSVGaussNewtonLog::getGFit(std::int32_t i) const {
  return IsPoint(i) ? GFit[i] : kNotThere;
}

double SSVGaussNewtonLog::getp(std::int32_t i) const {
  return IsParameter(i) ? p[i] : kNotThere;
}

void SSVGaussNewtonLog::SetInitialParameters() {
  const double y1 = GY[1];
  const double yn = GY[GN];
  const double xn = GX[GN];
  p[1] = std::fabs((uniform_() - 0.1) * y1 + y1);
  p[2] = uniform_() * xn * 0.25;
  p[3] = yn - (0.5 - uniform_()) * yn;
  if (paranum != 5) return;
  p[1] = p[1] / 2;
  p[4] = std::fabs((uniform_() - 0.5) * y1 / 1.5 + 0.5 * y1);
  p[5] = (2 * uniform_() + 0.25) * xn;
}

void SSVGaussNewtonLog::GAUSSNEWTONFitting(std::int32_t& iterations) {
  Workspace work;
  xaisqr = 1.0;
  exenum = 0;
  restarts_ = 0;
  divergence = false;
  LogTransform(GY, LY);
  Iterate(work);
  iterations = divergence ? 0 : exenum;
  if (divergence) return;
  for (std::int32_t i = 1; i <= GN; ++i) GFit[i] = p[3] - sgn * std::exp(ModelAt(i));
}

void SSVGaussNewtonLog::Iterate(Workspace& work) {
  while (exenum < kMaxIterations) {
    const double before = xaisqr;
    xaisqr = 0;
    ClearArray(work.normal);
    ClearArray(work.right);
    TakeSteps(work);
    if (!SumPoints(work)) {
      divergence = true;
      return;
    }
    if (std::fabs(1 - xaisqr / before) < kConverged) return;
    if (HasZeroDiagonal(work)) {
      if (restarts_ == kMaxRestarts) return;
      ++restarts_;
      SetInitialParameters();
      exenum = 0;
      // The logarithms stay those of the p3 before: only an update transforms the data anew.
      continue;
    }
    bool ok = false;
    GaussianElimination(work.normal, work.right, paranum, ok);
    Update(work.right);
    ++exenum;
  }
}

// Forward differences step by a share of the parameter, p/8 in the first iteration and p/128 from
// the fifth on.
void SSVGaussNewtonLog::TakeSteps(Workspace& work) const {
  const double divisor = std::ldexp(1.0, std::min(exenum, 4) + 3);
  for (std::int32_t j = 1; j <= paranum; ++j) {
    work.step[j] = p[j] / divisor;
    if (std::fabs(work.step[j]) < kLeastStep) work.step[j] = kLeastStep;
  }
}

// A parameter that is raised by its step and lowered again may come back changed in its last bit,
// but a second time it does not move any more (Reiser and Knuth 1975, Evading the drift in
// floating-point addition). So one point is carried out in full, and from then on everything that
// depends on the parameters alone is the same for all points. That this is so is checked, because
// it fails for parameters that are not finite; such a fit goes on point by point.
bool SSVGaussNewtonLog::SumPoints(Workspace& work) {
  if (GN < 1) return true;
  if (!AddPoint(1, work)) return false;
  const bool steady = StepsComeBack(work);
  for (std::int32_t first = 2; first <= GN; first += LogBlock::kPoints) {
    const std::int32_t count = std::min(GN - first + 1, LogBlock::kPoints);
    if (steady && SumBlock(first, count, work)) continue;
    for (std::int32_t i = first; i < first + count; ++i) {
      if (!AddPoint(i, work)) return false;
    }
  }
  return true;
}

bool SSVGaussNewtonLog::StepsComeBack(const Workspace& work) const {
  for (std::int32_t j = 1; j <= paranum; ++j) {
    const double raised = p[j] + work.step[j];
    if (!SameBits(raised - work.step[j], p[j])) return false;
  }
  return true;
}

// One point, expression by expression. False when something ran away. The residual is made anew for
// each parameter, as raising and lowering the one before may have changed its last bit.
bool SSVGaussNewtonLog::AddPoint(std::int32_t i, Workspace& work) {
  Vector slopes{};
  double residual = 0;
  for (std::int32_t j = 1; j <= paranum; ++j) {
    residual = ResidualAt(i);
    if (i == 1 && j == 3) SaveLogData();  // the logarithms do not change from point to point
    slopes[j] = (PerturbedAt(i, work.step[j], j) - residual) / work.step[j];
    if (std::fabs(residual) >= kMaxResidual) return false;
    xaisqr = xaisqr + residual * residual;
  }
  return xaisqr < kMaxSquares || std::isnan(xaisqr) ? AddProducts(slopes, residual, work) : false;
}

bool SSVGaussNewtonLog::AddProducts(const Vector& slopes, double residual, Workspace& work) const {
  for (std::int32_t j = 1; j <= paranum; ++j) {
    for (std::int32_t k = j; k <= paranum; ++k) {
      if (std::fabs(slopes[j]) >= kMaxSlope || std::fabs(slopes[k]) >= kMaxSlope) return false;
      work.normal[j][k] = work.normal[j][k] + slopes[j] * slopes[k];
    }
    work.right[j] = work.right[j] - residual * slopes[j];
  }
  return true;
}

// The same for a block of points, without looking at each for a runaway. False, and nothing added,
// when the sums show that there may be one (or a NaN, which hides it).
bool SSVGaussNewtonLog::SumBlock(std::int32_t first, std::int32_t count, Workspace& work) {
  const LogBlock::Points points{&GX[first], &GY[first], &GW[first], &LY[first], count};
  LogBlock::Sums sums{xaisqr, work.normal, work.right};
  work.block.Add({p, work.step, sgn, paranum}, points, sums);

  // All terms of these sums are squares: while a sum is below the bound, so was every term and
  // every sum on the way. The bound on a slope's square leaves room for rounding.
  if (!(sums.squares < kMaxSquares)) return false;
  for (std::int32_t j = 1; j <= paranum; ++j) {
    if (!(sums.normal[j][j] < 0.5 * kMaxSlope * kMaxSlope)) return false;
  }
  xaisqr = sums.squares;
  work.normal = sums.normal;
  work.right = sums.right;
  return true;
}

bool SSVGaussNewtonLog::HasZeroDiagonal(const Workspace& work) const {
  for (std::int32_t k = 3; k <= paranum; ++k) {
    if (work.normal[k][k] == 0) return true;
  }
  return false;
}

void SSVGaussNewtonLog::Update(const Vector& change) {
  const auto positive = [&](std::int32_t j) {
    const double next = p[j] + change[j];
    p[j] = next > 0 ? next : p[j] / 2;
  };
  positive(1);
  positive(2);
  p[3] = p[3] + change[3];
  LogTransform(GY, LY);
  if (paranum <= 3) return;
  positive(4);
  positive(5);
  if (p[2] > p[5]) {  // the faster relaxation comes first
    SwapValues(p[1], p[4]);
    SwapValues(p[2], p[5]);
  }
}

void SSVGaussNewtonLog::GaussianElimination(Matrix& matrix, Vector& vector, std::int32_t n,
                                            bool& ok) {
  ok = false;
  if (n < 1 || n > kMaxUnknowns) return;
  for (std::int32_t k = 1; k < n; ++k) {
    if (!BringPivotUp(matrix, vector, k, n)) return;
    const double pivot = matrix[k][k];
    for (std::int32_t row = k + 1; row <= n; ++row) {
      const double factor = matrix[row][k] / pivot;
      vector[row] = vector[row] - factor * vector[k];
      for (std::int32_t c = k; c <= n; ++c) {
        matrix[row][c] = matrix[row][c] - factor * matrix[k][c];
      }
    }
  }
  for (std::int32_t k = n; k >= 1; --k) {
    double known = 0;
    for (std::int32_t c = k + 1; c <= n; ++c) known = known + matrix[k][c] * vector[c];
    vector[k] = (vector[k] - known) / matrix[k][k];
  }
  ok = true;
}

double SSVGaussNewtonLog::Transformed(double y) const {
  const double distance = y - p[3];
  const bool ahead = sgn == -1 ? distance > 0 : sgn == 1 && distance < 0;
  return ahead ? std::log(std::fabs(distance)) : 0;
}

bool SSVGaussNewtonLog::LogTransform(std::span<const double> data, std::span<double> target) {
  if (GN < 1) return true;
  const auto needed = static_cast<std::size_t>(GN) + 1;
  if (data.size() < needed || target.size() < needed) return false;
  sgn = Sign(data[GN] - data[1]);
  for (std::int32_t i = 1; i <= GN; ++i) target[i] = Transformed(data[i]);
  return true;
}

void SSVGaussNewtonLog::SwapValues(double& a, double& b) {
  std::swap(a, b);
}

double SSVGaussNewtonLog::ModelAt(std::int32_t i) const {
  const double x = GX[i];
  const double first = p[1] * std::exp(-x / p[2]);
  if (paranum == 3) return std::log(first);
  return std::log(p[4] * std::exp(-x / p[5]) + first);
}

double SSVGaussNewtonLog::ResidualAt(std::int32_t i) const {
  return (ModelAt(i) - LY[i]) * GW[i];
}

double SSVGaussNewtonLog::PerturbedAt(std::int32_t i, double step, std::int32_t j) {
  p[j] = p[j] + step;
  const double log_data = j == 3 ? Transformed(GY[i]) : LY[i];
  const double value = (ModelAt(i) - log_data) * GW[i];
  p[j] = p[j] - step;
  return value;
}

bool SSVGaussNewtonLog::LogModel(std::int32_t i, double& value) const {
  if (!IsPoint(i)) return false;
  value = ModelAt(i);
  return true;
}

bool SSVGaussNewtonLog::LogResidual(std::int32_t i, double& value) const {
  if (!IsPoint(i)) return false;
  value = ResidualAt(i);
  return true;
}

bool SSVGaussNewtonLog::DirectResidual(std::int32_t i, double& value) const {
  if (!IsPoint(i)) return false;
  value = std::exp(ModelAt(i)) + p[3] - GY[i];
  return true;
}

bool SSVGaussNewtonLog::PerturbedResidual(std::int32_t i, double step, std::int32_t j,
                                          double& value) {
  if (!IsPoint(i) || !IsParameter(j)) return false;
  if (j == 3) {
    SaveLogData();
    if (GN >= 1) sgn = Sign(GY[GN] - GY[1]);
  }
  value = PerturbedAt(i, step, j);
  return true;
}

void SSVGaussNewtonLog::SaveLogData() {
  std::copy_n(LY.begin() + 1, GN, LYSaved.begin() + 1);
}

void SSVGaussNewtonLog::RestoreLogData() {
  std::copy_n(LYSaved.begin() + 1, GN, LY.begin() + 1);
}

void SSVGaussNewtonLog::ClearArray(Vector& array) const {
  std::fill_n(array.begin(), paranum + 1, 0.0);
}

void SSVGaussNewtonLog::ClearArray(Matrix& array) const {
  for (std::int32_t row = 0; row <= paranum; ++row) ClearArray(array[row]);
}

}  // namespace zento
