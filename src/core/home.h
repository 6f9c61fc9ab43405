#pragma once

#include <filesystem>

// Names of files in the program's home folder.

namespace zento {

inline std::filesystem::path SettingsPath(const std::filesystem::path& home) {
  return home / "Parameters.txt";
}

}  // namespace zento
