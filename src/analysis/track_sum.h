#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zento {

class TrackStore;

// What is computed: a A(x) + c + b B(x), or with minus.
struct TrackSumTerms {
  double a = 1, b = 1, c = 0;
  bool minus = false;
  double x_shift = 0;  // added to every x of B
};

// "( 1* Track 0- 1* Track 1)[xBshift= 0]"; c stands in it unless it is 0.
std::string TrackSumTitle(const TrackSumTerms& terms, int track_a, int track_b);

// The points that stay, in order, when each one whose x equals its predecessor's to three decimals
// (halves to even) goes.
std::vector<std::size_t> DistinctAbscissae(std::span<const double> x);
// Leaves only those points, in all columns, and their number in the record. How many went.
std::int32_t RemoveEqualAbscissae(TrackStore& tracks, int slot);

// The columns of a track, all of the same length; `ring` is empty where there is none.
struct TrackCurves {
  std::span<const double> x, current, ring;
};

// From point `first` on, the sweeps of a track; each begins where the one before it ended.
struct SweepRange {
  std::size_t first = 0, last = 0;  // both included
};
// Cut at the turning points: each is sought from the point behind the one before, near V2nd, V3rd,
// V1st and so on. At most 1000; what comes later is left out.
std::vector<SweepRange> SweepRanges(const TrackStore& tracks, int slot);

// C, as long as the part of A that was computed, and for each of its points the index of the B
// point that ends the interval it was interpolated in.
struct TrackSum {
  std::vector<double> x, current, ring;
  std::vector<std::size_t> matched;
};

// Adds the points of `part` of A to `sum`. For each, B is walked on from `search` to where its
// distance in x stops falling (to B's last point at most), and its current interpolated, or
// extrapolated, on the straight line through that point and the one before it; the next search
// starts one point before. Where these two have equal x, the later one's current counts. The ring
// column is combined without c when both have one; of A alone it is multiplied by a. B has at least
// two points, `search` is less than their number.
void AppendSum(const TrackCurves& a, SweepRange part, const TrackCurves& b, std::size_t search,
               const TrackSumTerms& terms, TrackSum& sum);

}  // namespace zento
