#include "exchange/thinning.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "core/display_range.h"
#include "core/sweeps.h"

namespace zento {
namespace {

struct Step {
  double x = 0;
  double y = 0;
  bool IsNone() const { return x == 0 && y == 0; }
};

Step Between(const PlottedCurve& curve, std::int32_t from, std::int32_t to) {
  const auto a = static_cast<std::size_t>(from);
  const auto b = static_cast<std::size_t>(to);
  return {(curve.x[b] - curve.x[a]) / curve.width, (curve.y[b] - curve.y[a]) / curve.height};
}

// Degrees, 0 to 180; 0 where a step has no direction.
double Turn(const Step& from, const Step& to) {
  if (from.IsNone() || to.IsNone()) return 0;
  const double cross = from.x * to.y - from.y * to.x;
  const double dot = from.x * to.x + from.y * to.y;
  return std::fabs(std::atan2(cross, dot)) * 180 / std::numbers::pi;
}

// One piece between two ends.
class Thinner {
 public:
  Thinner(const PlottedCurve& curve, const Thinning& thinning, std::int32_t first)
      : curve_(curve), thinning_(thinning), kept_(first) {}

  // Called for every point between the ends, one after another.
  bool Keeps(std::int32_t point) {
    // Points that stand still have no direction; the first step away from the kept one gives it.
    if (left_in_.IsNone()) left_in_ = Between(curve_, point - 1, point);
    if (!Stays(point)) return false;
    kept_ = point;
    left_in_ = Between(curve_, point, point + 1);
    return true;
  }

 private:
  bool Stays(std::int32_t point) const {
    if (thinning_.order > 0 && point - kept_ >= thinning_.order) return true;
    if (thinning_.distance > 0) {
      const Step way = Between(curve_, kept_, point);
      if (std::hypot(way.x, way.y) > thinning_.distance) return true;
    }
    return thinning_.angle > 0 &&
           Turn(left_in_, Between(curve_, point, point + 1)) > thinning_.angle;
  }

  const PlottedCurve& curve_;
  const Thinning& thinning_;
  std::int32_t kept_;
  Step left_in_;
};

// A curve without extent has no directions to be seen either.
double ExtentOf(double from, double to) {
  const double extent = std::fabs(to - from);
  return extent > 0 && std::isfinite(extent) ? extent : 1;
}

}  // namespace

std::vector<std::int32_t> ThinnedPoints(const PlottedCurve& curve,
                                        std::span<const std::int32_t> ends,
                                        const Thinning& thinning) {
  std::vector<std::int32_t> kept = {ends.front()};
  for (std::size_t end = 1; end < ends.size(); ++end) {
    Thinner thinner(curve, thinning, ends[end - 1]);
    for (std::int32_t point = ends[end - 1] + 1; point < ends[end]; ++point) {
      if (!thinning.Active() || thinner.Keeps(point)) kept.push_back(point);
    }
    if (ends[end] > kept.back()) kept.push_back(ends[end]);
  }
  return kept;
}

std::vector<std::int32_t> ChosenPoints(TrackStore& tracks, int track, std::optional<int> cycle,
                                       const Thinning& thinning) {
  std::vector<std::int32_t> ends = CycleEnds(tracks, track);
  if (cycle) {
    const auto last =
        static_cast<std::size_t>(std::clamp(*cycle, 1, static_cast<int>(ends.size()) - 1));
    ends = {ends[last - 1], ends[last]};
  }
  const DisplayRange range = RangeOf(tracks, track);
  const PlottedCurve curve{tracks.Points(0, track), tracks.Points(1, track),
                           ExtentOf(range.x_min, range.x_max), ExtentOf(range.y_min, range.y_max)};
  return ThinnedPoints(curve, ends, thinning);
}

}  // namespace zento
