#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zento {

// An opaque colour, components 0 to 255.
struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  friend bool operator==(const Colour&, const Colour&) = default;
};

// Surface coordinates: device-independent pixels, origin top left, y growing downwards.
struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

enum class HorizontalAnchor { kLeft, kCentre, kRight };
enum class VerticalAnchor { kTop, kMiddle, kBottom };

struct TextStyle {
  double size = 10;  // points, > 0
  Colour colour;
  HorizontalAnchor horizontal =
      HorizontalAnchor::kLeft;  // which edge of the text stands at the point
  VerticalAnchor vertical = VerticalAnchor::kTop;
  bool bold = false;
  bool upwards = false;  // turned a quarter anticlockwise, for the title of a y axis
};

// What pictures are drawn on: a widget, a picture for the clipboard, a printed page, an SVG file.
// A line width of 0 is the thinnest line the surface has, one pixel on a screen.
class Surface {
 public:
  virtual ~Surface() = default;

  virtual Size Extent() const = 0;
  virtual void Clear(Colour background) = 0;
  virtual void Line(Point from, Point to, Colour colour, double width = 0) = 0;
  // Consecutive points joined; fewer than two draw nothing.
  virtual void Polyline(std::span<const Point> points, Colour colour, double width = 0) = 0;
  // One pixel each.
  virtual void Dots(std::span<const Point> points, Colour colour) = 0;
  virtual void Circle(Point centre, double radius, Colour outline,
                      const Colour* fill = nullptr) = 0;
  virtual void Box(Rect rect, Colour colour) = 0;
  virtual void FillBox(Rect rect, Colour colour) = 0;
  // `text` is one line of UTF-8.
  virtual void Text(Point at, std::string_view text, const TextStyle& style) = 0;
  virtual Size Measure(std::string_view text, const TextStyle& style) const = 0;
  // Drawing outside `rect` has no effect until the clip is cleared.
  virtual void SetClip(Rect rect) = 0;
  virtual void ClearClip() = 0;
};

}  // namespace zento
