#include "analysis/oxygen.h"

#include <algorithm>
#include <cmath>

#include "text/number.h"

namespace zento {
namespace {

// Some 0.1 s of looking at points; a window that takes longer would hold up a run's timers.
constexpr double kMostWork = 5e7;

// Looks for the points of one window after the other. A falling sweep is scanned with all
// potentials negated, which is exact: its comparisons then are those of a rising one.
class WindowScan {
 public:
  struct Sums {
    std::size_t points = 0;
    double potential = 0, disk = 0, ring = 0;
  };

  WindowScan(std::span<const double> potential, std::span<const double> disk,
             std::span<const double> ring)
      : potential_(potential), disk_(disk), ring_(ring) {}

  // Before the first window of a segment with direction +1 or -1.
  void BeginSegment(double direction) {
    direction_ = direction;
    candidates_.clear();
    end_ = beyond_ = start_;
  }

  // The points of the window about `centre`. A segment's windows come in the order of its sweep.
  Sums Take(double centre, const OxygenSettings& settings) {
    const double middle = direction_ * centre;
    const double near_edge = middle - settings.half_width;
    const double far_edge = middle + settings.half_width;
    const double next_near_edge = middle + settings.step - settings.half_width;
    while (end_ < potential_.size() && X(end_) < far_edge) candidates_.push_back(end_++);
    FindNextStart(next_near_edge);
    const Sums sums = AddCandidates(near_edge);
    start_ = beyond_;
    return sums;
  }

  // Nothing is left to scan.
  bool AtEnd() const { return start_ >= potential_.size(); }

 private:
  double X(std::size_t point) const { return direction_ * potential_[point]; }

  // The first point that lies beyond the next window's near edge, at most where this scan ended.
  // On a rising sweep a point on that edge is not beyond it, on a falling one it is.
  void FindNextStart(double edge) {
    beyond_ = std::max(beyond_, start_);
    const auto beyond = [&](double x) { return direction_ > 0 ? x > edge : x >= edge; };
    while (beyond_ < end_ && !beyond(X(beyond_))) ++beyond_;
  }

  // Both edges only move forward along the sweep, so a point that was passed over, or that lies
  // before the start, is so for the rest of the segment and need not be looked at again. The order
  // of the additions is that of the points.
  Sums AddCandidates(double near_edge) {
    Sums sums;
    std::size_t kept = 0;
    for (const std::size_t point : candidates_) {
      if (point < start_ || X(point) <= near_edge) continue;
      candidates_[kept++] = point;
      ++sums.points;
      sums.potential += potential_[point];
      sums.disk += disk_[point];
      sums.ring += ring_[point];
    }
    candidates_.resize(kept);
    return sums;
  }

  std::span<const double> potential_, disk_, ring_;
  double direction_ = 1;
  std::size_t start_ = 0;  // of the window's scan
  std::size_t end_ = 0;  // where the window's scan ends: the first point at or behind its far edge
  std::size_t beyond_ = 0;  // all points from start_ to before it lie before the next near edge
  std::vector<std::size_t> candidates_;  // points from start_ to before end_ that may lie inside
};

void Append(OxygenShares& shares, const WindowScan::Sums& sums, double collection) {
  if (sums.points == 0) return;
  const auto points = static_cast<double>(sums.points);
  const double disk = std::fabs(sums.disk / points);
  const double ring = std::fabs(sums.ring / points);
  if (disk == 0 && ring == 0) return;
  shares.potential.push_back(sums.potential / points);
  shares.disk.push_back(disk);
  shares.ring.push_back(ring);
  shares.water.push_back(ShareOfWater(disk, ring, collection));
}

// Whether the potential, on its way in `direction`, turned back by more than `margin`.
bool TurnedBack(std::span<const double> potential, double direction, double margin) {
  double furthest = direction * potential.front();
  for (const double x : potential) furthest = std::max(furthest, direction * x);
  return furthest - direction * potential.back() > margin;
}

// How many steps there are, and how many times their windows look at a point.
double Work(std::size_t points, const std::array<double, 3>& vertices,
            const OxygenSettings& settings) {
  double work = 0;
  for (std::size_t i = 0; i < 2; ++i) {
    const double steps = std::fabs(vertices[i + 1] - vertices[i]) / settings.step;
    const double overlap = std::min(2 * settings.half_width / settings.step, steps);
    work += steps + static_cast<double>(points) * overlap / 2;
  }
  return work;
}

Status Check(std::size_t points, const std::array<double, 3>& vertices,
             const OxygenSettings& settings) {
  if (!(settings.collection > 0)) {
    return Status::Failure("The collection efficiency must be above zero.");
  }
  if (!(settings.step > 0)) return Status::Failure("The voltage step must not be zero.");
  if (!(Work(points, vertices, settings) <= kMostWork)) {
    return Status::Failure("The voltage step of " + PlainNumber(settings.step) +
                           " V is too small for this sweep and voltage range.");
  }
  return {};
}

}  // namespace

double ShareOfWater(double disk, double ring, double collection) {
  return (disk - ring / collection) / (ring / collection + disk) * 100;
}

Result<OxygenShares> EvaluateOxygen(std::span<const double> potential, std::span<const double> disk,
                                    std::span<const double> ring,
                                    const std::array<double, 3>& vertices,
                                    const OxygenSettings& given) {
  const std::size_t points = std::min({potential.size(), disk.size(), ring.size()});
  const OxygenSettings settings{given.collection, std::fabs(given.step),
                                std::fabs(given.half_width)};
  const Status usable = Check(points, vertices, settings);
  if (!usable.ok()) return usable;

  OxygenShares shares;
  WindowScan scan(potential.first(points), disk.first(points), ring.first(points));
  for (std::size_t segment = 0; segment < 2; ++segment) {
    const double start = vertices[segment];
    const double end = vertices[segment + 1];
    const double direction = end - start > 0 ? 1 : -1;
    scan.BeginSegment(direction);
    for (double at = start; direction * at <= direction * end && !scan.AtEnd();
         at += direction * settings.step) {
      Append(shares, scan.Take(at, settings), settings.collection);
    }
    if (segment == 0 && points > 0 && scan.AtEnd()) {
      shares.second_segment_lost =
          TurnedBack(potential.first(points), direction, 2 * settings.half_width);
    }
  }
  return shares;
}

}  // namespace zento
