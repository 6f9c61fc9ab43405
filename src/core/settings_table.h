#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/settings.h"

// The one list of what Parameters.txt holds. Reader, writer, defaults and the command line's
// listing go through these rows; a new setting is a member of Settings and a row here.

namespace zento {

// The default of a row: none (the variable keeps what it holds), a number, a text, or for a list
// the value of each of kMonitorChannels elements.
using SettingDefault = std::variant<std::monostate, double, std::string_view, double (*)(int)>;

template <typename Owner>
struct SettingRowOf {
  using Member = std::variant<std::int32_t Owner::*, std::int16_t Owner::*, double Owner::*,
                              std::string Owner::*, std::vector<std::int16_t> Owner::*,
                              std::vector<double> Owner::*>;
  std::string_view key;
  Member member;
  SettingDefault initial;
  std::string_view meaning;  // with the unit
};
using SettingRow = SettingRowOf<Settings>;
using PresetRow = SettingRowOf<CVPreset>;

// In the order of the file: CVNum, then for each CV preset its number and the preset rows, then the
// other settings.
inline constexpr std::string_view kPresetNumberKey = "CVSetNum";
const SettingRow& CVNumRow();
std::span<const PresetRow> PresetRows();
std::span<const SettingRow> SettingRows();  // without CVNum

// The value as the file has it after "=".
template <typename Owner>
std::string SettingText(const SettingRowOf<Owner>& row, const Owner& owner);
// Numbers are read leniently; integers rounded to nearest, halves to even, and clamped to the type.
template <typename Owner>
void SetSettingFromText(const SettingRowOf<Owner>& row, Owner& owner, std::string_view text);
template <typename Owner>
void SetSettingToDefault(const SettingRowOf<Owner>& row, Owner& owner);

// Sets every setting that has a default, all CV presets alike.
void SetAllToDefaults(Settings& settings);

}  // namespace zento
