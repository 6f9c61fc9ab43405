#include "graph/plot_range.h"

#include <algorithm>
#include <cmath>

namespace zento {

bool Extend(PlotRange& range, double x, double y) {
  if (!std::isfinite(x) || !std::isfinite(y)) return false;
  const PlotRange before = range;
  range.x1 = std::min(range.x1, x);
  range.x2 = std::max(range.x2, x);
  range.y1 = std::min(range.y1, y);
  range.y2 = std::max(range.y2, y);
  return range != before;
}

PlotRange WithMargin(const PlotRange& range, double fraction) {
  const double dx = (range.x2 - range.x1) * fraction;
  const double dy = (range.y2 - range.y1) * fraction;
  return {range.x1 - dx, range.y1 - dy, range.x2 + dx, range.y2 + dy};
}

void LiveRange::Start(const PlotRange& range, double margin) {
  margin_ = margin;
  data_ = range;
  shown_ = WithMargin(range, margin);
}

bool LiveRange::Extend(double x, double y) {
  if (!zento::Extend(data_, x, y)) return false;
  PlotRange needed = shown_;
  if (!zento::Extend(needed, x, y)) return false;
  shown_ = WithMargin(data_, margin_);
  return true;
}

}  // namespace zento
