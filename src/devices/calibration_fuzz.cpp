#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "devices/rotation.h"

#include "text/status.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zento;
  const auto points = ParseCalibration({reinterpret_cast<const char*>(data), size});
  if (!points.ok()) return 0;
  const auto again = ParseCalibration(FormatCalibration(points.value()));
  if (!again.ok() || again.value() != points.value()) std::abort();
  for (const CalibrationPoint& point : points.value()) {
    for (const double rpm : {point.rpm, point.rpm / 2, point.rpm + 1}) {
      const auto motor = InterpolateCalibration(points.value(), rpm);
      if (!motor || !std::isfinite(motor->rpm)) std::abort();
    }
    if (&point - points.value().data() > 50) break;
  }
  return 0;
}
