#pragma once

// Transform, filters, oxygen evaluation and exponential fit as they are defined, step by step and
// with nothing saved: what the quick ones must agree with to the last bit, and what the benchmarks
// measure them against.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "analysis/oxygen.h"
#include "analysis/smoothing.h"

namespace zento {

inline void LiteralFft(double* re, double* im, long N, double sign) {
  const double theta = 6.2831853071796 / static_cast<double>(N);
  for (long half = N / 2; half >= 1; half /= 2) {
    long j = 0;
    for (long b = 0; b <= N - 1; b += 2 * half) {
      const double c = std::cos(static_cast<double>(j) * theta);
      const double s = std::sin(sign * static_cast<double>(j) * theta);
      for (long i = b; i <= b + half - 1; ++i) {
        const long k = i + half;
        const double tr = c * re[k] - s * im[k];
        const double ti = s * re[k] + c * im[k];
        re[k] = re[i] - tr;
        im[k] = im[i] - ti;
        re[i] = re[i] + tr;
        im[i] = im[i] + ti;
      }
      long m = N / 4;
      while (m >= 1 && m <= j) {
        j -= m;
        m /= 2;
      }
      j += m;
    }
  }
  if (sign < 0) {
    for (long i = 0; i < N; ++i) {
      re[i] /= static_cast<double>(N);
      im[i] /= static_cast<double>(N);
    }
  }
  long j = 0;
  for (long i = 0; i <= N - 2; ++i) {
    if (i <= j) {
      std::swap(re[i], re[j]);
      std::swap(im[i], im[j]);
    }
    long m = N / 2;
    while (m >= 1 && m <= j) {
      j -= m;
      m /= 2;
    }
    j += m;
  }
}

// The definition of SSVGaussNewtonLog written down as plainly as it can be, with nothing saved:
// each value is computed where it is needed, and raising p3 transforms every point for every point.
// What the quick fit is held against, in the tests bit for bit and in the benchmarks for time.
struct LiteralFit {
  std::vector<double> GX, GY, GFit, GW, LY, LYSaved;
  int GN = 0;
  double xaisqr = 0;
  bool divergence = false;
  std::array<double, 7> p{};
  int paranum = 3;
  double sgn = 0;
  int exenum = 0;
  int restarts = 0;
  int max_restarts = 0;
  std::function<double()> random;

  explicit LiteralFit(std::size_t room)
      : GX(room), GY(room), GFit(room), GW(room, 1.0), LY(room), LYSaved(room) {}

  void LogTransform(const std::vector<double>& data, std::vector<double>& target) {
    if (GN < 1) return;
    const double rise = data[GN] - data[1];
    sgn = rise > 0 ? 1 : rise < 0 ? -1 : 0;
    for (int i = 1; i <= GN; ++i) {
      const double d = data[i] - p[3];
      target[i] = 0;
      if ((sgn == -1 && d > 0) || (sgn == 1 && d < 0)) target[i] = std::log(std::fabs(d));
    }
  }

  double LogModel(int i) const {
    const double x = GX[i];
    if (paranum == 3) return std::log(p[1] * std::exp(-x / p[2]));
    return std::log(p[4] * std::exp(-x / p[5]) + p[1] * std::exp(-x / p[2]));
  }

  double LogResidual(int i) const { return (LogModel(i) - LY[i]) * GW[i]; }

  double PerturbedResidual(int i, double h, int j) {
    p[j] = p[j] + h;
    if (j == 3) {
      for (int k = 1; k <= GN; ++k) LYSaved[k] = LY[k];
      LogTransform(GY, LY);
    }
    const double value = LogResidual(i);
    p[j] = p[j] - h;
    if (j == 3) {
      for (int k = 1; k <= GN; ++k) LY[k] = LYSaved[k];
    }
    return value;
  }

  void SetInitialParameters() {
    const double r1 = random();
    p[1] = std::fabs((r1 - 0.1) * GY[1] + GY[1]);
    const double r2 = random();
    p[2] = r2 * GX[GN] * 0.25;
    const double r3 = random();
    p[3] = GY[GN] - (0.5 - r3) * GY[GN];
    if (paranum == 5) {
      p[1] = p[1] / 2;
      const double r4 = random();
      p[4] = std::fabs((r4 - 0.5) * GY[1] / 1.5 + 0.5 * GY[1]);
      const double r5 = random();
      p[5] = (2 * r5 + 0.25) * GX[GN];
    }
  }

  int Fit() {
    xaisqr = 1.0;
    exenum = 0;
    divergence = false;
    restarts = 0;
    LogTransform(GY, LY);
    double t[7][7];
    double g[7];
    while (exenum < 200) {
      const double old = xaisqr;
      xaisqr = 0;
      for (int j = 0; j < 7; ++j) {
        g[j] = 0;
        for (int k = 0; k < 7; ++k) t[j][k] = 0;
      }
      double h[7];
      const int e = exenum < 4 ? exenum : 4;
      for (int j = 1; j <= paranum; ++j) {
        h[j] = p[j] / std::pow(2.0, e + 3);
        if (std::fabs(h[j]) < 1e-50) h[j] = 1e-50;
      }
      for (int i = 1; i <= GN; ++i) {
        double jacobian[7];
        double r = 0;
        for (int j = 1; j <= paranum; ++j) {
          r = LogResidual(i);
          jacobian[j] = (PerturbedResidual(i, h[j], j) - r) / h[j];
          if (std::fabs(r) >= 1e100) return Diverge();
          xaisqr = xaisqr + r * r;
        }
        if (xaisqr >= 1e50) return Diverge();
        for (int j = 1; j <= paranum; ++j) {
          for (int k = j; k <= paranum; ++k) {
            if (std::fabs(jacobian[j]) >= 1e50 || std::fabs(jacobian[k]) >= 1e50) return Diverge();
            t[j][k] = t[j][k] + jacobian[j] * jacobian[k];
          }
          g[j] = g[j] - r * jacobian[j];
        }
      }
      if (std::fabs(1 - xaisqr / old) < 0.001) break;
      bool zero = false;
      for (int k = 3; k <= paranum; ++k) zero = zero || t[k][k] == 0;
      if (zero) {
        if (restarts == max_restarts) break;
        ++restarts;
        SetInitialParameters();
        exenum = 0;
        continue;
      }
      Solve(t, g, paranum);
      Update(g);
      exenum = exenum + 1;
    }
    for (int i = 1; i <= GN; ++i) GFit[i] = p[3] - sgn * std::exp(LogModel(i));
    return exenum;
  }

 private:
  int Diverge() {
    divergence = true;
    return 0;
  }

  void Update(const double g[7]) {
    p[1] = p[1] + g[1] > 0 ? p[1] + g[1] : p[1] / 2;
    p[2] = p[2] + g[2] > 0 ? p[2] + g[2] : p[2] / 2;
    p[3] = p[3] + g[3];
    LogTransform(GY, LY);
    if (paranum > 3) {
      p[4] = p[4] + g[4] > 0 ? p[4] + g[4] : p[4] / 2;
      p[5] = p[5] + g[5] > 0 ? p[5] + g[5] : p[5] / 2;
      if (p[2] > p[5]) {
        std::swap(p[1], p[4]);
        std::swap(p[2], p[5]);
      }
    }
  }

  static bool Solve(double a[7][7], double b[7], int n) {
    for (int k = 1; k <= n - 1; ++k) {
      int best = k;
      for (int row = k; row <= n; ++row) {
        if (std::fabs(a[row][k]) > std::fabs(a[best][k])) best = row;
      }
      if (a[best][k] == 0) return false;
      if (best != k) {
        for (int c = k; c <= n; ++c) std::swap(a[k][c], a[best][c]);
        std::swap(b[k], b[best]);
      }
      const double pivot = a[k][k];
      for (int m = k + 1; m <= n; ++m) {
        const double f = a[m][k] / pivot;
        b[m] = b[m] - f * b[k];
        for (int c = k; c <= n; ++c) a[m][c] = a[m][c] - f * a[k][c];
      }
    }
    for (int k = n; k >= 1; --k) {
      double sum = 0;
      for (int c = k + 1; c <= n; ++c) sum = sum + a[k][c] * b[c];
      b[k] = (b[k] - sum) / a[k][k];
    }
    return true;
  }
};

inline OxygenShares LiteralOxygen(std::span<const double> x, std::span<const double> disk,
                                  std::span<const double> ring,
                                  const std::array<double, 3>& vertices,
                                  const OxygenSettings& settings) {
  OxygenShares shares;
  const double width = settings.half_width;
  std::size_t q = 0;
  for (std::size_t segment = 0; segment < 2; ++segment) {
    const double start = vertices[segment];
    const double end = vertices[segment + 1];
    const double d = end - start > 0 ? 1 : -1;
    const double step = settings.step * d;
    for (double e = start; d > 0 ? e <= end : e >= end; e += step) {
      double sum_x = 0, sum_disk = 0, sum_ring = 0;
      std::size_t n = 0, next = 0;
      bool found = false;
      std::size_t p = q;
      for (; p < x.size(); ++p) {
        if (d > 0) {
          if (x[p] <= e - width) continue;
          if (!found && x[p] > e + settings.step - width) {
            found = true;
            next = p;
          }
          if (x[p] >= e + width) break;
        } else {
          if (x[p] >= e + width) continue;
          if (!found && x[p] <= e - settings.step + width) {
            found = true;
            next = p;
          }
          if (x[p] <= e - width) break;
        }
        sum_x += x[p];
        sum_disk += disk[p];
        sum_ring += ring[p];
        ++n;
      }
      q = found ? next : p;
      if (n == 0) continue;
      const auto count = static_cast<double>(n);
      const double id = std::fabs(sum_disk / count);
      const double ir = std::fabs(sum_ring / count);
      if (id == 0 && ir == 0) continue;
      shares.potential.push_back(sum_x / count);
      shares.disk.push_back(id);
      shares.ring.push_back(ir);
      shares.water.push_back((id - ir / settings.collection) / (ir / settings.collection + id) *
                             100);
    }
  }
  return shares;
}

// The filters as they are defined, one sum a point. For tests and as a peer of benchmarks.
inline std::vector<double> LiteralSmooth(const std::vector<double>& y, const Smoothing& s) {
  const auto end = static_cast<long>(y.size()) - 1;
  const auto at = [&](long q) { return y[static_cast<std::size_t>(std::clamp(q, 0L, end))]; };
  const long half = s.points / 2;
  std::vector<double> out(y.size());
  for (long p = 0; p <= end; ++p) {
    double& result = out[static_cast<std::size_t>(p)];
    double sum = 0;
    if (s.method == SmoothingMethod::kMovingAverage) {
      for (long k = -half; k <= half; ++k) sum += at(p + k);
      result = sum / s.points;
    } else if (s.method == SmoothingMethod::kSavitzkyGolay) {
      sum = s.row.a[0] * at(p);
      for (long k = 1; k <= half; ++k) {
        sum += s.row.a[static_cast<std::size_t>(k)] * (at(p - k) + at(p + k));
      }
      result = sum / s.row.divisor;
    } else if (p == 0) {
      result = at(p);
    } else {
      for (long k = -half; k <= half; ++k) {
        if (k != 0) sum += at(p + k);
      }
      const double m = sum / (s.points - 1);
      const double d = std::fabs(at(p) - m);
      result = s.w + d == 0 ? m : s.w / (s.w + d) * (at(p) - m) + m;
    }
  }
  for (long p = 0; p <= end && s.skip > 0; ++p) {
    if (p <= s.skip || p >= end - s.skip) out[static_cast<std::size_t>(p)] = at(p);
  }
  return out;
}

}  // namespace zento
