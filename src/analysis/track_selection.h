#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "core/track.h"
#include "host/controls.h"
#include "host/form.h"

// Which track a window works on, and which of its points.

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

// Gives a box with a point's index, its arrows and the label that tells the point their behaviour.
// Indices that are stepped to or typed beyond a limit become the limit. Typed ones count when the
// box is left, or on Enter, rounded.
class PointIndex {
 public:
  struct Limits {
    std::int32_t step_low = 0, step_high = 0;
    std::int32_t typed_low = 0, typed_high = 0;
  };

  // The controls outlive this.
  PointIndex(TextBox& box, UpDown& arrows, Label& label);
  PointIndex(const PointIndex&) = delete;
  PointIndex& operator=(const PointIndex&) = delete;

  std::int32_t index() const { return index_; }
  // Runs no handler; the label stays until SetLabel.
  void Show(std::int32_t index);
  // Empties box and label; until the next Show, arrows and typing do nothing.
  void Empty();
  bool empty() const { return empty_; }
  void SetLabel(std::string text) { label_.SetText(std::move(text)); }

  // Asked at each change. A range without room (high below low) is just its low end.
  std::function<Limits()> limits;
  std::function<void()> on_change;

 private:
  void Choose(std::int32_t index);
  void Step(int direction);
  void Commit();

  TextBox& box_;
  Label& label_;
  std::int32_t index_ = 0;
  bool empty_ = true;
};

// How a window limits an end of the range that is typed.
enum class TypedEnd {
  kToLastPoint,  // 1 to the last point
  kAsStart,      // 0 to the last point but one
  kNotRead,      // the arrows alone change it
};

// The first and the last point, both included, of the part of a track that a window works on. The
// start goes from 0 to the last point but one, the end from 1 to the last point; typed ends as the
// window says. Nothing keeps the start before the end.
class PointRange {
 public:
  // Makes its controls part of `form`.
  PointRange(Form& form, TypedEnd typed_end);

  TextBox txtStart;
  UpDown updStart;
  Label lblStartPoint;
  TextBox txtEnd;
  UpDown updEnd;
  Label lblEndPoint;
  LayoutNode Panel();

  std::int32_t start() const { return start_.index(); }
  std::int32_t end() const { return end_.index(); }
  bool empty() const { return start_.empty(); }
  // The chosen ones among the first `points`: a track may have become shorter since it was shown.
  struct Part {
    std::size_t first = 0, count = 0;
  };
  Part Within(std::int32_t points) const;
  // Of a track with `points` points. Runs no handler.
  void Show(std::int32_t start, std::int32_t end, std::int32_t points);
  void ShowWhole(std::int32_t points) { Show(0, points > 0 ? points - 1 : 0, points); }
  // The same range of a track that may have been changed; the whole of it when it has another
  // number of points.
  void ShowAgain(std::int32_t points);
  void Empty();

  // What the labels show for a point; see PointText.
  std::function<std::string(std::int32_t point)> describe;
  // After a person changed the range; the labels are right already.
  std::function<void()> on_change;

 private:
  void ShowPoints();
  void Changed();

  PointIndex start_{txtStart, updStart, lblStartPoint};
  PointIndex end_{txtEnd, updEnd, lblEndPoint};
  std::int32_t points_ = 0;
};

}  // namespace zento
