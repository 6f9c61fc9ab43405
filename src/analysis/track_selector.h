#pragma once

#include <functional>

#include "core/track_store.h"
#include "host/controls.h"

namespace zento {

// Gives a box with a track number and its arrows their behaviour: the arrows wrap from 20 to 0 and
// back; a number that a person types counts when the box is left, or on Enter, rounded and held
// within 0 to 20.
class TrackSelector {
 public:
  // Both controls outlive this. Begins with the number that stands in the box.
  TrackSelector(TextBox& box, UpDown& arrows);
  TrackSelector(const TrackSelector&) = delete;
  TrackSelector& operator=(const TrackSelector&) = delete;

  int track() const { return track_; }
  // Runs no handler.
  void Show(int track);

  std::function<void()> on_change;

 private:
  void Choose(int track);
  void Step(int direction);
  void Commit();

  TextBox& box_;
  int track_ = 0;
};

}  // namespace zento
