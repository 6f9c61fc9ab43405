#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace zento::sim {

// A potential as a function of time: straight lines between corners, the last stretch of which may
// repeat for ever. Seconds from the start, and volts. Before the start it is at its first
// potential; after the last corner, without a loop, at its last.
class Programme {
 public:
  // Corners closer together than this are one.
  static constexpr double kInstant = 1e-9;  // s

  explicit Programme(double volts = 0.0) : corners_{{0.0, volts}} {}

  // Extend the programme at its end. A ramp at rate 0 never leaves its start; nothing can be added
  // behind it that would ever happen.
  void Hold(double seconds);
  void Jump(double volts);
  void Ramp(double volts, double volts_per_second);
  // What is added from here on repeats.
  void BeginLoop() { loop_ = corners_.size() - 1; }

  double At(double seconds) const;
  // The first corner later than `seconds`; infinity when there is none.
  double NextCorner(double seconds) const;
  // Of one pass of everything, in seconds; may be infinite.
  double Length() const { return corners_.back().seconds; }

 private:
  struct Corner {
    double seconds;
    double volts;
  };

  bool Loops() const;
  double Period() const { return corners_.back().seconds - corners_[*loop_].seconds; }
  double Interpolate(double seconds) const;

  std::vector<Corner> corners_;
  std::optional<std::size_t> loop_;
};

// A programme being played.
class Player {
 public:
  // `elapsed` seconds of it have passed already.
  void Start(Programme programme, double elapsed = 0.0) {
    programme_ = std::move(programme);
    elapsed_ = elapsed;
  }
  void Advance(double dt) { elapsed_ += dt; }
  double VoltsAfter(double dt) const { return programme_.At(elapsed_ + dt); }
  double UntilCorner() const { return programme_.NextCorner(elapsed_) - elapsed_; }

 private:
  Programme programme_;
  double elapsed_ = 0.0;
};

}  // namespace zento::sim
