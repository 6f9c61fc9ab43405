#include "analysis/gauss_newton_log_block.h"

#include <cmath>
#include <utility>

namespace zento {

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

namespace {

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

}  // namespace

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

}  // namespace zento
