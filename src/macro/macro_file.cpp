#include "macro/macro_file.h"

#include "core/workstation.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/codepage.h"
#include "text/lines.h"
#include "text/status.h"

namespace zento {
namespace {

std::filesystem::path DraftPath(const Workstation& workstation) {
  return workstation.home / "Unsaved macro.zmc";
}

}  // namespace

std::string MacroTextFromFile(std::string_view bytes) {
  const std::string decoded = DecodeFile(bytes);
  std::string text;
  std::string_view line;
  for (LineReader reader(decoded); reader.Next(line);) text.append(line) += '\n';
  return text;
}

std::string MacroFileFromText(std::string_view text) {
  std::string lines;
  std::string_view line;
  for (LineReader reader(text); reader.Next(line);) lines.append(line) += "\r\n";
  // The reader ends the last line too; the one line end more is missing when it had its own.
  if (text.empty() || text.back() == '\n' || text.back() == '\r') lines += "\r\n";
  return EncodeText(lines);
}

std::filesystem::path MacroFileName(std::filesystem::path path) {
  if (!TextFromPath(path).ends_with(kMacroExtension)) path += kMacroExtension;
  return path;
}

Result<std::string> ReadMacroDraft(const Workstation& workstation, Files& files) {
  if (!files.Exists(DraftPath(workstation))) return std::string();
  const auto bytes = files.Read(DraftPath(workstation));
  if (!bytes.ok()) return bytes.status();
  std::string text = MacroTextFromFile(bytes.value());
  if (!text.empty()) text.pop_back();
  return text;
}

Status KeepMacroDraft(const Workstation& workstation, Files& files, std::string_view text) {
  const std::filesystem::path path = DraftPath(workstation);
  if (text.empty() && !files.Exists(path)) return Status::Ok();
  return files.Replace(path, text.empty() ? std::string() : MacroFileFromText(text));
}

Result<std::filesystem::path> RescueMacro(const Workstation& workstation, Files& files,
                                          std::string_view text) {
  std::filesystem::path path;
  for (int number = 1; path.empty() || files.Exists(path); ++number) {
    path = workstation.home / ("Rescued macro " + std::to_string(number) + ".zmc");
  }
  const Status kept = files.Replace(path, MacroFileFromText(text));
  if (!kept.ok()) return kept;
  return path;
}

}  // namespace zento
