#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zento {

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

}  // namespace zento
