#pragma once

// What the boxes of the measurement windows have in common: how they are read, when an entry
// counts, and how entries out of range are put right, silently.

#include <functional>
#include <initializer_list>
#include <string>

#include "host/controls.h"
#include "text/number.h"

namespace zento {

inline double NumberIn(const TextBox& box) {
  return ParseLenient(box.text());
}

inline void ShowNumber(TextBox& box, double value) {
  box.SetText(PlainNumber(value));
}

// Calls `committed` when a person leaves one of the boxes or presses Enter in it.
inline void OnCommit(std::initializer_list<TextBox*> boxes,
                     const std::function<void()>& committed) {
  for (TextBox* box : boxes) {
    box->on_lost_focus = committed;
    box->on_key = [committed](Key key) {
      if (key.code == KeyCode::kEnter) committed();
    };
  }
}

// Readings averaged a point, cycles: below 1 becomes 1.
inline void LimitToOneOrMore(TextBox& box) {
  if (NumberIn(box) < 1) box.SetText("1");
}

// Sampling rates (Hz): 0 or less becomes 0.1.
inline void LimitToSomeRate(TextBox& box) {
  if (NumberIn(box) <= 0) box.SetText("0.1");
}

// A rotation rate (rpm) as text, 0 to 10000.
inline std::string LimitedRpm(const std::string& rpm) {
  const double value = ParseLenient(rpm);
  return value < 0 ? "0" : value > 10000 ? "10000" : rpm;
}

// A current scale (A/V): 0 or less becomes 1e-5.
inline double LimitedScale(double amperes_per_volt) {
  return amperes_per_volt > 0 ? amperes_per_volt : 1e-5;
}

}  // namespace zento
