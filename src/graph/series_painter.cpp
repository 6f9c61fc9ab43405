#include "graph/series_painter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graph/decimate.h"

namespace zento {
namespace {

constexpr double kMarkRadius = 3;

// Moves `end` along the line to `other` until its coordinate `along` lies within `low` and `high`.
// The boundary is taken as it is, so that ends at any distance come out right.
void Clip(Point& end, const Point& other, double Point::*along, double Point::*across, double low,
          double high) {
  const double bound = std::clamp(end.*along, low, high);
  if (bound == end.*along) return;
  const double part = (bound - end.*along) / (other.*along - end.*along);
  end.*across += part * (other.*across - end.*across);
  end.*along = bound;
}

class SeriesPainter {
 public:
  SeriesPainter(Surface& surface, const Rect& area, const WorldWindow& window)
      : surface_(surface), area_(area), map_(window, {area.width, area.height}), dots_(surface) {}

  void Paint(const PlotSeries& series) {
    if (series.kind == PlotSeries::Kind::kDots) {
      for (const Point& at : series.points) dots_.Add(Pixel(Exact(at)), series.colour);
      return;
    }
    dots_.Draw();  // what comes later lies above
    if (series.kind == PlotSeries::Kind::kPolyline) {
      Polyline(series);
    } else {
      Marks(series);
    }
  }

 private:
  Point Exact(Point world) const {
    return {area_.x + map_.x.Exact(world.x), area_.y + map_.y.Exact(world.y)};
  }
  static Point Pixel(Point at) { return {std::floor(at.x), std::floor(at.y)}; }
  static bool Finite(Point at) { return std::isfinite(at.x) && std::isfinite(at.y); }

  void Polyline(const PlotSeries& series) {
    Point before{NAN, NAN};
    for (const Point& world : series.points) {
      const Point at = Exact(world);
      if (!Finite(at)) {
        Draw(series.colour);
      } else if (Finite(before)) {
        Segment(before, at, series.colour);
      }
      before = at;
    }
    Draw(series.colour);
  }

  // Whether a line lies wholly before `begin` or behind its `length`, even when rounded.
  static bool Passes(double from, double to, double begin, double length) {
    return (from < begin - 2 && to < begin - 2) ||
           (from > begin + length + 2 && to > begin + length + 2);
  }

  bool Misses(Point from, Point to) const {
    return Passes(from.x, to.x, area_.x, area_.width) ||
           Passes(from.y, to.y, area_.y, area_.height);
  }

  void Segment(Point from, Point to, Colour colour) {
    if (Misses(from, to)) {
      Draw(colour);
      return;
    }
    if (!WithinLineLimit(from) || !WithinLineLimit(to)) {
      const double right = area_.x + area_.width;
      const double bottom = area_.y + area_.height;
      Clip(from, to, &Point::x, &Point::y, area_.x - 1, right + 1);
      Clip(to, from, &Point::x, &Point::y, area_.x - 1, right + 1);
      if (Misses(from, to)) {
        Draw(colour);
        return;
      }
      Clip(from, to, &Point::y, &Point::x, area_.y - 1, bottom + 1);
      Clip(to, from, &Point::y, &Point::x, area_.y - 1, bottom + 1);
    }
    if (!open_ || Pixel(from) != end_) {
      Draw(colour);
      line_.Add(Pixel(from));
    }
    end_ = Pixel(to);
    line_.Add(end_);
    open_ = true;
  }

  void Draw(Colour colour) {
    if (!open_) return;
    open_ = false;
    const std::span<const Point> kept = line_.Finish();
    if (kept.size() == 1) surface_.Dots(kept, colour);
    if (kept.size() > 1) surface_.Polyline(kept, colour);
  }

  void Marks(const PlotSeries& series) {
    for (const Point& world : series.points) {
      const Point at = Exact(world);
      const bool seen = at.x >= area_.x - kMarkRadius && at.y >= area_.y - kMarkRadius &&
                        at.x <= area_.x + area_.width + kMarkRadius &&
                        at.y <= area_.y + area_.height + kMarkRadius;
      if (seen) surface_.Circle(Pixel(at), kMarkRadius, series.colour, &series.colour);
    }
  }

  Surface& surface_;
  Rect area_;
  WorldMap map_;
  PixelDots dots_;
  PixelPolyline line_;
  bool open_ = false;  // `line_` has vertices, the last of them `end_`
  Point end_;
};

}  // namespace

void PaintPlotSeries(Surface& surface, const Rect& area, const WorldWindow& window,
                     std::span<const PlotSeries> series) {
  surface.SetClip(area);
  {
    SeriesPainter painter(surface, area, window);
    for (const PlotSeries& one : series) painter.Paint(one);
  }
  surface.ClearClip();
}

}  // namespace zento
