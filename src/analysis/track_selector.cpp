#include "analysis/track_selector.h"

#include <algorithm>

#include "text/number.h"

namespace zento {

TrackSelector::TrackSelector(TextBox& box, UpDown& arrows) : box_(box) {
  arrows.on_up = [this] { Step(+1); };
  arrows.on_down = [this] { Step(-1); };
  box.on_commit = [this] { Commit(); };
  Show(ToLong(ParseLenient(box.text())));
}

void TrackSelector::Show(int track) {
  track_ = std::clamp(track, 0, kTracks - 1);
  box_.SetText(PlainNumber(track_));
}

void TrackSelector::Choose(int track) {
  Show(track);
  if (on_change) on_change();
}

void TrackSelector::Step(int direction) {
  Choose((track_ + direction + kTracks) % kTracks);
}

void TrackSelector::Commit() {
  const int typed = std::clamp(ToLong(ParseLenient(box_.text())), 0, kTracks - 1);
  if (typed == track_) return Show(track_);
  Choose(typed);
}

}  // namespace zento
