#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/modes.h"

// What the windows show for the numbers in a track.

namespace zento {

// Index 0 stands for none. UnitFactor turns amperes into the unit of the same index.
inline constexpr int kUnits = 5;
inline constexpr std::array<std::string_view, kUnits> UnitName = {" ", "A", "mA", "μA", "nA"};
inline constexpr std::array<std::string_view, kUnits> UnitFactor = {"0", "1", "1e+3", "1e+6",
                                                                    "1e+9"};

// Index 0 stands for none. Potentials in V against SHE; that of RHE depends on the pH.
inline constexpr int kReferences = 5;
inline constexpr std::int32_t kReferenceRHE = 4;
inline constexpr std::array<std::string_view, kReferences> RefName = {"", "SHE", "Ag|AgCl|sat.",
                                                                      "SCE", "RHE"};
inline constexpr std::array<double, kReferences> RefPotential = {0, 0, 0.199, 0.241, 0};

// What stands at the index; where a file brought a number that stands for nothing, what stands for
// none.
template <typename Value, std::size_t N>
constexpr const Value& AtOrNone(const std::array<Value, N>& table, std::int32_t index) {
  const auto at = static_cast<std::size_t>(index);
  return at < N ? table[at] : table[0];
}

// The grid step of an axis from a to b: 1, 2 or 5 times a power of ten, so that the range is cut
// into 4 to 10 pieces. 1 for an empty range.
inline double TickStep(double a, double b) {
  const double half = std::fabs(b - a) / 2;
  if (!(half > 0) || !std::isfinite(half)) return 1;
  double step = std::pow(10.0, std::floor(std::log10(half)));
  if (half / step > 5) step = 2 * step;
  if (half / step < 2) step = step / 2;
  return step;
}

}  // namespace zento
