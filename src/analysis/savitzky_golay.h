#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "text/status_fwd.h"

namespace zento {

class Files;

inline constexpr char kSavitzkyGolayFile[] = "Savitzky-Golay.dat";

// The coefficients of one window length, as tabulated by Savitzky and Golay, Anal. Chem. 36 (1964)
// 1627, table I, with the corrections of Steinier, Termonia and Deltour, Anal. Chem. 44 (1972)
// 1906.
struct SavitzkyGolayRow {
  double divisor = 1;
  std::vector<double> a;  // of the centre and of the offsets 1 to m
};

// Row r serves windows of 5 + 2r points.
using SavitzkyGolayTable = std::vector<SavitzkyGolayRow>;
inline constexpr std::size_t kMostSavitzkyGolayRows = 11;

// A row a line: divisor, centre coefficient, then those of the offsets 1 to m = 2 + r, apart by
// commas; empty fields at its end do not count. A line counts only when another one follows. Fails,
// with the number of the line, when a row is not whole, holds something that is no number, or does
// not keep a constant (its coefficients do not add up to the divisor).
Result<SavitzkyGolayTable> ParseSavitzkyGolay(std::string_view bytes);

// Reads the file of that name in the first of the folders that has one. Fails when none has.
Result<SavitzkyGolayTable> ReadSavitzkyGolay(Files& files,
                                             const std::vector<std::filesystem::path>& folders);

}  // namespace zento
