#pragma once

#include <algorithm>
#include <span>

namespace zento {

// Equal lengths and values; one NaN is as good as another, as something that did not change is to
// be the same.
inline bool SameValues(std::span<const double> a, std::span<const double> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](double x, double y) { return x == y || (x != x && y != y); });
}

}  // namespace zento
