#include "analysis/track_sum.h"

#include <algorithm>
#include <cmath>

#include "core/sweeps.h"
#include "core/track_store.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::size_t kMostSweeps = 1000;

double ToThreeDecimals(double x) {
  return RoundHalfEven(x * 1000);
}

// The first point from `search` + 1 on that is no nearer to `x` than the one before it: the point
// behind the nearest one. An x just before its nearest point is therefore read off the interval
// behind that, at most half an interval beyond its end.
std::size_t Match(double x, std::span<const double> xs, std::size_t search) {
  double before = std::fabs(x - xs[search]);
  for (std::size_t j = search + 1; j + 2 <= xs.size(); ++j) {
    const double distance = std::fabs(x - xs[j]);
    if (distance >= before) return j;
    before = distance;
  }
  return xs.size() - 1;
}

// Through points j - 1 and j.
double Interpolate(double at, std::span<const double> x, std::span<const double> y, std::size_t j) {
  const double width = x[j] - x[j - 1];
  if (width == 0) return y[j];
  return (y[j] - y[j - 1]) / width * (at - x[j - 1]) + y[j - 1];
}

}  // namespace

std::string TrackSumTitle(const TrackSumTerms& terms, int track_a, int track_b) {
  std::string title = "(" + SignedNumber(terms.a) + "* Track" + SignedNumber(track_a);
  if (terms.c != 0) title += "+" + SignedNumber(terms.c);
  title += terms.minus ? "-" : "+";
  title += SignedNumber(terms.b) + "* Track" + SignedNumber(track_b) + ")";
  return title + "[xBshift=" + SignedNumber(terms.x_shift) + "]";
}

std::vector<std::size_t> DistinctAbscissae(std::span<const double> x) {
  std::vector<std::size_t> kept;
  kept.reserve(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (i == 0 || ToThreeDecimals(x[i]) != ToThreeDecimals(x[i - 1])) kept.push_back(i);
  }
  return kept;
}

std::int32_t RemoveEqualAbscissae(TrackStore& tracks, int slot) {
  const std::vector<std::size_t> kept = DistinctAbscissae(tracks.Points(0, slot));
  const std::int32_t removed = tracks.PointCount(slot) - static_cast<std::int32_t>(kept.size());
  if (removed == 0) return 0;
  for (int c = 0; c < kTrackColumns; ++c) {
    tracks.Points(c, slot);  // makes the column long enough
    std::vector<double>& column = tracks.Column(c, slot);
    for (std::size_t i = 0; i < kept.size(); ++i) column[i] = column[kept[i]];
  }
  tracks.Record(slot).pnum = static_cast<std::int32_t>(kept.size());
  return removed;
}

std::vector<SweepRange> SweepRanges(const TrackStore& tracks, int slot) {
  std::vector<SweepRange> sweeps;
  const std::int32_t last = tracks.PointCount(slot) - 1;
  std::int32_t first = 0;
  while (first <= last && sweeps.size() < kMostSweeps) {
    const double target = tracks.Record(slot).V[(sweeps.size() + 1) % 3];
    const std::int32_t end = std::max(FindVertex(tracks, slot, first, target), first);
    sweeps.push_back({static_cast<std::size_t>(first), static_cast<std::size_t>(end)});
    first = end + 1;
  }
  return sweeps;
}

void AppendSum(const TrackCurves& a, SweepRange part, const TrackCurves& b, std::size_t search,
               const TrackSumTerms& terms, TrackSum& sum) {
  const double factor = terms.minus ? -terms.b : terms.b;
  for (std::size_t p = part.first; p <= part.last; ++p) {
    const double x = a.x[p];
    // Both sweeps go the same way, so the match only moves on along B; from one point back, where
    // several points of A lie in one interval of B.
    // A search that starts at the last point has the interval before it.
    const std::size_t j = std::max<std::size_t>(Match(x, b.x, search), 1);
    const double current = Interpolate(x, b.x, b.current, j);
    sum.x.push_back(x);
    sum.current.push_back(terms.a * a.current[p] + terms.c + factor * current);
    if (!a.ring.empty()) {
      const double ring = b.ring.empty() ? 0 : Interpolate(x, b.x, b.ring, j);
      sum.ring.push_back(terms.a * a.ring[p] + factor * ring);
    }
    sum.matched.push_back(j);
    search = j - 1;
  }
}

}  // namespace zento
