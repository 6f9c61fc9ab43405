// Whatever a coefficient file holds, each row of an accepted table is whole and keeps a constant.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "analysis/smoothing.h"
#include "text/status.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zento;
  const auto table =
      ParseSavitzkyGolay(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!table.ok()) return 0;
  if (table->empty() || table->size() > kMostSavitzkyGolayRows) std::abort();
  std::vector<double> out(40);
  for (std::size_t r = 0; r < table->size(); ++r) {
    const SavitzkyGolayRow& row = table.value()[r];
    if (row.a.size() != r + 3 || row.divisor == 0) std::abort();
    const auto points = static_cast<std::int32_t>(5 + 2 * r);
    Smooth(std::vector<double>(40, 1.0), {SmoothingMethod::kSavitzkyGolay, points, row, 0, 0}, out);
    // Coefficients of very different sizes may cancel one another.
    double size_of_sums = 0;
    for (const double a : row.a) size_of_sums += 2 * std::fabs(a / row.divisor);
    if (std::fabs(out[20] - 1) > 2e-4 + 1e-12 * size_of_sums) std::abort();
  }
  return 0;
}
