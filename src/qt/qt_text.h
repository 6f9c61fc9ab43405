#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

#include "host/path_text.h"

namespace zento {

// The program's text is UTF-8, the toolkit's UTF-16.
inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

inline QString PathToQt(const std::filesystem::path& path) {
  return ToQt(TextFromPath(path));
}
inline std::filesystem::path PathFromQt(const QString& text) {
  return PathFromText(FromQt(text));
}

// Captions are plain text; the toolkit would read "&" as the mark of a mnemonic.
inline QString PlainCaption(std::string_view caption) {
  return ToQt(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace zento
