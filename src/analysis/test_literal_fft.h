#pragma once

// The transform as it is defined, step by step: what the fast one must agree with to the last bit,
// and what it is measured against.

#include <cmath>
#include <cstddef>
#include <utility>

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

}  // namespace zento
