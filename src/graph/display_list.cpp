#include "graph/display_list.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "graph/decimate.h"

namespace zento {
namespace {

constexpr Colour kBackground{255, 255, 255};

// A corner beyond any surface may as well stand a little nearer.
Point WithinReach(Point at) {
  return {std::clamp(at.x, -kLineLimit, kLineLimit), std::clamp(at.y, -kLineLimit, kLineLimit)};
}

constexpr double kHatchSpacing = 4;
constexpr double kMostHatched = 4000;  // bounds the number of lines

// Chords in the direction (dx, dy), a unit vector.
void Chords(Surface& surface, Point centre, double radius, Colour colour, Point direction) {
  for (double off = -std::floor(radius / kHatchSpacing) * kHatchSpacing; off < radius;
       off += kHatchSpacing) {
    const double half = std::sqrt(std::max(0.0, radius * radius - off * off));
    if (half < 1) continue;
    const Point middle{centre.x - off * direction.y, centre.y + off * direction.x};
    const Point from{std::round(middle.x - half * direction.x),
                     std::round(middle.y - half * direction.y)};
    const Point to{std::round(middle.x + half * direction.x),
                   std::round(middle.y + half * direction.y)};
    surface.Line(from, to, colour);
  }
}

// Lines inside a circle: 2 horizontal, 3 vertical, 4 falling and 5 rising diagonals, 6 both
// straight ones, 7 both diagonal ones. Any other style draws nothing.
void DrawHatch(Surface& surface, Point centre, double radius, Colour colour, std::int16_t style) {
  if (style < 2 || style > 7 || !(radius > 1) || radius > kMostHatched) return;
  constexpr double kDiagonal = 1 / std::numbers::sqrt2;
  const auto chords = [&](Point direction) { Chords(surface, centre, radius, colour, direction); };
  if (style == 2 || style == 6) chords({1, 0});
  if (style == 3 || style == 6) chords({0, 1});
  if (style == 4 || style == 7) chords({kDiagonal, kDiagonal});
  if (style == 5 || style == 7) chords({kDiagonal, -kDiagonal});
}

}  // namespace

void DisplayList::Clear(const AxisFrame* frame) {
  framed_ = frame != nullptr;
  if (framed_) frame_ = *frame;
  worlds_ = {worlds_.back()};
  batches_.clear();
  dots_.clear();
  vertices_.clear();
  shapes_.clear();
  texts_.clear();
  merge_at_ = kFirstMerge;
}

void DisplayList::SetWorld(const WorldWindow& world) {
  if (world == worlds_.back()) return;
  // A window that nothing was drawn in need not be remembered.
  const bool used = framed_ || (!batches_.empty() && batches_.back().world + 1 == worlds_.size());
  if (used) {
    worlds_.push_back(world);
  } else {
    worlds_.back() = world;
  }
}

DisplayList::Batch& DisplayList::Open(Kind kind, std::size_t begin) {
  const std::size_t world = worlds_.size() - 1;
  if (batches_.empty() || batches_.back().kind != kind || batches_.back().world != world) {
    batches_.push_back({kind, world, begin, begin, {}});
  }
  return batches_.back();
}

void DisplayList::AddDot(Point at, Colour colour) {
  Batch& batch = Open(Kind::kDots, dots_.size());
  dots_.push_back({at, colour});
  batch.end = dots_.size();
  if (dots_.size() >= merge_at_) MergeDots(batch);
}

void DisplayList::AddLine(Point from, Point to, Colour colour) {
  Batch& batch = Open(Kind::kPolyline, vertices_.size());
  const bool fresh = batch.begin == batch.end;
  if (!fresh && batch.colour == colour && vertices_.back() == from) {
    vertices_.push_back(to);
    batch.end = vertices_.size();
    return;
  }
  const Point both[] = {from, to};
  AddPolyline(both, colour);
}

void DisplayList::AddPolyline(std::span<const Point> points, Colour colour) {
  if (points.empty()) return;
  if (batches_.empty() || batches_.back().begin != batches_.back().end) {
    batches_.push_back({Kind::kPolyline, 0, 0, 0, {}});
  }
  const std::size_t begin = vertices_.size();
  vertices_.insert(vertices_.end(), points.begin(), points.end());
  batches_.back() = {Kind::kPolyline, worlds_.size() - 1, begin, vertices_.size(), colour};
}

void DisplayList::AddShape(const ListShape& shape) {
  Batch& batch = Open(Kind::kShapes, shapes_.size());
  shapes_.push_back(shape);
  batch.end = shapes_.size();
}

void DisplayList::AddText(ListText text) {
  Batch& batch = Open(Kind::kTexts, texts_.size());
  texts_.push_back(std::move(text));
  batch.end = texts_.size();
}

// Keeps the last dot of each colour in every cell of a fine grid over the window.
void DisplayList::MergeDots(Batch& batch) {
  constexpr double kCells = 16384;
  const WorldMap cells(worlds_[batch.world], {kCells, kCells});
  struct Keyed {
    std::uint64_t key;
    std::size_t index;
  };
  std::vector<Keyed> keyed;
  keyed.reserve(batch.end - batch.begin);
  for (std::size_t i = batch.begin; i < batch.end; ++i) {
    const Point cell = cells(dots_[i].at);
    // What lies outside the window is never seen.
    if (!(cell.x >= 0 && cell.x <= kCells && cell.y >= 0 && cell.y <= kCells)) continue;
    const Colour c = dots_[i].colour;
    const std::uint64_t place =
        static_cast<std::uint64_t>(cell.x) << 15U | static_cast<std::uint64_t>(cell.y);
    const std::uint64_t colour = static_cast<std::uint64_t>(c.red) << 16U |
                                 static_cast<std::uint64_t>(c.green) << 8U | c.blue;
    keyed.push_back({place << 24U | colour, i});
  }
  std::sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
    return a.key != b.key ? a.key < b.key : a.index > b.index;
  });
  const auto same = [](const Keyed& a, const Keyed& b) { return a.key == b.key; };
  keyed.erase(std::unique(keyed.begin(), keyed.end(), same), keyed.end());
  std::sort(keyed.begin(), keyed.end(),
            [](const Keyed& a, const Keyed& b) { return a.index < b.index; });
  std::size_t kept = batch.begin;
  for (const Keyed& one : keyed) dots_[kept++] = dots_[one.index];
  dots_.resize(kept);
  batch.end = kept;
  merge_at_ = std::max(kFirstMerge, 2 * dots_.size());
}

void DisplayList::PaintDots(Surface& surface, const WorldMap& map, const Batch& batch) const {
  PixelDots pixels(surface);
  for (std::size_t i = batch.begin; i < batch.end; ++i) {
    pixels.Add(map(dots_[i].at), dots_[i].colour);
  }
}

void DisplayList::PaintPolyline(Surface& surface, const WorldMap& map, const Batch& batch) const {
  PixelPolyline line;
  const auto draw = [&] {
    const std::span<const Point> kept = line.Finish();
    if (kept.size() == 1) surface.Dots(kept, batch.colour);
    if (kept.size() > 1) surface.Polyline(kept, batch.colour);
  };
  // A vertex is added when it turns out that a line leads to it or on from it.
  Point before;
  bool reachable = false;  // `before` may end a line
  bool joined = false;     // and has been added
  for (std::size_t i = batch.begin; i < batch.end; ++i) {
    const Point at = map(vertices_[i]);
    if (!WithinLineLimit(at)) {
      if (joined) draw();
      reachable = joined = false;
      continue;
    }
    if (joined) {
      line.Add(at);
    } else if (reachable) {
      line.Add(before);
      line.Add(at);
      joined = true;
    }
    before = at;
    reachable = true;
  }
  if (joined) draw();
}

void DisplayList::PaintShape(Surface& surface, const WorldMap& map, const ListShape& shape) {
  Point from = map(shape.from);
  if (shape.kind == ListShape::Kind::kCircle) {
    // No surface reaches that far.
    if (!WithinLineLimit(from) || !(shape.radius >= 0 && shape.radius <= kLineLimit)) return;
    const bool solid = shape.fill_style == 0;
    surface.Circle(from, shape.radius, shape.colour, solid ? &shape.colour : nullptr);
    DrawHatch(surface, from, shape.radius, shape.colour, shape.fill_style);
    return;
  }
  from = WithinReach(from);
  const Point to = WithinReach(map(shape.to));
  const Rect rect{std::min(from.x, to.x), std::min(from.y, to.y), std::abs(to.x - from.x),
                  std::abs(to.y - from.y)};
  if (shape.kind == ListShape::Kind::kBox) {
    surface.Box(rect, shape.colour);
  } else {
    // Filled up to and including the pixels of both corners.
    surface.FillBox({rect.x, rect.y, rect.width + 1, rect.height + 1}, shape.colour);
  }
}

void DisplayList::PaintText(Surface& surface, const ListText& text) {
  TextStyle style;
  style.size = text.size;
  surface.Text(text.at, text.text, style);
}

void DisplayList::Paint(Surface& surface, Size extent) const {
  surface.Clear(kBackground);
  if (framed_) PaintAxis(surface, extent, frame_);
  for (const Batch& batch : batches_) {
    const WorldMap map(worlds_[batch.world], extent);
    if (batch.kind == Kind::kDots) {
      PaintDots(surface, map, batch);
    } else if (batch.kind == Kind::kPolyline) {
      PaintPolyline(surface, map, batch);
    } else {
      for (std::size_t i = batch.begin; i < batch.end; ++i) {
        if (batch.kind == Kind::kShapes) PaintShape(surface, map, shapes_[i]);
        if (batch.kind == Kind::kTexts) PaintText(surface, texts_[i]);
      }
    }
  }
}

}  // namespace zento
