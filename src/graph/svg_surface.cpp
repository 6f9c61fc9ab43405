#include "graph/svg_surface.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "host/canvas.h"
#include "text/codepage.h"

namespace zento {
namespace {

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

// At most two decimals, without needless zeros.
void AddNumber(std::string& to, double value) {
  constexpr double kMost = 1e12;  // beyond any page; keeps the hundredths within 64 bits
  if (!(std::abs(value) <= kMost)) value = value > 0 ? kMost : -kMost;
  std::int64_t hundredths = std::llround(value * 100);
  if (hundredths < 0) {
    to += '-';
    hundredths = -hundredths;
  }
  char digits[24];
  const auto whole = std::to_chars(digits, digits + sizeof digits, hundredths / 100);
  to.append(digits, whole.ptr);
  const int rest = static_cast<int>(hundredths % 100);
  if (rest == 0) return;
  to += '.';
  to += static_cast<char>('0' + rest / 10);
  if (rest % 10 != 0) to += static_cast<char>('0' + rest % 10);
}

// "x y"
void AddPoint(std::string& to, Point at) {
  AddNumber(to, at.x);
  to += ' ';
  AddNumber(to, at.y);
}

// ` name="value"`
void AddAttribute(std::string& to, std::string_view name, double value) {
  (to += ' ') += name;
  to += "=\"";
  AddNumber(to, value);
  to += '"';
}

void AddAttribute(std::string& to, std::string_view name, Colour value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  (to += ' ') += name;
  to += "=\"#";
  for (const unsigned component : {value.red, value.green, value.blue}) {
    to += kDigits[component / 16];
    to += kDigits[component % 16];
  }
  to += '"';
}

// Text content: markup escaped, malformed UTF-8 and characters that XML does not allow replaced.
void AddEscaped(std::string& to, std::string_view text) {
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  const std::string valid = MakeValidUtf8(text);
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const char c = valid[i];
    const std::string_view three = std::string_view(valid).substr(i, 3);
    if (three == "\xEF\xBF\xBE" || three == "\xEF\xBF\xBF") {  // U+FFFE and U+FFFF
      to += kReplacement;
      i += 2;
    } else if (c == '&') {
      to += "&amp;";
    } else if (c == '<') {
      to += "&lt;";
    } else if (c == '>') {
      to += "&gt;";
    } else if (c == '\t' || c == '\n' || c == '\r') {
      to += ' ';
    } else if (static_cast<unsigned char>(c) < 0x20) {
      to += kReplacement;
    } else {
      to += c;
    }
  }
}

bool Finite(Point at) {
  return std::isfinite(at.x) && std::isfinite(at.y);
}

bool Finite(const Rect& rect) {
  return Finite(Point{rect.x, rect.y}) && Finite(Point{rect.width, rect.height});
}

// Hundredths of the font's size, for U+0020 to U+007E: the wider of the two families that most
// machines show for "sans-serif", so that labels rather stand too far apart than too close.
constexpr unsigned char kWidths[] = {
    32,  40, 46, 84, 64, 95, 78, 28, 39, 39, 50, 84, 32, 36, 32, 34,  //  !"#$%&'()*+,-./
    64,  64, 64, 64, 64, 64, 64, 64, 64, 64, 34, 34, 84, 84, 84, 56,  // 0-9:;<=>?
    100, 69, 69, 70, 77, 64, 58, 78, 76, 30, 50, 66, 56, 87, 75, 79,  // @A-O
    61,  79, 70, 64, 62, 74, 69, 99, 69, 62, 69, 39, 34, 39, 84, 50,  // P-Z[\]^_
    50,  62, 64, 55, 64, 62, 36, 64, 64, 28, 28, 58, 28, 98, 64, 62,  // `a-o
    64,  64, 42, 53, 40, 64, 60, 82, 60, 60, 53, 64, 34, 64, 84,      // p-z{|}~
};
static_assert(sizeof kWidths == 0x7F - 0x20);

constexpr double kOther = 0.65;  // letters beyond ASCII
constexpr double kWide = 1.0;    // ideographs, kana, full-width forms
constexpr std::uint32_t kFirstWide = 0x2E80;
constexpr std::uint32_t kHalfKanaFirst = 0xFF61;
constexpr std::uint32_t kHalfKanaLast = 0xFFDC;

bool Continues(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The code point that starts at `at`; meant for valid UTF-8, harmless for anything else.
std::uint32_t CodePoint(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80) return lead;
  std::uint32_t point = lead & (lead >= 0xF0 ? 0x07U : lead >= 0xE0 ? 0x0FU : 0x1FU);
  for (std::size_t i = at + 1; i < text.size() && Continues(text[i]); ++i) {
    point = point << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  return point;
}

double Width(std::uint32_t point) {
  if (point >= 0x20 && point < 0x7F) return kWidths[point - 0x20] / 100.0;
  if (point >= kHalfKanaFirst && point <= kHalfKanaLast) return kWide / 2;
  return point >= kFirstWide ? kWide : kOther;
}

}  // namespace

double EstimateTextWidth(std::string_view text, bool bold) {
  double width = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!Continues(text[i])) width += Width(CodePoint(text, i));
  }
  constexpr double kBold = 1.1;
  return bold ? width * kBold : width;
}

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

std::string CanvasAsSvg(Canvas& canvas) {
  SvgSurface surface(canvas.size());
  canvas.Paint(surface);
  return surface.Document();
}

}  // namespace zento
