#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "graph/axes.h"
#include "graph/world.h"
#include "host/surface.h"

namespace zento {

enum class CurveStyle { kDots, kLines };

struct ListShape {
  enum class Kind { kCircle, kBox, kFill };
  Kind kind = Kind::kBox;
  Point from;  // world; a circle's centre
  Point to;
  double radius = 0;  // surface units
  std::int16_t fill_style = 0;
  Colour colour;
};

struct ListText {
  Point at;  // surface coordinates
  double size = 10;
  std::string text;
};

// What a GraphView shows, in world coordinates and in the order in which it was drawn. Dots are
// kept in an array that grows by doubling; so that an instrument may be watched for weeks, dots
// which no picture could tell apart (nearer than a sixteenth of a thousandth of the window) are
// merged each time their number has doubled.
class DisplayList {
 public:
  // Empties the list and sets what stands under everything; null for none.
  void Clear(const AxisFrame* frame = nullptr);

  void SetWorld(const WorldWindow& world);
  const WorldWindow& world() const { return worlds_.back(); }

  void AddDot(Point at, Colour colour);
  // A line that begins where the last one of the same colour ended continues it.
  void AddLine(Point from, Point to, Colour colour);
  void AddPolyline(std::span<const Point> points, Colour colour);
  void AddShape(const ListShape& shape);
  void AddText(ListText text);

  // Draws everything on a white ground, the window filling `extent`.
  void Paint(Surface& surface, Size extent) const;
  static void PaintShape(Surface& surface, const WorldMap& map, const ListShape& shape);
  static void PaintText(Surface& surface, const ListText& text);

  // Points, shapes and texts.
  std::size_t size() const {
    return dots_.size() + vertices_.size() + shapes_.size() + texts_.size();
  }

 private:
  enum class Kind { kDots, kPolyline, kShapes, kTexts };
  // Consecutive things of one kind: elements `begin` to `end` of the kind's array.
  struct Batch {
    Kind kind;
    std::size_t world;
    std::size_t begin;
    std::size_t end;
    Colour colour;  // polylines
  };
  struct ListDot {
    Point at;
    Colour colour;
  };

  // The last batch if things of this kind can be added to it, else a new one.
  Batch& Open(Kind kind, std::size_t begin);
  void MergeDots(Batch& batch);
  void PaintDots(Surface& surface, const WorldMap& map, const Batch& batch) const;
  void PaintPolyline(Surface& surface, const WorldMap& map, const Batch& batch) const;

  bool framed_ = false;
  AxisFrame frame_;
  std::vector<WorldWindow> worlds_ = {WorldWindow{}};
  std::vector<Batch> batches_;
  std::vector<ListDot> dots_;
  std::vector<Point> vertices_;
  std::vector<ListShape> shapes_;
  std::vector<ListText> texts_;
  std::size_t merge_at_ = kFirstMerge;

  static constexpr std::size_t kFirstMerge = 131072;
};

}  // namespace zento
