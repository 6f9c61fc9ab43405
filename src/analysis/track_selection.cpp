#include "analysis/track_selection.h"

#include <algorithm>
#include <utility>

#include "text/number.h"

namespace zento {
namespace {

std::int32_t Within(std::int32_t index, std::int32_t low, std::int32_t high) {
  return std::clamp(index, low, std::max(low, high));
}

}  // namespace

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

PointIndex::PointIndex(TextBox& box, UpDown& arrows, Label& label) : box_(box), label_(label) {
  arrows.on_up = [this] { Step(+1); };
  arrows.on_down = [this] { Step(-1); };
  box.on_commit = [this] { Commit(); };
}

void PointIndex::Show(std::int32_t index) {
  index_ = index;
  empty_ = false;
  box_.SetText(PlainNumber(index));
}

void PointIndex::Empty() {
  index_ = 0;
  empty_ = true;
  box_.SetText({});
  label_.SetText({});
}

void PointIndex::Choose(std::int32_t index) {
  Show(index);
  if (on_change) on_change();
}

void PointIndex::Step(int direction) {
  if (empty_ || !limits) return;
  const Limits limit = limits();
  Choose(Within(index_ + direction, limit.step_low, limit.step_high));
}

void PointIndex::Commit() {
  if (empty_ || !limits) return;
  const Limits limit = limits();
  const std::int32_t typed = ToLong(ParseLenient(box_.text()));
  // A box that is left as it was is not an entry.
  if (typed == index_) return Show(index_);
  Choose(Within(typed, limit.typed_low, limit.typed_high));
}

PointRange::PointRange(Form& form, TypedEnd typed_end)
    : txtStart(form, "txtStart"),
      updStart(form, "updStart"),
      lblStartPoint(form, "lblStartPoint"),
      txtEnd(form, "txtEnd"),
      updEnd(form, "updEnd"),
      lblEndPoint(form, "lblEndPoint") {
  txtEnd.read_only = typed_end == TypedEnd::kNotRead;
  start_.limits = [this] { return PointIndex::Limits{0, points_ - 2, 0, points_ - 2}; };
  end_.limits = [this, typed_end] {
    const bool as_start = typed_end == TypedEnd::kAsStart;
    return PointIndex::Limits{1, points_ - 1, as_start ? 0 : 1,
                              as_start ? points_ - 2 : points_ - 1};
  };
  if (typed_end == TypedEnd::kNotRead) txtEnd.on_commit = nullptr;
  start_.on_change = end_.on_change = [this] { Changed(); };
}

void PointRange::Show(std::int32_t start, std::int32_t end, std::int32_t points) {
  points_ = points;
  start_.Show(start);
  end_.Show(end);
  ShowPoints();
}

void PointRange::ShowAgain(std::int32_t points) {
  if (empty() || points != points_) return ShowWhole(points);
  ShowPoints();
}

PointRange::Part PointRange::Within(std::int32_t points) const {
  const std::int32_t first = std::clamp(start(), 0, points);
  const std::int32_t behind = std::clamp(end() + 1, first, points);
  return {static_cast<std::size_t>(first), static_cast<std::size_t>(behind - first)};
}

void PointRange::Empty() {
  points_ = 0;
  start_.Empty();
  end_.Empty();
}

void PointRange::ShowPoints() {
  if (!describe) return;
  start_.SetLabel(describe(start_.index()));
  end_.SetLabel(describe(end_.index()));
}

void PointRange::Changed() {
  ShowPoints();
  if (on_change) on_change();
}

LayoutNode PointRange::Panel() {
  using namespace layout;
  return Group("Points", {Fields({Field("Start", txtStart, &updStart)}), Item(lblStartPoint),
                          Fields({Field("End", txtEnd, &updEnd)}), Item(lblEndPoint)});
}

}  // namespace zento
