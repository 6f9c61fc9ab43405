#pragma once

// The passes of the transform, four points at a time. Included by one file for each instruction set
// that it is compiled for, and by nothing else; no function here may be seen by the linker.
//
// A pass with a given `half` consists of blocks of 2 half points, each with one twiddle, and block
// B of one pass holds blocks 2B and 2B + 1 of the next. Two passes are therefore done in one go
// over the memory, and a block that fits the first-level cache is finished before the next one is
// touched. The last two passes, whose blocks are narrower than four points, take rows of four from
// the four quarters of the array: turned, they are columns of equal index in their block, and what
// comes out of them is what the reordering by reversed bits wants side by side.

#include <cstddef>

#include "analysis/fft_tables.h"
#include "analysis/four_doubles.h"

namespace zento {
namespace {

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

// All passes over a block of `length` points but the last two.
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

// The last two passes and the reordering.
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

#undef ZENTO_INLINE

}  // namespace
}  // namespace zento
