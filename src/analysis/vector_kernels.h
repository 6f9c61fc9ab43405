#pragma once

// The inner loops of the transform and of the filters, four doubles at once. Included by one file
// for each instruction set that it is compiled for, and by nothing else; no function here may be
// seen by the linker.

#include <cstddef>

#include "analysis/vector_passes.h"

namespace zento {
namespace {

#define ZENTO_INLINE inline __attribute__((always_inline))

using Four = double __attribute__((vector_size(32)));

ZENTO_INLINE void LoadFour(const double* from, Four& to) {
  __builtin_memcpy(&to, from, sizeof to);
}
ZENTO_INLINE void StoreFour(double* to, const Four& from) {
  __builtin_memcpy(to, &from, sizeof from);
}

// The transform.
//
// A pass with a given `half` consists of blocks of 2 half points, each with one twiddle, and block
// B of one pass holds blocks 2B and 2B + 1 of the next. Two passes are therefore done in one go
// over the memory, and a block that fits the first-level cache is finished before the next one is
// touched. The last two passes, whose blocks are narrower than four points, take rows of four from
// the four quarters of the array: turned, they are columns of equal index in their block, and what
// comes out of them is what the reordering by reversed bits wants side by side.

// Points of a block that fits the first-level cache with room for its twiddles.
constexpr std::size_t kCachedPoints = 1024;

struct FourPoints {
  Four re, im;
};

ZENTO_INLINE void LoadPoints(const double* re, const double* im, FourPoints& to) {
  LoadFour(re, to.re);
  LoadFour(im, to.im);
}
ZENTO_INLINE void StorePoints(double* re, double* im, const FourPoints& from) {
  StoreFour(re, from.re);
  StoreFour(im, from.im);
}

// The same twiddle for all four.
ZENTO_INLINE void Spread(const FftTables::Twiddles& table, std::size_t at, FourPoints& to) {
  const double c = table.c[at];
  const double s = table.s[at];
  to.re = Four{c, c, c, c};
  to.im = Four{s, s, s, s};
}

ZENTO_INLINE void Butterfly(FourPoints& upper, FourPoints& lower, const FourPoints& twiddle) {
  const Four re = twiddle.re * lower.re - twiddle.im * lower.im;
  const Four im = twiddle.im * lower.re + twiddle.re * lower.im;
  lower.re = upper.re - re;
  lower.im = upper.im - im;
  upper.re = upper.re + re;
  upper.im = upper.im + im;
}

// Rows become columns.
ZENTO_INLINE void Turn(Four& a, Four& b, Four& c, Four& d) {
  const Four ab_even = __builtin_shufflevector(a, b, 0, 4, 2, 6);
  const Four ab_odd = __builtin_shufflevector(a, b, 1, 5, 3, 7);
  const Four cd_even = __builtin_shufflevector(c, d, 0, 4, 2, 6);
  const Four cd_odd = __builtin_shufflevector(c, d, 1, 5, 3, 7);
  a = __builtin_shufflevector(ab_even, cd_even, 0, 1, 4, 5);
  b = __builtin_shufflevector(ab_odd, cd_odd, 0, 1, 4, 5);
  c = __builtin_shufflevector(ab_even, cd_even, 2, 3, 6, 7);
  d = __builtin_shufflevector(ab_odd, cd_odd, 2, 3, 6, 7);
}

// One pass over a block of eight points.
ZENTO_INLINE void PassOfEight(double* re, double* im, std::size_t block, const FftTables& tables) {
  FourPoints twiddle, upper, lower;
  Spread(tables.block, block, twiddle);
  LoadPoints(re, im, upper);
  LoadPoints(re + 4, im + 4, lower);
  Butterfly(upper, lower, twiddle);
  StorePoints(re, im, upper);
  StorePoints(re + 4, im + 4, lower);
}

// Two passes over a block of four quarters; a quarter is at least four points.
ZENTO_INLINE void TwoPasses(double* re, double* im, std::size_t quarter, std::size_t block,
                            const FftTables& tables) {
  FourPoints whole, first, second;
  Spread(tables.block, block, whole);
  Spread(tables.block, 2 * block, first);
  Spread(tables.block, 2 * block + 1, second);
  for (std::size_t i = 0; i < quarter; i += 4) {
    FourPoints a, b, c, d;
    LoadPoints(re + i, im + i, a);
    LoadPoints(re + quarter + i, im + quarter + i, b);
    LoadPoints(re + 2 * quarter + i, im + 2 * quarter + i, c);
    LoadPoints(re + 3 * quarter + i, im + 3 * quarter + i, d);
    Butterfly(a, c, whole);
    Butterfly(b, d, whole);
    Butterfly(a, b, first);
    Butterfly(c, d, second);
    StorePoints(re + i, im + i, a);
    StorePoints(re + quarter + i, im + quarter + i, b);
    StorePoints(re + 2 * quarter + i, im + 2 * quarter + i, c);
    StorePoints(re + 3 * quarter + i, im + 3 * quarter + i, d);
  }
}

// All passes over a block of `length` points but the last two. `block` is its number in the pass
// that begins with it; a quarter of it is number 4 block + i two passes later.
void WidePasses(double* re, double* im, std::size_t length, std::size_t block,
                const FftTables& tables) {
  if (length > kCachedPoints) {
    const std::size_t quarter = length / 4;
    TwoPasses(re, im, quarter, block, tables);
    for (std::size_t i = 0; i < 4; ++i) {
      WidePasses(re + i * quarter, im + i * quarter, quarter, 4 * block + i, tables);
    }
    return;
  }
  std::size_t blocks = 1;
  for (; length >= 16; length /= 4, blocks *= 4) {
    for (std::size_t i = 0; i < blocks; ++i) {
      TwoPasses(re + i * length, im + i * length, length / 4, block * blocks + i, tables);
    }
  }
  if (length != 8) return;
  for (std::size_t i = 0; i < blocks; ++i) {
    PassOfEight(re + i * 8, im + i * 8, block * blocks + i, tables);
  }
}

// Sixteen points: four rows of four neighbours, one from each quarter of the array.
struct Tile {
  FourPoints row[4];
};

// The order in which quarters are read and written: 0 to 3 with their two bits reversed.
constexpr std::size_t kQuarter[4] = {0, 2, 1, 3};

ZENTO_INLINE void LoadTile(const double* re, const double* im, std::size_t quarter, Tile& tile) {
  for (std::size_t i = 0; i < 4; ++i) {
    LoadPoints(re + kQuarter[i] * quarter, im + kQuarter[i] * quarter, tile.row[i]);
  }
}

// The last two passes over a tile, whose place in the quarters is 4 times `mid`. `at` is 4 times
// `mid` with its bits reversed: where the tile's twiddles stand, and where its points belong.
ZENTO_INLINE void FinishTile(Tile& tile, double* re, double* im, std::size_t quarter,
                             std::size_t at, const FftTables& tables, double factor) {
  FourPoints& a = tile.row[0];
  FourPoints& b = tile.row[1];
  FourPoints& c = tile.row[2];
  FourPoints& d = tile.row[3];
  Turn(a.re, b.re, c.re, d.re);
  Turn(a.im, b.im, c.im, d.im);
  FourPoints twiddle;
  LoadPoints(&tables.last_but_one.c[at], &tables.last_but_one.s[at], twiddle);
  Butterfly(a, c, twiddle);
  Butterfly(b, d, twiddle);
  LoadPoints(&tables.last.c[at], &tables.last.s[at], twiddle);
  Butterfly(a, b, twiddle);
  LoadPoints(&tables.last.c[quarter + at], &tables.last.s[quarter + at], twiddle);
  Butterfly(c, d, twiddle);
  const Four factors = {factor, factor, factor, factor};
  for (std::size_t i = 0; i < 4; ++i) {
    FourPoints& row = tile.row[i];
    row.re = row.re * factors;
    row.im = row.im * factors;
    StorePoints(re + kQuarter[i] * quarter + at, im + kQuarter[i] * quarter + at, row);
  }
}

// The last two passes and the reordering. What tile `mid` becomes belongs where the tile `reversed`
// stands, and the other way round: both are loaded before either is stored, once for each pair.
void NarrowPasses(double* re, double* im, const FftTables& tables, double factor) {
  const std::size_t quarter = tables.points / 4;
  std::size_t reversed = 0;
  for (std::size_t mid = 0; mid < quarter; mid += 4) {
    if (mid <= reversed) {
      Tile tile;
      LoadTile(re + mid, im + mid, quarter, tile);
      if (mid < reversed) {
        Tile partner;
        LoadTile(re + reversed, im + reversed, quarter, partner);
        FinishTile(partner, re, im, quarter, mid, tables, factor);
      }
      FinishTile(tile, re, im, quarter, reversed, tables, factor);
    }
    // Counts on from the highest bit.
    std::size_t bit = quarter / 2;
    for (; bit >= 4 && (reversed & bit) != 0; bit /= 2) reversed ^= bit;
    reversed |= bit >= 4 ? bit : 0;
  }
}

ZENTO_INLINE void AllPasses(double* re, double* im, const FftTables& tables, double factor) {
  WidePasses(re, im, tables.points, 0, tables);
  NarrowPasses(re, im, tables, factor);
}

// The filters: sixteen points at a time. The sum of one point is added up in the definition's
// order, beside those of the others.

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

#undef ZENTO_INLINE

}  // namespace
}  // namespace zento
