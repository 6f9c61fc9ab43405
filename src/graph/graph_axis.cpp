#include "graph/graph_axis.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

#include "core/palette.h"
#include "graph/label_space.h"
#include "graph/ticks.h"

namespace zento {
namespace {

constexpr int kGridColour = 7;  // light grey
constexpr int kAxisColour = 8;  // dark grey
constexpr Colour kPaper{255, 255, 255};
constexpr double kLabelSize = 10;    // points
constexpr double kLabelDrop = 2;     // from the x axis to its labels
constexpr double kTitleDrop = 24;    // from the x axis to the title
constexpr double kBeside = 4;        // from the y axis to its labels
constexpr double kLeastSpacing = 4;  // between grid lines
constexpr double kLabelGapX = 10;    // between neighbouring labels
constexpr double kLabelGapY = 4;

TextStyle Style(double points) {
  TextStyle style;
  style.size = points;
  return style;
}

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
        x_ticks_(MakeTicks(frame.world.x1, frame.world.x2, frame.x_step, Most(extent_.width))),
        y_ticks_(MakeTicks(frame.world.y1, frame.world.y2, frame.y_step, Most(extent_.height))),
        across_(AxisPlace(frame.world.y1, frame.world.y2, map_.y, extent_.height)),
        up_(AxisPlace(frame.world.x1, frame.world.x2, map_.x, 0)) {}

  void Paint() {
    Grid();
    AxisLines();
    Title();
    XLabels();
    YLabels();
  }

 private:
  static int Most(double extent) {
    return static_cast<int>(std::clamp(extent / kLeastSpacing, 1.0, 10000.0));
  }

  void Grid() {
    for (int i = 0; i < x_ticks_.count; ++i) {
      const double at = map_.x(x_ticks_.Value(i));
      if (at >= 0 && at <= extent_.width)
        surface_.Line({at, 0}, {at, extent_.height}, QBColor(kGridColour));
    }
    for (int i = 0; i < y_ticks_.count; ++i) {
      const double at = map_.y(y_ticks_.Value(i));
      if (at >= 0 && at <= extent_.height)
        surface_.Line({0, at}, {extent_.width, at}, QBColor(kGridColour));
    }
  }

  void AxisLines() {
    // An axis at the bottom edge stands on the last row of the surface.
    const double across = std::min(across_, extent_.height - 1);
    const double up = std::min(up_, extent_.width - 1);
    surface_.Line({0, across}, {extent_.width, across}, QBColor(kAxisColour));
    surface_.Line({up, 0}, {up, extent_.height}, QBColor(kAxisColour));
  }

  // A text on its own ground, so that no grid line strikes it through.
  bool Place(Point at, Size size, std::string_view text, double points) {
    const Rect rect{at.x - 1, at.y, size.width + 2, size.height};
    if (!space_.Take(rect)) return false;
    surface_.FillBox(
        {std::floor(rect.x), std::floor(rect.y), std::ceil(rect.width) + 1, std::ceil(rect.height)},
        kPaper);
    surface_.Text(at, text, Style(points));
    return true;
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

  struct Labels {
    std::vector<std::string> texts;
    Size largest;
    double stride = 1;  // ticks from one label to the next
  };

  Labels MakeLabels(const Ticks& ticks, const WorldAxis& axis, const std::string& format,
                    bool horizontal) {
    Labels labels;
    labels.texts = TickLabels(ticks, format);
    for (const std::string& text : labels.texts) {
      const Size size = surface_.Measure(text, Style(kLabelSize));
      labels.largest.width = std::max(labels.largest.width, size.width);
      labels.largest.height = std::max(labels.largest.height, size.height);
    }
    const double spacing = std::abs(ticks.step * axis.scale());
    const double needed =
        horizontal ? labels.largest.width + kLabelGapX : labels.largest.height + kLabelGapY;
    labels.stride = RoundUp125(needed / spacing);
    return labels;
  }

  // Every stride-th multiple of the step, so that 0 keeps its label.
  static bool Labelled(const Ticks& ticks, const Labels& labels, int i) {
    return !labels.texts[static_cast<std::size_t>(i)].empty() &&
           std::fmod(ticks.index + i, labels.stride) == 0;
  }

  void XLabels() {
    const Labels labels = MakeLabels(x_ticks_, map_.x, frame_.x_format, true);
    const double top =
        Within(across_ + kLabelDrop - raised_, labels.largest.height, extent_.height);
    for (int i = 0; i < x_ticks_.count; ++i) {
      const double at = map_.x(x_ticks_.Value(i));
      if (!Labelled(x_ticks_, labels, i) || at < 0 || at > extent_.width) continue;
      const std::string& text = labels.texts[static_cast<std::size_t>(i)];
      const Size size = surface_.Measure(text, Style(kLabelSize));
      Place({Within(at - size.width / 2, size.width, extent_.width), top}, size, text, kLabelSize);
    }
  }

  void YLabels() {
    const Labels labels = MakeLabels(y_ticks_, map_.y, frame_.y_format, false);
    const bool left = up_ - kBeside - labels.largest.width >= 0;
    for (int i = 0; i < y_ticks_.count; ++i) {
      const double at = map_.y(y_ticks_.Value(i));
      if (!Labelled(y_ticks_, labels, i) || at < 0 || at > extent_.height) continue;
      const std::string& text = labels.texts[static_cast<std::size_t>(i)];
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
  Ticks x_ticks_;
  Ticks y_ticks_;
  double across_;      // surface y of the x axis
  double up_;          // surface x of the y axis
  double raised_ = 0;  // how far labels and title of the x axis moved up to stay on the surface
  LabelSpace space_;
};

}  // namespace

void PaintAxis(Surface& surface, Size extent, const AxisFrame& frame) {
  AxisPainter(surface, extent, frame).Paint();
}

}  // namespace zento
