// The exponential fit of 1000 points, time per iteration: beside the same definition carried out
// literally (which transforms all points anew for each point), and beside GSL's nonlinear least
// squares on the same points, weights and start values with an analytic Jacobian.
//
// An iteration of ours is one pass over the points with its update; all of a fit is counted, its
// preparation and the fitted values too. An iteration of GSL's is a call of
// gsl_multifit_nlinear_iterate alone, which evaluates the model at least once and the Jacobian
// once.

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <random>
#include <vector>

#ifdef ZENTO_GSL
#include <gsl/gsl_multifit_nlinear.h>
#endif

#include "analysis/gauss_newton_log.h"
#include "analysis/test_definitions.h"
#include "core/settings.h"

namespace {

using namespace zento;

struct Data {
  std::vector<double> x, y, weight;
  std::array<double, 5> start;
};

// A current that relaxes to 5 uA in some seconds, with 0.2 % noise; x in s, y in A. Weighted by the
// distance from the final value, which keeps the logarithm's noisy end from ruling the fit.
Data Relaxation(int parameters, std::size_t points) {
  std::mt19937 random(7);
  std::normal_distribution<double> noise(0, 1e-8);
  Data data;
  for (std::size_t i = 0; i < points; ++i) {
    const double x = 10.0 * static_cast<double>(i) / static_cast<double>(points);
    double distance = 3e-6 * std::exp(-x / 0.8);
    if (parameters == 5) distance += 2e-6 * std::exp(-x / 4.0);
    data.x.push_back(x);
    data.y.push_back(5e-6 - distance + noise(random));
    data.weight.push_back(distance / 5e-6);
  }
  data.start = {2e-6, 0.5, 5.1e-6, 2.5e-6, 6};
  return data;
}

constexpr std::size_t kPoints = 1000;

template <typename Fit>
void Load(Fit& fit, const Data& data) {
  for (std::size_t i = 0; i < data.x.size(); ++i) {
    const auto point = static_cast<std::int32_t>(i) + 1;
    fit.setGX(point, data.x[i]);
    fit.setGY(point, data.y[i]);
    fit.setGW(point, data.weight[i]);
  }
}

void ReportPasses(benchmark::State& state, double passes_a_fit) {
  state.counters["passes"] = passes_a_fit;
  state.counters["time/iteration"] = benchmark::Counter(
      passes_a_fit, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void ClassFit(benchmark::State& state) {
  const int parameters = static_cast<int>(state.range(0));
  const Data data = Relaxation(parameters, static_cast<std::size_t>(state.range(1)));
  SSVGaussNewtonLog fit;
  fit.setparanum(parameters);
  fit.setGN(static_cast<std::int32_t>(data.x.size()));
  Load(fit, data);
  std::int32_t iterations = 0;
  for (auto _ : state) {
    for (int j = 1; j <= parameters; ++j) fit.setp(j, data.start[j - 1]);
    fit.GAUSSNEWTONFitting(iterations);
    benchmark::DoNotOptimize(fit.getp(1));
  }
  if (fit.getdivergence() || iterations == 0) state.SkipWithError("diverged");
  // The pass that finds the sums unchanged is no iteration, but takes the time of one.
  const bool ran_out = iterations == SSVGaussNewtonLog::kMaxIterations;
  ReportPasses(state, iterations + (ran_out ? 0 : 1));
}
BENCHMARK(ClassFit)->ArgsProduct({{3, 5}, {kPoints, 40001}})->Unit(benchmark::kMicrosecond);

void LiteralDoublePerturbation(benchmark::State& state) {
  const int parameters = static_cast<int>(state.range(0));
  const Data data = Relaxation(parameters, kPoints);
  LiteralFit fit(kPoints + 1);
  fit.paranum = parameters;
  fit.GN = static_cast<int>(kPoints);
  for (std::size_t i = 0; i < kPoints; ++i) {
    fit.GX[i + 1] = data.x[i];
    fit.GY[i + 1] = data.y[i];
    fit.GW[i + 1] = data.weight[i];
  }
  int iterations = 0;
  for (auto _ : state) {
    for (int j = 1; j <= parameters; ++j) fit.p[j] = data.start[j - 1];
    iterations = fit.Fit();
    benchmark::DoNotOptimize(fit.p[1]);
  }
  ReportPasses(state, iterations + (iterations == 200 ? 0 : 1));
}
BENCHMARK(LiteralDoublePerturbation)->Arg(3)->Arg(5)->Unit(benchmark::kMicrosecond);

#ifdef ZENTO_GSL

struct GslModel {
  const Data& data;
  int parameters;
};

int GslResiduals(const gsl_vector* v, void* user, gsl_vector* out) {
  const auto& [data, parameters] = *static_cast<const GslModel*>(user);
  const double* p = v->data;
  for (std::size_t i = 0; i < data.x.size(); ++i) {
    double distance = p[0] * std::exp(-data.x[i] / p[1]);
    if (parameters == 5) distance += p[3] * std::exp(-data.x[i] / p[4]);
    gsl_vector_set(out, i, p[2] - distance - data.y[i]);
  }
  return GSL_SUCCESS;
}

int GslJacobian(const gsl_vector* v, void* user, gsl_matrix* out) {
  const auto& [data, parameters] = *static_cast<const GslModel*>(user);
  const double* p = v->data;
  for (std::size_t i = 0; i < data.x.size(); ++i) {
    const double x = data.x[i];
    const double fast = std::exp(-x / p[1]);
    double* row = gsl_matrix_ptr(out, i, 0);
    row[0] = -fast;
    row[1] = -p[0] * fast * x / (p[1] * p[1]);
    row[2] = 1;
    if (parameters == 5) {
      const double slow = std::exp(-x / p[4]);
      row[3] = -slow;
      row[4] = -p[3] * slow * x / (p[4] * p[4]);
    }
  }
  return GSL_SUCCESS;
}

// Levenberg-Marquardt; its default solver (QR), and the faster, less robust Cholesky.
void Gsl(benchmark::State& state, const gsl_multifit_nlinear_solver* solver) {
  const int parameters = static_cast<int>(state.range(0));
  const Data data = Relaxation(parameters, kPoints);
  const auto n = static_cast<std::size_t>(parameters);
  GslModel model{data, parameters};
  gsl_multifit_nlinear_fdf fdf{GslResiduals, GslJacobian, nullptr, kPoints, n, &model, 0, 0, 0};
  auto settings = gsl_multifit_nlinear_default_parameters();
  settings.solver = solver;
  auto* work = gsl_multifit_nlinear_alloc(gsl_multifit_nlinear_trust, &settings, kPoints, n);
  const auto start = gsl_vector_const_view_array(data.start.data(), n);
  const auto weights = gsl_vector_const_view_array(data.weight.data(), kPoints);
  constexpr int kIterations = 4;
  for (auto _ : state) {
    state.PauseTiming();
    gsl_multifit_nlinear_winit(&start.vector, &weights.vector, &fdf, work);
    state.ResumeTiming();
    for (int i = 0; i < kIterations; ++i) gsl_multifit_nlinear_iterate(work);
  }
  ReportPasses(state, kIterations);
  gsl_multifit_nlinear_free(work);
}

void GslQr(benchmark::State& state) {
  Gsl(state, gsl_multifit_nlinear_solver_qr);
}
void GslCholesky(benchmark::State& state) {
  Gsl(state, gsl_multifit_nlinear_solver_cholesky);
}
BENCHMARK(GslQr)->Arg(3)->Arg(5)->Unit(benchmark::kMicrosecond);
BENCHMARK(GslCholesky)->Arg(3)->Arg(5)->Unit(benchmark::kMicrosecond);

#endif

}  // namespace
