#include "graph/svg_surface.h"

#include <algorithm>
#include <cmath>

#include "graph/svg_writer.h"
#include "graph/text_width.h"

namespace zento {
namespace {

using svg::AddAttribute;
using svg::AddEscaped;
using svg::AddNumber;
using svg::AddPoint;
using svg::Finite;

constexpr double kHalfPixel = 0.5;
constexpr double kPixelsPerPoint = 96.0 / 72.0;
// Of the usual sans-serif fonts, in units of their size.
constexpr double kAscent = 0.93;
constexpr double kDescent = 0.24;

std::string_view AnchorName(HorizontalAnchor anchor) {
  if (anchor == HorizontalAnchor::kCentre) return "middle";
  return anchor == HorizontalAnchor::kRight ? "end" : "start";
}

// How far the baseline stands below the anchor.
double BaselineDrop(VerticalAnchor anchor, double size) {
  if (anchor == VerticalAnchor::kTop) return kAscent * size;
  if (anchor == VerticalAnchor::kBottom) return -kDescent * size;
  return (kAscent - kDescent) / 2 * size;
}

}  // namespace

SvgSurface::SvgSurface(Size extent)
    : extent_{std::max(1.0, extent.width), std::max(1.0, extent.height)} {}

std::string SvgSurface::Document() const {
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\"";
  AddAttribute(out, "width", extent_.width);
  AddAttribute(out, "height", extent_.height);
  out += " viewBox=\"0 0 ";
  AddPoint(out, {extent_.width, extent_.height});
  out += "\">\n<rect";
  AddAttribute(out, "width", extent_.width);
  AddAttribute(out, "height", extent_.height);
  AddAttribute(out, "fill", background_);
  // Coordinates below are those of pixels; half a pixel takes them to the pixels' middles.
  out +=
      "/>\n<g transform=\"translate(.5 .5)\" fill=\"none\" stroke-linejoin=\"round\" "
      "font-family=\"sans-serif\">\n";
  out += body_;
  if (clipped_) out += "</g>\n";
  out += "</g>\n</svg>\n";
  return out;
}

void SvgSurface::Clear(Colour background) {
  body_.clear();
  clipped_ = false;
  background_ = background;
}

void SvgSurface::Stroke(Colour colour, double width) {
  AddAttribute(body_, "stroke", colour);
  if (width > 0 && width != 1) AddAttribute(body_, "stroke-width", width);
}

void SvgSurface::Line(Point from, Point to, Colour colour, double width) {
  const Point both[] = {from, to};
  Polyline(both, colour, width);
}

void SvgSurface::Polyline(std::span<const Point> points, Colour colour, double width) {
  if (points.size() < 2) return;
  body_ += "<path";
  Stroke(colour, width);
  body_ += " d=\"";
  bool interrupted = true;
  for (const Point& at : points) {
    if (!Finite(at)) {
      interrupted = true;
      continue;
    }
    body_ += interrupted ? 'M' : ' ';
    AddPoint(body_, at);
    interrupted = false;
  }
  body_ += "\"/>\n";
}

void SvgSurface::Dots(std::span<const Point> points, Colour colour) {
  if (points.empty()) return;
  // A square at each end of a line that is too short to be seen.
  body_ += "<path stroke-linecap=\"square\"";
  Stroke(colour, 0);
  body_ += " d=\"";
  for (const Point& at : points) {
    if (!Finite(at)) continue;
    body_ += 'M';
    AddPoint(body_, {std::floor(at.x), std::floor(at.y)});
    body_ += "h.01";
  }
  body_ += "\"/>\n";
}

void SvgSurface::Circle(Point centre, double radius, Colour outline, const Colour* fill) {
  if (!Finite(centre) || !(radius >= 0) || !std::isfinite(radius)) return;
  body_ += "<circle";
  AddAttribute(body_, "cx", centre.x);
  AddAttribute(body_, "cy", centre.y);
  AddAttribute(body_, "r", radius);
  Stroke(outline, 0);
  if (fill != nullptr) AddAttribute(body_, "fill", *fill);
  body_ += "/>\n";
}

void SvgSurface::AddRect(Rect rect) {
  body_ += "<rect";
  AddAttribute(body_, "x", rect.x);
  AddAttribute(body_, "y", rect.y);
  AddAttribute(body_, "width", std::max(0.0, rect.width));
  AddAttribute(body_, "height", std::max(0.0, rect.height));
}

void SvgSurface::Box(Rect rect, Colour colour) {
  if (!Finite(rect)) return;
  AddRect(rect);
  Stroke(colour, 0);
  body_ += "/>\n";
}

void SvgSurface::FillBox(Rect rect, Colour colour) {
  if (!Finite(rect)) return;
  AddRect({rect.x - kHalfPixel, rect.y - kHalfPixel, rect.width, rect.height});
  AddAttribute(body_, "fill", colour);
  body_ += "/>\n";
}

void SvgSurface::Text(Point at, std::string_view text, const TextStyle& style) {
  if (!Finite(at) || text.empty()) return;
  const double size = style.size * kPixelsPerPoint;
  const double drop = BaselineDrop(style.vertical, size);
  body_ += "<text";
  if (style.upwards) {
    body_ += " transform=\"translate(";
    AddPoint(body_, at);
    body_ += ") rotate(-90)\"";
    AddAttribute(body_, "y", drop);
  } else {
    AddAttribute(body_, "x", at.x);
    AddAttribute(body_, "y", at.y + drop);
  }
  AddAttribute(body_, "font-size", size);
  if (style.bold) body_ += " font-weight=\"bold\"";
  if (style.horizontal != HorizontalAnchor::kLeft) {
    ((body_ += " text-anchor=\"") += AnchorName(style.horizontal)) += '"';
  }
  AddAttribute(body_, "fill", style.colour);
  body_ += '>';
  AddEscaped(body_, text);
  body_ += "</text>\n";
}

Size SvgSurface::Measure(std::string_view text, const TextStyle& style) const {
  const double size = style.size * kPixelsPerPoint;
  const Size flat{EstimateTextWidth(text, style.bold) * size, (kAscent + kDescent) * size};
  return style.upwards ? Size{flat.height, flat.width} : flat;
}

void SvgSurface::SetClip(Rect rect) {
  ClearClip();
  if (!Finite(rect)) return;
  const std::string id = "clip" + std::to_string(++clips_);
  body_ += "<clipPath id=\"" + id + "\">";
  AddRect({rect.x - kHalfPixel, rect.y - kHalfPixel, rect.width, rect.height});
  body_ += "/></clipPath>\n<g clip-path=\"url(#" + id + ")\">\n";
  clipped_ = true;
}

void SvgSurface::ClearClip() {
  if (clipped_) body_ += "</g>\n";
  clipped_ = false;
}

}  // namespace zento
