#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "graph/graph_view.h"
#include "graph/plot_range.h"

namespace zento {

// What a measurement window shows while it is idle: the last 4001 pairs of averaged readings, one
// value against another, on a plot that grows to hold them. The units are the caller's.
class VoltageMonitor {
 public:
  static constexpr std::size_t kSlots = 4001;
  // Marks an empty slot in its first value.
  static constexpr double kEmpty = -9999.0;

  // The plot outlives the monitor, and nothing else draws on it.
  VoltageMonitor(GraphView& plot, Colour colour);

  // Empties the ring, goes back to the first range, and shows the empty axes.
  void Clear();
  // Keeps the pair in the ring in place of the oldest one, and draws it. Values that are not finite
  // are left out.
  void Add(double x, double y) { Add(x, y, colour_); }
  // The same in another colour, where several electrodes share the monitor. A pair keeps its
  // colour when the plot is drawn anew.
  void Add(double x, double y, Colour colour);
  // Goes back to the first range; the pairs stay, those outside it unseen until it grows again.
  void ResetRange();
  void Redraw();

  const std::array<double, 2>& Slot(std::size_t index) const { return ring_[index]; }
  std::size_t WriteIndex() const { return next_; }
  const PlotRange& Range() const { return range_.data(); }

 private:
  GraphView& plot_;
  Colour colour_;
  std::vector<std::array<double, 2>> ring_;
  std::vector<Colour> colours_;  // of the slots
  std::size_t next_ = 0;
  LiveRange range_;
};

}  // namespace zento
