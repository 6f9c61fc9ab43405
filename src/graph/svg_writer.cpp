#include "graph/svg_writer.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include "text/codepage.h"

namespace zento::svg {

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

void AddPoint(std::string& to, Point at) {
  AddNumber(to, at.x);
  to += ' ';
  AddNumber(to, at.y);
}

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

}  // namespace zento::svg
