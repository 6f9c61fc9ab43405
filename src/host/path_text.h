#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zento {

// Paths as the program's texts hold them, in UTF-8, whatever the machine's own encoding is.
inline std::filesystem::path PathFromText(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

inline std::string TextFromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

}  // namespace zento
