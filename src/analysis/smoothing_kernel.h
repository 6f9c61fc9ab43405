#pragma once

// The filters' inner loops, sixteen points at a time: the sum of one point is added up in the
// definition's order, beside those of the others. Included by one file for each instruction set
// that it is compiled for, and by nothing else; no function here may be seen by the linker.

#include <cstddef>

#include "analysis/four_doubles.h"
#include "analysis/smoothing_passes.h"

namespace zento {
namespace {

constexpr std::size_t kLanes = kSmoothedAtOnce / 4;

struct Block {
  Four v[kLanes];
};

ZENTO_INLINE void LoadBlock(const double* from, Block& to) {
  for (std::size_t i = 0; i < kLanes; ++i) LoadFour(from + 4 * i, to.v[i]);
}
ZENTO_INLINE void StoreBlock(double* to, const Block& from) {
  for (std::size_t i = 0; i < kLanes; ++i) StoreFour(to + 4 * i, from.v[i]);
}
ZENTO_INLINE void AddTo(Block& sum, const Block& value) {
  for (std::size_t i = 0; i < kLanes; ++i) sum.v[i] = sum.v[i] + value.v[i];
}

// In all of them `y` points to the first value of the window of the first point.

void Average(const double* y, double* out, std::size_t blocks, std::size_t half) {
  const double n = static_cast<double>(2 * half + 1);
  for (std::size_t b = 0; b < blocks; ++b, y += kSmoothedAtOnce, out += kSmoothedAtOnce) {
    Block sum{};
    for (std::size_t k = 0; k <= 2 * half; ++k) {
      Block value;
      LoadBlock(y + k, value);
      AddTo(sum, value);
    }
    for (std::size_t i = 0; i < kLanes; ++i) sum.v[i] = sum.v[i] / n;
    StoreBlock(out, sum);
  }
}

void Weigh(const double* y, double* out, std::size_t blocks, std::size_t half, const double* a,
           double divisor) {
  for (std::size_t b = 0; b < blocks; ++b, y += kSmoothedAtOnce, out += kSmoothedAtOnce) {
    Block sum;
    LoadBlock(y + half, sum);
    for (std::size_t i = 0; i < kLanes; ++i) sum.v[i] = a[0] * sum.v[i];
    for (std::size_t k = 1; k <= half; ++k) {
      Block pair;
      Block right;
      LoadBlock(y + half - k, pair);
      LoadBlock(y + half + k, right);
      AddTo(pair, right);
      for (std::size_t i = 0; i < kLanes; ++i) sum.v[i] = sum.v[i] + a[k] * pair.v[i];
    }
    for (std::size_t i = 0; i < kLanes; ++i) sum.v[i] = sum.v[i] / divisor;
    StoreBlock(out, sum);
  }
}

void Suppress(const double* y, double* out, std::size_t blocks, std::size_t half, double w) {
  const double others = static_cast<double>(2 * half);
  for (std::size_t b = 0; b < blocks; ++b, y += kSmoothedAtOnce, out += kSmoothedAtOnce) {
    Block mean{};
    for (std::size_t k = 0; k <= 2 * half; ++k) {
      if (k == half) continue;
      Block value;
      LoadBlock(y + k, value);
      AddTo(mean, value);
    }
    Block value;
    LoadBlock(y + half, value);
    for (std::size_t i = 0; i < kLanes; ++i) {
      const Four m = mean.v[i] / others;
      const Four deviation = value.v[i] - m;
      const Four d = deviation < 0 ? -deviation : deviation;
      const Four scale = w + d;
      // Without a scale a point that is its neighbours' mean has nothing to be divided by.
      const Four factor = scale == 0 ? Four{} : w / scale;
      value.v[i] = factor * deviation + m;
    }
    StoreBlock(out, value);
  }
}

}  // namespace
}  // namespace zento
