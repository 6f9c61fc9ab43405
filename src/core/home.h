#pragma once

#include <filesystem>

// Names of files in the program's home folder.

namespace zento {

inline std::filesystem::path SettingsPath(const std::filesystem::path& home) {
  return home / "Parameters.txt";
}

// The track files that were used last.
inline std::filesystem::path RecentFilesPath(const std::filesystem::path& home) {
  return home / "Recent files.txt";
}

}  // namespace zento
