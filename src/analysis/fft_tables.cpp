#include "analysis/fft_tables.h"

#include <array>
#include <bit>
#include <cmath>
#include <memory>

namespace zento {
namespace {

FftTables::Twiddles EverySecond(const FftTables::Twiddles& all) {
  FftTables::Twiddles some;
  for (std::size_t j = 0; j < all.c.size(); j += 2) {
    some.c.push_back(all.c[j]);
    some.s.push_back(all.s[j]);
  }
  return some;
}

FftTables MakeTables(std::size_t points, bool negative) {
  const double sign = negative ? -1 : 1;
  const double theta = 6.2831853071796 / static_cast<double>(points);
  FftTables tables;
  tables.points = points;
  for (std::size_t j = 0; j < points / 2; ++j) {
    tables.last.c.push_back(std::cos(static_cast<double>(j) * theta));
    tables.last.s.push_back(std::sin(sign * static_cast<double>(j) * theta));
  }
  tables.last_but_one = EverySecond(tables.last);
  const int bits = std::countr_zero(points / 2);
  for (std::size_t b = 0; b < points / 8; ++b) {
    const std::size_t j = ReversedBits(b, bits);
    tables.block.c.push_back(tables.last.c[j]);
    tables.block.s.push_back(tables.last.s[j]);
  }
  return tables;
}

}  // namespace

const FftTables& TablesFor(std::size_t points, bool negative) {
  constexpr std::size_t kBits = 8 * sizeof(std::size_t);
  thread_local std::array<std::unique_ptr<FftTables>, 2 * kBits> kept;
  const auto power = static_cast<std::size_t>(std::countr_zero(points));
  std::unique_ptr<FftTables>& tables = kept[2 * power + (negative ? 1 : 0)];
  if (tables == nullptr) tables = std::make_unique<FftTables>(MakeTables(points, negative));
  return *tables;
}

}  // namespace zento
