#pragma once

namespace zento {

// A rectangle of data coordinates, x1 <= x2 and y1 <= y2.
struct PlotRange {
  double x1 = 0;
  double y1 = 0;
  double x2 = 1;
  double y2 = 1;
  friend bool operator==(const PlotRange&, const PlotRange&) = default;
};

// Enlarges the range by just as much as it takes to hold the point. True when it had to. A point
// with a coordinate that is not finite changes nothing.
bool Extend(PlotRange& range, double x, double y);

// The range with `fraction` of its width added left and right, and of its height above and below.
PlotRange WithMargin(const PlotRange& range, double fraction = 0.1);

// The range of a curve that grows while it is drawn. What is shown has a margin around the data, so
// that the whole curve need be drawn anew only when a point leaves the margin as well: with 10 %
// that is some twenty times for a tenfold growth, however many points there are.
class LiveRange {
 public:
  LiveRange() = default;
  explicit LiveRange(const PlotRange& start, double margin = 0.1) { Start(start, margin); }

  void Start(const PlotRange& range, double margin = 0.1);
  // Takes in one more point. True: it lies outside what is shown, which has been enlarged; draw
  // everything anew with `shown()`.
  bool Extend(double x, double y);

  // The start enlarged to hold the points, without margin; what a track stores as its range.
  const PlotRange& data() const { return data_; }
  const PlotRange& shown() const { return shown_; }

 private:
  PlotRange data_;
  PlotRange shown_;
  double margin_ = 0.1;
};

}  // namespace zento
