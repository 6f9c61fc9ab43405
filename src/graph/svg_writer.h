#pragma once

#include <string>
#include <string_view>

#include "host/colour.h"
#include "host/surface.h"

// The pieces of an SVG document, each added to the end of a text.

namespace zento::svg {

// At most two decimals, without needless zeros.
void AddNumber(std::string& to, double value);
// "x y"
void AddPoint(std::string& to, Point at);
// ` name="value"`
void AddAttribute(std::string& to, std::string_view name, double value);
void AddAttribute(std::string& to, std::string_view name, Colour value);
// Text content: markup escaped, malformed UTF-8 and characters that XML does not allow replaced.
void AddEscaped(std::string& to, std::string_view text);

bool Finite(Point at);
bool Finite(const Rect& rect);

}  // namespace zento::svg
