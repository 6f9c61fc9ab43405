#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "host/form.h"
#include "host/surface.h"

namespace zento {

// For tests: a picture of plain pixels, lines by Bresenham's rule in the same direction whichever
// end comes first. Texts are not drawn but kept with the rectangle they cover.
class TestSurface : public Surface {
 public:
  struct Written {
    std::string text;
    Rect rect;
    double size;
  };

  explicit TestSurface(Size extent)
      : extent_(extent),
        width_(static_cast<int>(extent.width)),
        height_(static_cast<int>(extent.height)),
        pixels_(static_cast<std::size_t>(width_ * height_), Colour{255, 255, 255}) {}

  Colour At(int x, int y) const { return pixels_[static_cast<std::size_t>(y * width_ + x)]; }
  int Count(Colour colour) const {
    return static_cast<int>(std::count(pixels_.begin(), pixels_.end(), colour));
  }
  bool SamePixels(const TestSurface& other) const { return pixels_ == other.pixels_; }
  const Written* Find(const std::string& text) const {
    const auto found = std::find_if(texts.begin(), texts.end(),
                                    [&](const Written& one) { return one.text == text; });
    return found == texts.end() ? nullptr : &*found;
  }

  std::vector<Written> texts;
  std::size_t vertices = 0;  // of lines
  std::size_t dots = 0;
  int calls = 0;

  Size Extent() const override { return extent_; }
  void Clear(Colour background) override {
    std::fill(pixels_.begin(), pixels_.end(), background);
    texts.clear();
  }
  void Line(Point from, Point to, Colour colour, double width = 0) override {
    const Point both[] = {from, to};
    Polyline(both, colour, width);
  }
  void Polyline(std::span<const Point> points, Colour colour, double /*width*/ = 0) override {
    ++calls;
    vertices += points.size();
    for (std::size_t i = 1; i < points.size(); ++i) Segment(points[i - 1], points[i], colour);
  }
  void Dots(std::span<const Point> points, Colour colour) override {
    ++calls;
    dots += points.size();
    for (const Point& at : points) Set(std::lround(at.x), std::lround(at.y), colour);
  }
  void Circle(Point centre, double radius, Colour outline, const Colour* fill = nullptr) override {
    for (double y = -radius; y <= radius; ++y) {
      for (double x = -radius; x <= radius; ++x) {
        const double r = std::hypot(x, y);
        if (r > radius || (fill == nullptr && r < radius - 1)) continue;
        Set(std::lround(centre.x + x), std::lround(centre.y + y), fill ? *fill : outline);
      }
    }
  }
  void Box(Rect r, Colour colour) override {
    const Point corners[] = {{r.x, r.y},
                             {r.x + r.width, r.y},
                             {r.x + r.width, r.y + r.height},
                             {r.x, r.y + r.height},
                             {r.x, r.y}};
    Polyline(corners, colour);
  }
  void FillBox(Rect r, Colour colour) override {
    const auto left = std::max(0.0, std::round(r.x));
    const auto top = std::max(0.0, std::round(r.y));
    for (double y = top; y < std::min(r.y + r.height, extent_.height); ++y) {
      for (double x = left; x < std::min(r.x + r.width, extent_.width); ++x) {
        Set(std::lround(x), std::lround(y), colour);
      }
    }
  }
  void Text(Point at, std::string_view text, const TextStyle& style) override {
    if (text.empty()) return;
    const Size size = Measure(text, style);
    Rect rect{at.x, at.y, size.width, size.height};
    const bool up = style.upwards;
    if (style.horizontal == HorizontalAnchor::kCentre)
      (up ? rect.y : rect.x) -= Along(rect, up) / 2;
    if (style.horizontal == HorizontalAnchor::kRight) rect.x -= rect.width;
    if (style.vertical == VerticalAnchor::kMiddle) (up ? rect.x : rect.y) -= Along(rect, !up) / 2;
    if (style.vertical == VerticalAnchor::kBottom) rect.y -= rect.height;
    texts.push_back({std::string(text), rect, style.size});
  }
  Size Measure(std::string_view text, const TextStyle& style) const override {
    const double length = 0.8 * style.size * static_cast<double>(text.size());
    const Size flat{length, 1.5 * style.size};
    return style.upwards ? Size{flat.height, flat.width} : flat;
  }
  void SetClip(Rect rect) override { clip_ = rect; }
  void ClearClip() override { clip_ = {-1e9, -1e9, 2e9, 2e9}; }

 private:
  static double Along(const Rect& rect, bool up) { return up ? rect.height : rect.width; }

  void Set(long x, long y, Colour colour) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
    const auto column = static_cast<double>(x);
    const auto row = static_cast<double>(y);
    if (column < clip_.x || column >= clip_.x + clip_.width || row < clip_.y ||
        row >= clip_.y + clip_.height) {
      return;
    }
    pixels_[static_cast<std::size_t>(y * width_ + x)] = colour;
  }

  void Segment(Point from, Point to, Colour colour) {
    if (to.x < from.x || (to.x == from.x && to.y < from.y)) std::swap(from, to);
    long x = std::lround(from.x);
    long y = std::lround(from.y);
    const long last_x = std::lround(to.x);
    const long last_y = std::lround(to.y);
    const long dx = last_x - x;
    const long dy = -std::labs(last_y - y);
    const long down = y < last_y ? 1 : -1;
    long error = dx + dy;
    for (;;) {
      Set(x, y, colour);
      if (x == last_x && y == last_y) return;
      const long twice = 2 * error;
      if (twice >= dy) {
        error += dy;
        ++x;
      }
      if (twice <= dx) {
        error += dx;
        y += down;
      }
    }
  }

  Size extent_;
  int width_;
  int height_;
  std::vector<Colour> pixels_;
  Rect clip_{-1e9, -1e9, 2e9, 2e9};
};

// For tests: shows a form's one canvas as a screen does, keeping the picture and adding to it.
class TestView : public FormView {
 public:
  explicit TestView(Canvas& canvas) : canvas_(canvas), screen(canvas.size()) {
    canvas.form().SetView(this);
  }
  ~TestView() override { canvas_.form().SetView(nullptr); }

  // Paints anew if that is due.
  TestSurface& Screen() {
    if (due_) {
      screen = TestSurface(canvas_.size());
      canvas_.Paint(screen);
      due_ = false;
      ++repaints;
    }
    return screen;
  }

  void ControlChanged(Control&) override {}
  void CanvasInvalid(Canvas&) override { due_ = true; }
  void CanvasOverlayInvalid(Canvas&) override {}
  void CanvasExtended(Canvas&, Rect dirty, const std::function<void(Surface&)>& paint) override {
    if (due_) return;
    screen.SetClip(dirty);
    paint(screen);
    screen.ClearClip();
    last_dirty = dirty;
    ++extensions;
  }
  void CaptionChanged(Form&) override {}
  void FocusRequested(Control&) override {}
  void GeometryRequested(Form&) override {}

 private:
  Canvas& canvas_;
  bool due_ = true;

 public:
  TestSurface screen;
  int repaints = 0;
  int extensions = 0;
  Rect last_dirty;
};

}  // namespace zento
