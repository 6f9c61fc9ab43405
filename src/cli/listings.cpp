#include "cli/listings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <type_traits>
#include <variant>
#include <vector>

#include "core/settings_table.h"
#include "core/tables.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "core/track_table.h"
#include "devices/device_table.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/number.h"

namespace zento {
namespace {

template <typename Owner>
void AppendSetting(std::string& text, const SettingRowOf<Owner>& row, const Owner& owner,
                   const std::string& suffix = {}) {
  constexpr std::string_view kTypes[] = {"integer", "short integer",    "number",
                                         "text",    "list of integers", "list of numbers"};
  std::string value = SettingText(row, owner);
  if (value.starts_with(' ')) value.erase(0, 1);
  text.append(row.key).append(suffix).append("\t").append(kTypes[row.member.index()]);
  text.append("\t").append(value).append("\t").append(row.meaning);
  if constexpr (std::is_same_v<Owner, Settings>) {
    const auto* const number = std::get_if<std::int32_t Settings::*>(&row.member);
    const std::string devices = number != nullptr ? DeviceNames(*number) : "";
    if (!devices.empty()) text.append(": ").append(devices);
  }
  text.append("\n");
}

}  // namespace

std::string SettingsListing(const Settings& settings) {
  std::string text = "key\ttype\tvalue\tmeaning\n";
  AppendSetting(text, CVNumRow(), settings);
  for (std::size_t preset = 0; preset < settings.CV.size(); ++preset) {
    for (const PresetRow& row : PresetRows()) {
      AppendSetting(text, row, settings.CV[preset], "(" + std::to_string(preset) + ")");
    }
  }
  for (const SettingRow& row : SettingRows()) AppendSetting(text, row, settings);
  return text;
}

std::string BenchListing(const sim::Parameters& parameters) {
  std::vector<std::array<std::string, 3>> rows;
  std::array<std::size_t, 3> widths{};
  for (const sim::Parameter& parameter : sim::ParameterTable()) {
    rows.push_back({std::string(parameter.key), sim::ValueText(parameters, parameter),
                    std::string(parameter.unit)});
    for (std::size_t i = 0; i < 3; ++i) widths[i] = std::max(widths[i], rows.back()[i].size());
  }
  std::string text;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t i = 0; i < 3; ++i) {
      text += rows[row][i] + std::string(widths[i] - rows[row][i].size() + 2, ' ');
    }
    const sim::Parameter& parameter = sim::ParameterTable()[row];
    text.append(parameter.help);
    const std::string others = OtherStandards(parameter, parameters.Kind());
    if (!others.empty()) text.append("; default of ").append(others);
    text.append("\n");
  }
  return text;
}

}  // namespace zento
