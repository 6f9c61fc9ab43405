#include "sim/programme.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zento::sim {
namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();

}  // namespace

void Programme::Hold(double seconds) {
  if (seconds > 0.0) corners_.push_back({Length() + seconds, corners_.back().volts});
}

void Programme::Jump(double volts) {
  if (volts != corners_.back().volts) corners_.push_back({Length(), volts});
}

void Programme::Ramp(double volts, double volts_per_second) {
  const double distance = std::abs(volts - corners_.back().volts);
  if (distance == 0.0) return;
  if (!(volts_per_second > 0.0)) {
    Hold(kForever);
  } else {
    corners_.push_back({Length() + distance / volts_per_second, volts});
  }
}

bool Programme::Loops() const {
  return loop_ && std::isfinite(Length()) && Period() > kInstant;
}

double Programme::At(double seconds) const {
  if (Loops() && seconds >= Length()) {
    const double begin = corners_[*loop_].seconds;
    return Interpolate(begin + std::fmod(seconds - begin, Period()));
  }
  return Interpolate(seconds);
}

double Programme::Interpolate(double seconds) const {
  const auto next = std::ranges::upper_bound(corners_, seconds, {}, &Corner::seconds);
  if (next == corners_.begin()) return next->volts;
  const Corner& from = *(next - 1);
  if (next == corners_.end() || next->volts == from.volts) return from.volts;
  const double share = (seconds - from.seconds) / (next->seconds - from.seconds);
  return from.volts + share * (next->volts - from.volts);
}

double Programme::NextCorner(double seconds) const {
  const double after = seconds + kInstant;
  const auto next = std::ranges::upper_bound(corners_, after, {}, &Corner::seconds);
  if (next != corners_.end()) return next->seconds;
  if (!Loops()) return kForever;
  const double begin = corners_[*loop_].seconds;
  const double turn = begin + std::floor((after - begin) / Period()) * Period();
  for (std::size_t i = *loop_ + 1; i < corners_.size(); ++i) {
    const double corner = turn + (corners_[i].seconds - begin);
    if (corner > after) return corner;
  }
  return turn + Period() + (corners_[*loop_ + 1].seconds - begin);
}

}  // namespace zento::sim
