#include "graph/plot_frame.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

#include "core/axis_step.h"
#include "core/palette.h"
#include "graph/ticks.h"

namespace zento {
namespace {

constexpr Colour kPaper{255, 255, 255};
constexpr int kGridColour = 7;     // light grey
constexpr int kFrameColour = 8;    // dark grey
constexpr double kLabelSize = 9;   // points
constexpr double kTitleSize = 10;  // points
constexpr double kTickLength = 4;
constexpr double kGap = 4;           // between any two things around the area
constexpr double kLeastSpacing = 8;  // between grid lines
constexpr double kLabelGapX = 12;
constexpr double kLabelGapY = 4;
constexpr double kLeastArea = 40;  // a smaller one goes without labels

TextStyle Style(double points, HorizontalAnchor horizontal, VerticalAnchor vertical) {
  TextStyle style;
  style.size = points;
  style.horizontal = horizontal;
  style.vertical = vertical;
  return style;
}

// One axis: its ticks, their labels and how large those are.
struct AxisPart {
  Ticks ticks;
  std::vector<std::string> labels;
  Size largest;
  double stride = 1;

  AxisPart(const Surface& surface, double from, double to, double step, double extent,
           const std::string& format, bool fit) {
    if (!(step > 0)) step = TickStep(from, to);
    ticks = MakeTicks(from, to, step,
                      static_cast<int>(std::clamp(extent / kLeastSpacing, 1.0, 10000.0)));
    labels = TickLabels(ticks, format);
    if (fit && std::find(labels.begin(), labels.end(), "") != labels.end()) {
      const double largest_value = std::max(std::abs(from), std::abs(to));
      labels = TickLabels(ticks, TickPattern(ticks.step, largest_value));
    }
    const TextStyle style = Style(kLabelSize, HorizontalAnchor::kLeft, VerticalAnchor::kTop);
    for (const std::string& label : labels) {
      const Size size = surface.Measure(label, style);
      largest.width = std::max(largest.width, size.width);
      largest.height = std::max(largest.height, size.height);
    }
  }

  void Thin(double scale, double needed) {
    stride = RoundUp125(needed / std::abs(ticks.step * scale));
  }
  bool Labelled(int i) const {
    return !labels[static_cast<std::size_t>(i)].empty() && std::fmod(ticks.index + i, stride) == 0;
  }
};

class FramePainter {
 public:
  FramePainter(Surface& surface, Size extent, const PlotFrame& frame)
      : surface_(surface),
        frame_(frame),
        extent_(extent),
        x_(surface, frame.window.x1, frame.window.x2, frame.x_step, extent_.width, frame.x_format,
           frame.fit_formats),
        y_(surface, frame.window.y1, frame.window.y2, frame.y_step, extent_.height, frame.y_format,
           frame.fit_formats) {}

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
  double TitleHeight(const std::string& title) const {
    if (title.empty()) return 0;
    const TextStyle style = Style(kTitleSize, HorizontalAnchor::kLeft, VerticalAnchor::kTop);
    return std::ceil(surface_.Measure(title, style).height) + kGap;
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
      surface_.Line({at, area_.y}, {at, foot}, QBColor(value == 0 ? kFrameColour : kGridColour));
      if (!labelled || !x_.Labelled(i)) continue;
      surface_.Line({at, foot}, {at, foot + kTickLength}, QBColor(kFrameColour));
      surface_.Text({at, foot + kTickLength + 1}, x_.labels[static_cast<std::size_t>(i)], style);
    }
  }

  void YAxis(bool labelled) {
    const double right = area_.x + area_.width;
    const TextStyle style = Style(kLabelSize, HorizontalAnchor::kRight, VerticalAnchor::kMiddle);
    for (int i = 0; i < y_.ticks.count; ++i) {
      const double value = y_.ticks.Value(i);
      const double at = area_.y + map_.y(value);
      if (at < area_.y || at > area_.y + area_.height) continue;
      surface_.Line({area_.x, at}, {right, at}, QBColor(value == 0 ? kFrameColour : kGridColour));
      if (!labelled || !y_.Labelled(i)) continue;
      surface_.Line({area_.x - kTickLength, at}, {area_.x, at}, QBColor(kFrameColour));
      surface_.Text({area_.x - kTickLength - kGap, at}, y_.labels[static_cast<std::size_t>(i)],
                    style);
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
  AxisPart x_;
  AxisPart y_;
  Rect area_;
  WorldMap map_;
};

}  // namespace

Rect PaintPlotFrame(Surface& surface, Size extent, const PlotFrame& frame) {
  return FramePainter(surface, extent, frame).Paint();
}

void PaintPlotBorder(Surface& surface, const Rect& area) {
  surface.Box(area, QBColor(kFrameColour));
}

}  // namespace zento
