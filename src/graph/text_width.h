#pragma once

#include <string_view>

namespace zento {

// The estimated width of a line of UTF-8 in a common sans-serif font, in units of the font's size.
double EstimateTextWidth(std::string_view text, bool bold);

}  // namespace zento
