#pragma once

// What the boxes of the measurement windows have in common: how they are read, when an entry
// counts, and how entries out of range are put right, silently.

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "host/controls.h"
#include "text/number.h"

namespace zento {

inline double NumberIn(const TextBox& box) {
  return ParseLenient(box.text());
}

inline void ShowNumber(TextBox& box, double value) {
  box.SetText(PlainNumber(value));
}

// Calls `committed` when a person leaves the box or presses Enter in it.
inline void OnCommit(TextBox& box, const std::function<void()>& committed) {
  box.on_commit = committed;
}

// A box and the number of the settings that it holds. A window lists them once, and shows, stores
// and watches what it listed.
struct SettingBox {
  TextBox* box;
  std::variant<double*, std::int32_t*> setting;
};
using SettingBoxes = std::vector<SettingBox>;

inline void ShowBoxes(const SettingBoxes& boxes) {
  for (const SettingBox& entry : boxes) {
    std::visit([&](const auto* setting) { ShowNumber(*entry.box, *setting); }, entry.setting);
  }
}

inline void StoreNumber(double number, double& setting) {
  setting = number;
}
inline void StoreNumber(double number, std::int32_t& setting) {
  setting = ToLong(number);
}

inline void StoreBoxes(const SettingBoxes& boxes) {
  for (const SettingBox& entry : boxes) {
    std::visit([&](auto* setting) { StoreNumber(NumberIn(*entry.box), *setting); }, entry.setting);
  }
}

inline void OnCommit(const SettingBoxes& boxes, const std::function<void()>& committed) {
  for (const SettingBox& entry : boxes) entry.box->on_commit = committed;
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
