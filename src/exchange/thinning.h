#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/track_store.h"

namespace zento {

// Which points of a curve a table does without. A point stays when
//   - the curve turns there: it goes on from it in a direction that differs by more than `angle`
//     from the one in which it left the point kept before,
//   - it lies farther than `distance` from the point kept before, or
//   - it is the `order`-th point after that one.
// 0 switches a rule off; with all of them off every point stays.
struct Thinning {
  double angle = 0;        // degrees
  double distance = 0;     // fractions of the display range
  std::int32_t order = 0;  // points
  bool Active() const { return angle > 0 || distance > 0 || order > 0; }
};

// A curve in a plot. Directions and distances are those in a square plot of the display range.
struct PlottedCurve {
  std::span<const double> x;
  std::span<const double> y;
  double width = 1;  // the display range's, not 0
  double height = 1;
};

// The points that stay, in rising order, of those from `ends.front()` to `ends.back()`; all `ends`,
// which rise, are among them.
std::vector<std::int32_t> ThinnedPoints(const PlottedCurve& curve,
                                        std::span<const std::int32_t> ends,
                                        const Thinning& thinning);

// The points of a track that stay: of one of its cycles (from 1 on, held within the track's), or
// of all.
std::vector<std::int32_t> ChosenPoints(TrackStore& tracks, int track, std::optional<int> cycle,
                                       const Thinning& thinning);

}  // namespace zento
