#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "text/status_fwd.h"

namespace zento {

// How a ring-disk voltammogram of oxygen reduction is evaluated.
struct OxygenSettings {
  double collection = 0;  // collection efficiency N of the ring, above 0
  double step = 0;        // V between the evaluated potentials; the absolute value counts, not 0
  double half_width = 0;  // V, of the window that is averaged; the absolute value counts
};

// One entry in each column for every evaluated potential whose window holds points with current.
struct OxygenShares {
  std::vector<double> potential;  // V, mean of the disk potential
  std::vector<double> disk;       // A, absolute value of the mean
  std::vector<double> ring;       // A, absolute value of the mean
  std::vector<double> water;      // %, share of the oxygen that becomes water
  // A step near the second vertex scanned on to the end of the track, so that nothing was left for
  // the second segment; see ShareOfWater.
  bool second_segment_lost = false;

  std::size_t size() const { return water.size(); }
};

// The share of the oxygen that is reduced to water rather than to peroxide, in %, from the absolute
// values of disk and ring current (A. Damjanovic, M. A. Genshaw, J. O'M. Bockris, J. Chem. Phys. 45
// (1966) 4057): the disk's current is that of both reactions, I_d = I_4 + I_2, the ring's that of
// the peroxide that reaches it, I_r = N I_2, and I_4 takes 4 electrons a molecule, I_2 takes 2:
//   share = (I_4 / 4) / (I_4 / 4 + I_2 / 2) = (I_d - I_r / N) / (I_d + I_r / N).
// NaN when both currents are 0.
double ShareOfWater(double disk, double ring, double collection);

// Electrons a molecule of oxygen, for a share in %: n = 2 + 2 share.
inline double ElectronsOfShare(double percent) {
  return 2 + 2 * percent / 100;
}

// Evaluates the two sweep segments between `vertices` (V, in the order of the sweep), at potentials
// E from a segment's start towards its end in steps; the end is evaluated where the steps, added up
// one by one, reach it exactly. At each E the points within the half-width of E, both ends
// excluded, are averaged.
//
// The scan for them goes on from where the step before left off: at the first point that lay beyond
// the next window's near edge, or where its scan ended. It ends at the first point at or beyond the
// window's far edge. A window that reaches beyond the second vertex finds no such point: it takes
// in all later points that lie in it, and unless the next window's near edge had been passed before
// the vertex, nothing is left for the second segment. A step that ends at least the half-width
// before the vertex, or a half-width above the step, avoids that.
//
// The columns count as long as the shortest of them. Time: linear in points plus steps, however
// much the windows overlap. Where a point lies in up to 64 windows, the means are those of the
// definition to the last bit; beyond that, of sums that do not round.
//
// Fails, with a text for a person, when collection efficiency or step is not above 0, and when a
// segment has more than 1e6 steps.
Result<OxygenShares> EvaluateOxygen(std::span<const double> potential, std::span<const double> disk,
                                    std::span<const double> ring,
                                    const std::array<double, 3>& vertices,
                                    const OxygenSettings& settings);

}  // namespace zento
