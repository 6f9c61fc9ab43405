#include "analysis/oxygen.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>
#include <utility>

#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

// Steps beyond this number are finer than any board's and would hold up a run's timers.
constexpr double kMostSteps = 1e6;

// Up to so many windows a point the sums are made anew for each window, in the order of the points
// as the definition has them, which is also faster. Beyond that they move along.
constexpr double kFewWindows = 64;

struct Columns {
  std::span<const double> potential, disk, ring;
};

struct Sums {
  std::size_t points = 0;
  double potential = 0, disk = 0, ring = 0;
};

bool AllFinite(const Columns& columns) {
  return std::ranges::all_of(std::array{columns.potential, columns.disk, columns.ring},
                             [](std::span<const double> column) {
                               return std::ranges::all_of(
                                   column, [](double value) { return std::isfinite(value); });
                             });
}

// A sum of which terms can be taken away again without leaving a trace: in fixed point, to 2^-100
// of the largest term. For sums over windows that move along many points.
class ExactSum {
 public:
  // Terms are to be among `values`, each at most once in the sum at a time; all are finite.
  explicit ExactSum(std::span<const double> values) {
    double most = 0;
    for (const double value : values) most = std::max(most, std::fabs(value));
    int exponent = 0;
    std::frexp(most, &exponent);
    const int room = kBits - static_cast<int>(std::bit_width(values.size())) - exponent;
    scale_ = std::ldexp(1.0, std::min(room, kMostExponent));
  }
  void Add(double term) { sum_ += Fixed(term); }
  void Subtract(double term) { sum_ -= Fixed(term); }
  void Clear() { sum_ = 0; }
  double value() const { return static_cast<double>(sum_) / scale_; }

 private:
  __extension__ using Int128 = __int128;
  static constexpr int kBits = 125;
  static constexpr int kMostExponent = 1000;  // of a scale that is still a double
  Int128 Fixed(double term) const { return static_cast<Int128>(term * scale_); }

  double scale_ = 1;
  Int128 sum_ = 0;
};

// The sums over a window that moves along: points enter as its far edge passes them and leave when
// they lie before its start or its near edge. Each does so once a segment, so the work does not
// grow with the windows' overlap.
//
// When a point has to leave is known as it enters: the near edge moves by one step a window, so it
// cannot come to a point `excess` steps ahead before floor(excess) windows have passed. The point
// is put down for that window and looked at then; where rounding brings it there too early, it is
// put down for the next one. Noise of the potential does no harm, as the order of points in x is
// never used.
class MovingSums {
 public:
  explicit MovingSums(const Columns& columns)
      : columns_(columns),
        potential_(columns.potential),
        disk_(columns.disk),
        ring_(columns.ring),
        inside_(columns.potential.size()),
        next_due_(columns.potential.size()) {}

  void BeginSegment(std::size_t start, double windows) {
    std::fill(inside_.begin(), inside_.end(), false);
    for (ExactSum* sum : {&potential_, &disk_, &ring_}) sum->Clear();
    count_ = 0;
    window_ = 0;
    start_ = start;
    due_.assign(static_cast<std::size_t>(windows) + 3, kNone);
  }
  // `excess` = how far the point lies beyond the near edge, in steps.
  void Enter(std::size_t point, double excess) {
    Count(point, true);
    LookAgain(point, excess);
  }
  // `excess` of a point, as above. At most two windows more than announced.
  template <typename Excess>
  Sums Move(std::size_t start, const Excess& excess) {
    for (; start_ < start; ++start_) {
      if (inside_[start_]) Count(start_, false);
    }
    std::size_t point = std::exchange(due_[window_], kNone);
    while (point != kNone) {
      const std::size_t next = next_due_[point];
      const double beyond = excess(point);
      if (inside_[point] && beyond <= 0) {
        Count(point, false);
      } else if (inside_[point]) {
        LookAgain(point, beyond);
      }
      point = next;
    }
    ++window_;
    return {count_, potential_.value(), disk_.value(), ring_.value()};
  }

 private:
  static constexpr auto kNone = static_cast<std::size_t>(-1);

  void Count(std::size_t point, bool in) {
    const auto count = [&](ExactSum& sum, double term) { in ? sum.Add(term) : sum.Subtract(term); };
    count(potential_, columns_.potential[point]);
    count(disk_, columns_.disk[point]);
    count(ring_, columns_.ring[point]);
    count_ += in ? 1 : static_cast<std::size_t>(-1);
    inside_[point] = in;
  }
  // In the first window whose near edge may have come to the point; not at all in this segment when
  // that is behind its last one.
  void LookAgain(std::size_t point, double excess) {
    const double steps = std::clamp(std::floor(excess), 1.0, static_cast<double>(due_.size()));
    const std::size_t at = window_ + static_cast<std::size_t>(steps);
    if (at < due_.size()) next_due_[point] = std::exchange(due_[at], point);
  }

  Columns columns_;
  ExactSum potential_, disk_, ring_;
  std::size_t count_ = 0;
  std::size_t window_ = 0;
  std::size_t start_ = 0;
  std::vector<bool> inside_;
  std::vector<std::size_t> due_;       // for each window the first of the points to look at
  std::vector<std::size_t> next_due_;  // for each of them the next one
};

// Looks for the points of one window after the other.
class WindowScan {
 public:
  WindowScan(const Columns& columns, const OxygenSettings& settings)
      : columns_(columns), settings_(settings) {
    const bool overlap = 2 * settings.half_width > kFewWindows * settings.step;
    if (overlap && AllFinite(columns)) moving_.emplace(columns);
  }

  // Before the first window of a segment with direction +1 or -1.
  void BeginSegment(double direction, double windows) {
    direction_ = direction;
    end_ = beyond_ = start_;
    if (moving_) moving_->BeginSegment(start_, windows);
  }

  // The points of the window about `centre`. A segment's windows come in the order of its sweep.
  Sums Take(double centre) {
    const double middle = direction_ * centre;
    const double near_edge = middle - settings_.half_width;
    const double far_edge = middle + settings_.half_width;
    const std::size_t known = end_;
    while (end_ < columns_.potential.size() && X(end_) < far_edge) ++end_;
    FindNextStart(middle + settings_.step - settings_.half_width);
    const Sums sums = moving_ ? Move(known, near_edge) : AddUp(near_edge);
    start_ = beyond_;
    return sums;
  }

  // Nothing is left to scan.
  bool AtEnd() const { return start_ >= columns_.potential.size(); }

 private:
  // Falling sweeps are negated, which is exact: their comparisons then are those of rising ones.
  double X(std::size_t point) const { return direction_ * columns_.potential[point]; }

  // The first point that lies beyond the next window's near edge, at most where this scan ended.
  // On a rising sweep a point on that edge is not beyond it, on a falling one it is.
  void FindNextStart(double edge) {
    beyond_ = std::max(beyond_, start_);
    const auto beyond = [&](double x) { return direction_ > 0 ? x > edge : x >= edge; };
    while (beyond_ < end_ && !beyond(X(beyond_))) ++beyond_;
  }

  Sums AddUp(double near_edge) const {
    Sums sums;
    for (std::size_t p = start_; p < end_; ++p) {
      if (X(p) <= near_edge) continue;
      ++sums.points;
      sums.potential += columns_.potential[p];
      sums.disk += columns_.disk[p];
      sums.ring += columns_.ring[p];
    }
    return sums;
  }

  // The near edge only moves forward, so a point that it has passed stays out for the segment, and
  // one that the far edge has passed (`known` and before) needs no second look.
  Sums Move(std::size_t known, double near_edge) {
    const auto excess = [&](std::size_t p) { return (X(p) - near_edge) / settings_.step; };
    for (std::size_t p = known; p < end_; ++p) {
      if (X(p) > near_edge) moving_->Enter(p, excess(p));
    }
    return moving_->Move(start_, excess);
  }

  Columns columns_;
  OxygenSettings settings_;
  std::optional<MovingSums> moving_;
  double direction_ = 1;
  // All three only grow within a segment, as the windows' edges do.
  std::size_t start_ = 0;   // of the window's scan
  std::size_t end_ = 0;     // of the window's scan: the first point at or behind its far edge
  std::size_t beyond_ = 0;  // all points from start_ to before it lie before the next near edge
};

void Append(OxygenShares& shares, const Sums& sums, double collection) {
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

// How many windows a segment has, give or take one.
double Windows(double start, double end, const OxygenSettings& settings) {
  return std::floor(std::fabs(end - start) / settings.step) + 1;
}

Status Check(const std::array<double, 3>& vertices, const OxygenSettings& settings) {
  if (!(settings.collection > 0)) {
    return Status::Failure("The collection efficiency must be above zero.");
  }
  if (!(settings.step > 0)) return Status::Failure("The voltage step must be above zero.");
  for (std::size_t segment = 0; segment < 2; ++segment) {
    if (Windows(vertices[segment], vertices[segment + 1], settings) <= kMostSteps) continue;
    return Status::Failure("The voltage step of " + PlainNumber(settings.step) +
                           " V is too small for this sweep.");
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
  const Status usable = Check(vertices, settings);
  if (!usable.ok()) return usable;

  OxygenShares shares;
  WindowScan scan({potential.first(points), disk.first(points), ring.first(points)}, settings);
  for (std::size_t segment = 0; segment < 2; ++segment) {
    const double start = vertices[segment];
    const double end = vertices[segment + 1];
    const double direction = end - start > 0 ? 1 : -1;
    const double windows = Windows(start, end, settings);
    scan.BeginSegment(direction, windows);
    // The potentials are added up step by step, as the definition has it, with its rounding. The
    // count ends the loop where a step is lost in the rounding of the potential.
    double at = start;
    for (double left = windows + 1; left >= 0 && direction * at <= direction * end; --left) {
      if (scan.AtEnd()) break;
      Append(shares, scan.Take(at), settings.collection);
      at += direction * settings.step;
    }
    if (segment == 0 && points > 0 && scan.AtEnd()) {
      shares.second_segment_lost =
          TurnedBack(potential.first(points), direction, 2 * settings.half_width);
    }
  }
  return shares;
}

}  // namespace zento
