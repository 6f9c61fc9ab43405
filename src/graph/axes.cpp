#include "graph/axes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/palette.h"
#include "core/tables.h"
#include "graph/ticks.h"

namespace zento {
namespace {

constexpr Colour kPaper{255, 255, 255};
constexpr Colour kGridColour = kLightGrey;  // light grey
constexpr Colour kAxisColour = kGrey;       // dark grey

TextStyle Style(double points, HorizontalAnchor horizontal = HorizontalAnchor::kLeft,
                VerticalAnchor vertical = VerticalAnchor::kTop) {
  TextStyle style;
  style.size = points;
  style.horizontal = horizontal;
  style.vertical = vertical;
  return style;
}

// How many grid lines an axis takes at most.
int Most(double extent, double least_spacing) {
  return static_cast<int>(std::clamp(extent / least_spacing, 1.0, 10000.0));
}

// One axis: its ticks, their labels and how large those are.
struct LabelledTicks {
  Ticks ticks;
  std::vector<std::string> labels;
  Size largest;
  double stride = 1;  // ticks from one label to the next

  void Write(std::vector<std::string> texts, const Surface& surface, double points) {
    labels = std::move(texts);
    for (const std::string& label : labels) {
      const Size size = surface.Measure(label, Style(points));
      largest.width = std::max(largest.width, size.width);
      largest.height = std::max(largest.height, size.height);
    }
  }
  // Leaves labels out evenly until each has `needed` surface units.
  void Thin(double scale, double needed) {
    stride = RoundUp125(needed / std::abs(ticks.step * scale));
  }
  // The i-th tick's label, empty for one that is left out: every stride-th multiple of the step has
  // one, so that 0 keeps its own.
  std::string_view Label(int i) const {
    if (std::fmod(ticks.index + i, stride) != 0) return {};
    return labels[static_cast<std::size_t>(i)];
  }
};

// Keeps texts from covering each other.
class LabelSpace {
 public:
  // Takes the rectangle if nothing taken before touches it.
  bool Take(const Rect& rect) {
    for (const Rect& other : taken_) {
      if (rect.x < other.x + other.width && other.x < rect.x + rect.width &&
          rect.y < other.y + other.height && other.y < rect.y + rect.height) {
        return false;
      }
    }
    taken_.push_back(rect);
    return true;
  }

 private:
  std::vector<Rect> taken_;
};

// Where an axis stands: at 0 when the window contains it, else at `otherwise`.
double AxisPlace(double from, double to, const WorldAxis& map, double otherwise) {
  return (from < 0 && to > 0) || (from > 0 && to < 0) ? map(0) : otherwise;
}

// Texts never stick out of the surface unless they are larger than it.
double Within(double at, double length, double extent) {
  return std::max(0.0, std::min(at, extent - length));
}

class AxisPainter {
 public:
  AxisPainter(Surface& surface, Size extent, const AxisFrame& frame)
      : surface_(surface),
        frame_(frame),
        extent_(extent),
        map_(frame.world, extent_),
        across_(AxisPlace(frame.world.y1, frame.world.y2, map_.y, extent_.height)),
        up_(AxisPlace(frame.world.x1, frame.world.x2, map_.x, 0)) {
    const WorldWindow& world = frame.world;
    x_.ticks = MakeTicks(world.x1, world.x2, frame.x_step, Most(extent.width, kLeastSpacing));
    x_.Write(TickLabels(x_.ticks, frame.x_format), surface, kLabelSize);
    x_.Thin(map_.x.scale(), x_.largest.width + kLabelGapX);
    y_.ticks = MakeTicks(world.y1, world.y2, frame.y_step, Most(extent.height, kLeastSpacing));
    y_.Write(TickLabels(y_.ticks, frame.y_format), surface, kLabelSize);
    y_.Thin(map_.y.scale(), y_.largest.height + kLabelGapY);
  }

  void Paint() {
    Grid();
    AxisLines();
    Title();
    XLabels();
    YLabels();
  }

 private:
  static constexpr double kLabelSize = 10;    // points
  static constexpr double kLabelDrop = 2;     // from the x axis to its labels
  static constexpr double kTitleDrop = 24;    // from the x axis to the title
  static constexpr double kBeside = 4;        // from the y axis to its labels
  static constexpr double kLeastSpacing = 4;  // between grid lines
  static constexpr double kLabelGapX = 10;    // between neighbouring labels
  static constexpr double kLabelGapY = 4;

  void Grid() {
    for (int i = 0; i < x_.ticks.count; ++i) {
      const double at = map_.x(x_.ticks.Value(i));
      if (at >= 0 && at <= extent_.width) surface_.Line({at, 0}, {at, extent_.height}, kGridColour);
    }
    for (int i = 0; i < y_.ticks.count; ++i) {
      const double at = map_.y(y_.ticks.Value(i));
      if (at >= 0 && at <= extent_.height) surface_.Line({0, at}, {extent_.width, at}, kGridColour);
    }
  }

  void AxisLines() {
    // An axis at the bottom edge stands on the last row of the surface.
    const double across = std::min(across_, extent_.height - 1);
    const double up = std::min(up_, extent_.width - 1);
    surface_.Line({0, across}, {extent_.width, across}, kAxisColour);
    surface_.Line({up, 0}, {up, extent_.height}, kAxisColour);
  }

  // A text on its own ground, so that no grid line strikes it through.
  void Place(Point at, Size size, std::string_view text, double points) {
    const Rect rect{at.x - 1, at.y, size.width + 2, size.height};
    if (!space_.Take(rect)) return;
    surface_.FillBox(
        {std::floor(rect.x), std::floor(rect.y), std::ceil(rect.width) + 1, std::ceil(rect.height)},
        kPaper);
    surface_.Text(at, text, Style(points));
  }

  void Title() {
    const Size size = surface_.Measure(frame_.title, Style(frame_.title_size));
    const double wanted = across_ + kTitleDrop;
    const double at = frame_.title.empty() ? wanted : Within(wanted, size.height, extent_.height);
    raised_ = wanted - at;
    if (frame_.title.empty()) return;
    Place({Within(extent_.width, size.width + kBeside, extent_.width), at}, size, frame_.title,
          frame_.title_size);
  }

  void XLabels() {
    const double top = Within(across_ + kLabelDrop - raised_, x_.largest.height, extent_.height);
    for (int i = 0; i < x_.ticks.count; ++i) {
      const double at = map_.x(x_.ticks.Value(i));
      const std::string_view text = x_.Label(i);
      if (text.empty() || at < 0 || at > extent_.width) continue;
      const Size size = surface_.Measure(text, Style(kLabelSize));
      Place({Within(at - size.width / 2, size.width, extent_.width), top}, size, text, kLabelSize);
    }
  }

  void YLabels() {
    const bool left = up_ - kBeside - y_.largest.width >= 0;
    for (int i = 0; i < y_.ticks.count; ++i) {
      const double at = map_.y(y_.ticks.Value(i));
      const std::string_view text = y_.Label(i);
      if (text.empty() || at < 0 || at > extent_.height) continue;
      const Size size = surface_.Measure(text, Style(kLabelSize));
      const double x = left ? up_ - kBeside - size.width : up_ + kBeside;
      Place({Within(x, size.width, extent_.width),
             Within(at - size.height / 2, size.height, extent_.height)},
            size, text, kLabelSize);
    }
  }

  Surface& surface_;
  const AxisFrame& frame_;
  Size extent_;
  WorldMap map_;
  LabelledTicks x_;
  LabelledTicks y_;
  double across_;      // surface y of the x axis
  double up_;          // surface x of the y axis
  double raised_ = 0;  // how far labels and title of the x axis moved up to stay on the surface
  LabelSpace space_;
};

class FramePainter {
 public:
  FramePainter(Surface& surface, Size extent, const PlotFrame& frame)
      : surface_(surface), frame_(frame), extent_(extent) {
    const WorldWindow& window = frame.window;
    Label(x_, window.x1, window.x2, frame.x_step, extent.width, frame.x_format);
    Label(y_, window.y1, window.y2, frame.y_step, extent.height, frame.y_format);
  }

  Rect Paint() {
    surface_.Clear(kPaper);
    const bool labelled = PlaceArea();
    map_ = WorldMap(frame_.window, {area_.width, area_.height});
    x_.Thin(map_.x.scale(), x_.largest.width + kLabelGapX);
    y_.Thin(map_.y.scale(), y_.largest.height + kLabelGapY);
    XAxis(labelled);
    YAxis(labelled);
    if (labelled) Titles();
    return area_;
  }

 private:
  static constexpr double kLabelSize = 9;   // points
  static constexpr double kTitleSize = 10;  // points
  static constexpr double kTickLength = 4;
  static constexpr double kGap = 4;           // between any two things around the area
  static constexpr double kLeastSpacing = 8;  // between grid lines
  static constexpr double kLabelGapX = 12;
  static constexpr double kLabelGapY = 4;
  static constexpr double kLeastArea = 40;  // a smaller one goes without labels

  void Label(LabelledTicks& axis, double from, double to, double step, double extent,
             const std::string& format) const {
    if (!(step > 0)) step = TickStep(from, to);
    axis.ticks = MakeTicks(from, to, step, Most(extent, kLeastSpacing));
    std::vector<std::string> labels = TickLabels(axis.ticks, format);
    if (frame_.fit_formats && std::find(labels.begin(), labels.end(), "") != labels.end()) {
      const double largest = std::max(std::abs(from), std::abs(to));
      labels = TickLabels(axis.ticks, TickPattern(axis.ticks.step, largest));
    }
    axis.Write(std::move(labels), surface_, kLabelSize);
  }

  double TitleHeight(const std::string& title) const {
    if (title.empty()) return 0;
    return std::ceil(surface_.Measure(title, Style(kTitleSize)).height) + kGap;
  }

  // False when there is no room for labels and the area takes everything.
  bool PlaceArea() {
    const double left =
        std::ceil(y_.largest.width) + kTickLength + 2 * kGap + TitleHeight(frame_.y_title);
    const double bottom =
        std::ceil(x_.largest.height) + kTickLength + kGap + TitleHeight(frame_.x_title);
    const double right = std::max(8.0, std::ceil(x_.largest.width / 2) + kGap);
    const double top = std::max(8.0, std::ceil(y_.largest.height / 2) + kGap);
    area_ = {left, top, std::floor(extent_.width - left - right),
             std::floor(extent_.height - top - bottom)};
    if (area_.width >= kLeastArea && area_.height >= kLeastArea) return true;
    area_ = {0, 0, std::max(1.0, extent_.width - 1), std::max(1.0, extent_.height - 1)};
    return false;
  }

  void XAxis(bool labelled) {
    const double foot = area_.y + area_.height;
    const TextStyle style = Style(kLabelSize, HorizontalAnchor::kCentre, VerticalAnchor::kTop);
    for (int i = 0; i < x_.ticks.count; ++i) {
      const double value = x_.ticks.Value(i);
      const double at = area_.x + map_.x(value);
      if (at < area_.x || at > area_.x + area_.width) continue;
      surface_.Line({at, area_.y}, {at, foot}, (value == 0 ? kAxisColour : kGridColour));
      const std::string_view text = x_.Label(i);
      if (!labelled || text.empty()) continue;
      surface_.Line({at, foot}, {at, foot + kTickLength}, kAxisColour);
      surface_.Text({at, foot + kTickLength + 1}, text, style);
    }
  }

  void YAxis(bool labelled) {
    const double right = area_.x + area_.width;
    const TextStyle style = Style(kLabelSize, HorizontalAnchor::kRight, VerticalAnchor::kMiddle);
    for (int i = 0; i < y_.ticks.count; ++i) {
      const double value = y_.ticks.Value(i);
      const double at = area_.y + map_.y(value);
      if (at < area_.y || at > area_.y + area_.height) continue;
      surface_.Line({area_.x, at}, {right, at}, (value == 0 ? kAxisColour : kGridColour));
      const std::string_view text = y_.Label(i);
      if (!labelled || text.empty()) continue;
      surface_.Line({area_.x - kTickLength, at}, {area_.x, at}, kAxisColour);
      surface_.Text({area_.x - kTickLength - kGap, at}, text, style);
    }
  }

  void Titles() {
    const Point below{area_.x + std::floor(area_.width / 2), extent_.height - kGap / 2};
    surface_.Text(below, frame_.x_title,
                  Style(kTitleSize, HorizontalAnchor::kCentre, VerticalAnchor::kBottom));
    TextStyle upwards = Style(kTitleSize, HorizontalAnchor::kCentre, VerticalAnchor::kMiddle);
    upwards.upwards = true;
    surface_.Text({std::floor(TitleHeight(frame_.y_title) / 2) + kGap / 2,
                   area_.y + std::floor(area_.height / 2)},
                  frame_.y_title, upwards);
  }

  Surface& surface_;
  const PlotFrame& frame_;
  Size extent_;
  LabelledTicks x_;
  LabelledTicks y_;
  Rect area_;
  WorldMap map_;
};

}  // namespace

void PaintAxis(Surface& surface, Size extent, const AxisFrame& frame) {
  AxisPainter(surface, extent, frame).Paint();
}

Rect PaintPlotFrame(Surface& surface, Size extent, const PlotFrame& frame) {
  return FramePainter(surface, extent, frame).Paint();
}

void PaintPlotBorder(Surface& surface, const Rect& area) {
  surface.Box(area, kAxisColour);
}

}  // namespace zento
