#include "core/display_range.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace zento {
namespace {

bool Usable(double from, double to) {
  return std::isfinite(from) && std::isfinite(to) && from != to;
}

// The values' extent, where there is any.
void Cover(std::span<const double> values, double& least, double& most) {
  if (values.empty()) return;
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  least = *low;
  most = *high;
}

}  // namespace

DisplayRange RangeOf(TrackStore& tracks, int track) {
  const TrackRecord& record = tracks.Record(track);
  DisplayRange range{record.Vxmin, record.Vymin, record.Vxmax, record.Vymax};
  if (!Usable(range.x_min, range.x_max)) {
    const bool multi = IsMultichannel(record.Mode);
    Cover(tracks.Points(multi ? 2 : 0, multi ? 0 : track), range.x_min, range.x_max);
  }
  if (!Usable(range.y_min, range.y_max)) {
    Cover(tracks.Points(1, track), range.y_min, range.y_max);
  }
  return range;
}

}  // namespace zento
