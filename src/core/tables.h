#pragma once

#include <array>
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

// The entry, or the one for "none" where a file brought a number that stands for nothing.
template <typename Entry, std::size_t N>
constexpr const Entry& EntryOf(const std::array<Entry, N>& table, std::int32_t index) {
  const auto at = static_cast<std::size_t>(index);
  return at < N ? table[at] : table[0];
}

}  // namespace zento
