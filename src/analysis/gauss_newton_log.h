#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace zento {

// Fits a relaxation towards a final value,
//   y(x) = p3 - s p1 exp(-x/p2)                            three parameters
//   y(x) = p3 - s (p1 exp(-x/p2) + p4 exp(-x/p5))          five parameters
// with s = sign(y(N) - y(1)), by damped Gauss-Newton steps (A. Bjorck, Numerical Methods for Least
// Squares Problems, 1996, sect. 9.2) with forward differences on the logarithm of the distance from
// p3. p1 and p4 are amplitudes and p3 the final value, in the unit of y; p2 and p5 are time
// constants in the unit of x.
//
// Points and parameters count from 1, as in the formulas. Call setparanum, setGN, setGX/setGY/setGW
// for every point, SetInitialParameters or setp for every parameter, GAUSSNEWTONFitting, then the
// getters. A setter that is handed an index or a number out of range changes nothing and returns
// false; a getter returns NaN.
//
// The arithmetic is fixed to the last bit: every sum in the order of points and every expression in
// its written form, so that a fit can be repeated anywhere with the same exp and log. That includes
// the last bit a parameter may lose when it is raised by its step and lowered again.
//
// A fit takes work proportional to the points in each iteration. For fitting plain arrays see
// FitExponential (analysis/exponential_fit.h), which also says what went wrong.
class SSVGaussNewtonLog {
 public:
  static constexpr std::int32_t kMaxPoints = 40001;
  static constexpr std::int32_t kMaxParameters = 5;
  static constexpr std::int32_t kMaxUnknowns = 6;  // of GaussianElimination
  static constexpr std::int32_t kMaxIterations = 200;
  // How often a fit may draw new start values because the sums vanish for one of p3 ... p5, as they
  // do for ever where both ends of the data are equal.
  static constexpr std::int32_t kMaxRestarts = 100;

  using Vector = std::array<double, kMaxUnknowns + 1>;  // from index 1
  using Matrix = std::array<Vector, kMaxUnknowns + 1>;  // row, column, both from 1
  using Uniform = std::function<double()>;

  // Room for kMaxPoints points on the heap; three parameters, weights 1, everything else 0. The
  // random numbers are a generator of this object's own, the same for every object.
  SSVGaussNewtonLog();

  // Where start values come from: a number in [0, 1) a call. An empty function is refused.
  bool SetRandom(Uniform uniform);

  bool setGX(std::int32_t i, double value);
  // A value of exactly 0 is stored as 1.0.
  bool setGY(std::int32_t i, double value);
  // The weight multiplies the residual, not its square.
  bool setGW(std::int32_t i, double value);
  bool setGN(std::int32_t points);  // 0 ... kMaxPoints
  bool setp(std::int32_t i, double value);
  bool setparanum(std::int32_t parameters);  // 3 or 5

  // The parameter number times the sum of squared weighted residuals, of ln y units, at the start
  // of the last iteration.
  double getxaisqr() const { return xaisqr; }
  // Residuals, their sum of squares or a derivative ran away; the fit then stopped, reports 0
  // iterations and leaves the fitted values alone.
  bool getdivergence() const { return divergence; }
  std::int32_t getexenum() const { return exenum; }
  double getGFit(std::int32_t i) const;
  double getp(std::int32_t i) const;
  // Start values drawn by the last fit; kMaxRestarts means that it gave up drawing. It then ends
  // as it does after kMaxIterations, with the fitted values of its last parameters.
  std::int32_t restarts() const { return restarts_; }

  // Random start values from the ends of the data. Draws r1, r2, r3 for p1, p2, p3, in this order,
  // and with five parameters r4, r5 for p4, p5.
  void SetInitialParameters();

  // Fits from the present parameters. `iterations` is 0 after a divergence.
  void GAUSSNEWTONFitting(std::int32_t& iterations);

  // Solves matrix x = vector for n unknowns (1 ... kMaxUnknowns) in place, with partial pivoting;
  // the solution replaces the vector. Where a pivot is 0, or n out of range, ok is false and the
  // arrays are left as far as they were reduced.
  static void GaussianElimination(Matrix& matrix, Vector& vector, std::int32_t n, bool& ok);

  // target(i) = ln |data(i) - p3| for the points that have not reached p3, coming from the first
  // point's side, and 0 for all others; sets s. Both spans count from 1, so they need N + 1
  // elements; false when they have less. Does nothing without points.
  bool LogTransform(std::span<const double> data, std::span<double> target);

  static void SwapValues(double& a, double& b);

  // ln of the model's distance from p3 at point i. This and the next three return false and leave
  // `value` alone when i is none of the capacity's points, or j none of the parameters'.
  bool LogModel(std::int32_t i, double& value) const;
  // (LogModel - LY(i)) GW(i)
  bool LogResidual(std::int32_t i, double& value) const;
  // exp(LogModel) + p3 - GY(i)
  bool DirectResidual(std::int32_t i, double& value) const;
  // LogResidual with p(j) raised by `step`, and for j = 3 the data transformed anew.
  bool PerturbedResidual(std::int32_t i, double step, std::int32_t j, double& value);

  void SaveLogData();
  void RestoreLogData();

  // Sets elements 0 ... paranum of a vector, or rows and columns 0 ... paranum of a matrix, to 0.
  void ClearArray(Vector& array) const;
  void ClearArray(Matrix& array) const;

 private:
  friend class SSVGaussNewtonLogFields;  // the test's view of all fields
  struct Workspace;

  static bool IsPoint(std::int32_t i) { return i >= 1 && i <= kMaxPoints; }
  static bool IsParameter(std::int32_t j) { return j >= 1 && j <= kMaxParameters; }

  double Transformed(double y) const;
  double ModelAt(std::int32_t i) const;
  double ResidualAt(std::int32_t i) const;
  double PerturbedAt(std::int32_t i, double step, std::int32_t j);

  void Iterate(Workspace& work);
  bool Converged(double before) const;
  void TakeSteps(Workspace& work) const;
  bool SumPoints(Workspace& work);
  bool SumBlock(std::int32_t first, std::int32_t count, Workspace& work);
  bool AddPoint(std::int32_t i, Workspace& work);
  bool AddProducts(const Vector& slopes, double residual, Workspace& work) const;
  bool StepsComeBack(const Workspace& work) const;
  bool HasZeroDiagonal(const Workspace& work) const;
  void Update(const Vector& change);

  std::vector<double> GX, GY, GFit, GW, LY, LYSaved;
  std::array<double, kMaxParameters + 1> p{};
  std::int32_t GN = 0;
  std::int32_t paranum = 3;
  double xaisqr = 0;
  bool divergence = false;
  double sgn = 0;
  std::int32_t exenum = 0;

  std::int32_t restarts_ = 0;
  Uniform uniform_;
};

}  // namespace zento
