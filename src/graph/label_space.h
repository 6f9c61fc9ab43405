#pragma once

#include <vector>

#include "host/surface.h"

namespace zento {

// Keeps texts from covering each other.
class LabelSpace {
 public:
  // Takes the rectangle if nothing taken before touches it.
  bool Take(const Rect& rect) {
    for (const Rect& other : taken_) {
      if (rect.x < other.x + other.width && other.x < rect.x + rect.width &&
          rect.y < other.y + other.height && other.y < rect.y + rect.height) {
        return false;
      }
    }
    taken_.push_back(rect);
    return true;
  }

 private:
  std::vector<Rect> taken_;
};

}  // namespace zento
