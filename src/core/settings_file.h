#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "text/status.h"

// Parameters.txt: one line "key=value" a setting, read when the program starts and written when it
// ends.

namespace zento {

class Files;
struct Settings;
struct Workstation;

// Sets what the file's lines name; everything else keeps its value. The monitor's lists end with
// 21 elements. Lines without "=", unknown keys and presets other than 0 to 5 are passed over; a
// line "Table" ends the reading. Fails, and sets nothing, when the bytes hold a NUL: no text does,
// but a file whose blocks were lost in a power cut does.
Status ParseSettings(std::string_view bytes, Settings& settings);
std::string FormatSettings(const Settings& settings);

// Reads the calibration of the rotation rate; false when the file is missing or holds no table.
using CalibrationLoader = std::function<bool(const std::filesystem::path&)>;

struct SettingsLoad {
  Status read;
  // Rotation control was asked for, but `load_calibration` said no: DABoard is 0 now.
  bool calibration_invalid = false;
};

// Reads the home's settings file into ws.settings and sets ws.SettingsLoaded. When the file is
// missing or cannot be read, only RPMvsVoltageFile is changed (to empty): the caller applies the
// defaults. A calibration file named without a folder is looked for in the home.
SettingsLoad LoadSettings(Workstation& ws, Files& files, const CalibrationLoader& load_calibration);

// The built-in defaults. Rotation control and its file, the card number, the RDE, step and
// staircase windows' rotation rates and reference electrodes have none and keep what they hold.
void ApplyDefaultSettings(Workstation& ws);

// Writes the home's settings file. One that is there but was not read (SettingsLoaded is false) is
// renamed first, to "Parameters (unread 1).txt" or the next free number; when that fails, nothing
// is written.
Status SaveSettings(const Workstation& ws, Files& files);

// Names of files in the program's home folder.

inline std::filesystem::path SettingsPath(const std::filesystem::path& home) {
  return home / "Parameters.txt";
}

// The track files that were used last.
inline std::filesystem::path RecentFilesPath(const std::filesystem::path& home) {
  return home / "Recent files.txt";
}

}  // namespace zento
