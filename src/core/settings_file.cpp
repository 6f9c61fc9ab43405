#include "core/settings_file.h"

#include <cstddef>
#include <span>
#include <utility>

#include "core/settings_table.h"
#include "core/track_store.h"
#include "core/workstation.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/codepage.h"
#include "text/lines.h"
#include "text/number.h"

namespace zento {
namespace {

// A row for every key would be found faster through a map, but a file has 170 lines.
template <typename Owner>
bool ApplyTo(std::span<const SettingRowOf<Owner>> rows, Owner& owner, std::string_view key,
             std::string_view value) {
  for (const SettingRowOf<Owner>& row : rows) {
    if (row.key != key) continue;
    SetSettingFromText(row, owner, value);
    return true;
  }
  return false;
}

// Applies the lines of a file in order; remembers which preset they belong to.
class SettingsReader {
 public:
  explicit SettingsReader(Settings& settings) : settings_(settings) {}

  void Apply(std::string_view key, std::string_view value) {
    if (key == kPresetNumberKey) {
      preset_ = ToLong(ParseLenient(value));
    } else if (key == CVNumRow().key) {
      SetSettingFromText(CVNumRow(), settings_, value);
    } else if (!ApplyTo(SettingRows(), settings_, key, value)) {
      ApplyTo(PresetRows(), Preset(), key, value);
    }
  }

 private:
  CVPreset& Preset() {
    const auto at = static_cast<std::size_t>(preset_);
    return at < settings_.CV.size() ? settings_.CV[at] : nowhere_;
  }

  Settings& settings_;
  std::int32_t preset_ = 0;
  CVPreset nowhere_;  // takes what belongs to presets that do not exist
};

template <typename Owner>
void AppendLine(std::string& out, const SettingRowOf<Owner>& row, const Owner& owner) {
  out.append(row.key).append("=").append(SettingText(row, owner)).append("\r\n");
}

std::filesystem::path FreeNameForUnread(const std::filesystem::path& path, Files& files) {
  for (int number = 1;; ++number) {
    std::filesystem::path name = path.stem();
    name += " (unread " + std::to_string(number) + ")";
    name += path.extension();
    std::filesystem::path candidate = path.parent_path() / name;
    if (!files.Exists(candidate)) return candidate;
  }
}

}  // namespace

Status ParseSettings(std::string_view bytes, Settings& settings) {
  if (bytes.find('\0') != bytes.npos) return Status::Failure("damaged: not a text file");
  const std::string text = DecodeFile(bytes);
  SettingsReader reader(settings);
  LineReader lines(text);
  for (std::string_view line; lines.Next(line) && line != "Table";) {
    const std::size_t equals = line.find('=');
    if (equals == 0 || equals == line.npos) continue;
    reader.Apply(line.substr(0, equals), line.substr(equals + 1));
  }
  settings.MMAdch.resize(kMonitorChannels + 1);
  settings.MMScale.resize(kMonitorChannels + 1);
  return Status::Ok();
}

std::string FormatSettings(const Settings& settings) {
  std::string out;
  AppendLine(out, CVNumRow(), settings);
  for (std::size_t number = 0; number < settings.CV.size(); ++number) {
    out.append(kPresetNumberKey).append("=").append(SignedNumber(number)).append("\r\n");
    for (const PresetRow& row : PresetRows()) AppendLine(out, row, settings.CV[number]);
  }
  for (const SettingRow& row : SettingRows()) AppendLine(out, row, settings);
  return EncodeText(out);
}

SettingsLoad LoadSettings(Workstation& ws, Files& files,
                          const CalibrationLoader& load_calibration) {
  ws.SettingsLoaded = false;
  ws.settings.RPMvsVoltageFile.clear();
  const Result<std::string> bytes = files.Read(SettingsPath(ws.home));
  if (!bytes.ok()) return {bytes.status()};
  SettingsLoad load{ParseSettings(bytes.value(), ws.settings)};
  if (!load.read.ok()) return load;
  if (ws.settings.DABoard > 0) {
    const std::filesystem::path file = PathFromText(ws.settings.RPMvsVoltageFile);
    load.calibration_invalid = !load_calibration(ws.home / file);
    if (load.calibration_invalid) ws.settings.DABoard = 0;
  }
  ws.SettingsLoaded = true;
  return load;
}

void ApplyDefaultSettings(Workstation& ws) {
  SetAllToDefaults(ws.settings);
  KouteckyLevichLists& kl = ws.tracks.kl;
  kl.Resize();
  kl.KLUseFlag.assign(kTracks, 0);
  kl.KLNEnd.assign(kTracks, 0);
  kl.KLBaseMode.assign(kTracks, 0);
  kl.KLBaseNEnd.assign(kTracks, 0);
  kl.KLSubVal.assign(kTracks, 0.0);
}

Status SaveSettings(const Workstation& ws, Files& files) {
  const std::filesystem::path path = SettingsPath(ws.home);
  if (!ws.SettingsLoaded && files.Exists(path)) {
    const Status kept = files.Rename(path, FreeNameForUnread(path, files));
    if (!kept.ok()) return kept.Within("keep the settings that could not be read");
  }
  return files.Replace(path, FormatSettings(ws.settings)).Within("save the settings");
}

}  // namespace zento
