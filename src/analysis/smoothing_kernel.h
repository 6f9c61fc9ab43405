#pragma once

// The filters' inner loops, sixteen points at a time: the sum of one point is added up in the
// definition's order, beside those of the others. Included by one file for each instruction set
// that it is compiled for, and by nothing else; no function here may be seen by the linker.

#include <cstddef>

#include "analysis/four_doubles.h"
#include "analysis/smoothing_passes.h"

namespace zento {
namespace {

// Named, not an array: they have to stay in registers.
struct Block {
  Four a, b, c, d;
};

ZENTO_INLINE void LoadBlock(const double* from, Block& to) {
  LoadFour(from, to.a);
  LoadFour(from + 4, to.b);
  LoadFour(from + 8, to.c);
  LoadFour(from + 12, to.d);
}
ZENTO_INLINE void StoreBlock(double* to, const Block& from) {
  StoreFour(to, from.a);
  StoreFour(to + 4, from.b);
  StoreFour(to + 8, from.c);
  StoreFour(to + 12, from.d);
}
ZENTO_INLINE void Add(Block& sum, const Block& value) {
  sum.a = sum.a + value.a;
  sum.b = sum.b + value.b;
  sum.c = sum.c + value.c;
  sum.d = sum.d + value.d;
}
ZENTO_INLINE void Multiply(Block& block, double factor) {
  block.a = factor * block.a;
  block.b = factor * block.b;
  block.c = factor * block.c;
  block.d = factor * block.d;
}
ZENTO_INLINE void Divide(Block& block, double divisor) {
  block.a = block.a / divisor;
  block.b = block.b / divisor;
  block.c = block.c / divisor;
  block.d = block.d / divisor;
}
// `value` becomes w / (w + d) (value - mean) + mean with d = |value - mean|.
ZENTO_INLINE void PullTowards(Four& value, const Four& mean, double w) {
  const Four deviation = value - mean;
  const Four scale = w + (deviation < 0 ? -deviation : deviation);
  // Without a scale a point that is its neighbours' mean has nothing to be divided by.
  const Four factor = scale == 0 ? Four{} : w / scale;
  value = factor * deviation + mean;
}

// In all of them `y` points to the first value of the window of the first point.

void Average(const double* y, double* out, std::size_t blocks, std::size_t half) {
  const double n = static_cast<double>(2 * half + 1);
  for (std::size_t b = 0; b < blocks; ++b, y += kSmoothedAtOnce, out += kSmoothedAtOnce) {
    Block sum{};
    for (std::size_t k = 0; k <= 2 * half; ++k) {
      Block value;
      LoadBlock(y + k, value);
      Add(sum, value);
    }
    Divide(sum, n);
    StoreBlock(out, sum);
  }
}

void Weigh(const double* y, double* out, std::size_t blocks, std::size_t half, const double* a,
           double divisor) {
  for (std::size_t b = 0; b < blocks; ++b, y += kSmoothedAtOnce, out += kSmoothedAtOnce) {
    Block sum;
    LoadBlock(y + half, sum);
    Multiply(sum, a[0]);
    for (std::size_t k = 1; k <= half; ++k) {
      Block pair;
      Block right;
      LoadBlock(y + half - k, pair);
      LoadBlock(y + half + k, right);
      Add(pair, right);
      Multiply(pair, a[k]);
      Add(sum, pair);
    }
    Divide(sum, divisor);
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
      Add(mean, value);
    }
    Block value;
    LoadBlock(y + half, value);
    Divide(mean, others);
    PullTowards(value.a, mean.a, w);
    PullTowards(value.b, mean.b, w);
    PullTowards(value.c, mean.c, w);
    PullTowards(value.d, mean.d, w);
    StoreBlock(out, value);
  }
}

}  // namespace
}  // namespace zento
