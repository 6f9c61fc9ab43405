#include "ui/main/recent_files.h"

#include <algorithm>
#include <system_error>

#include "core/settings_file.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/codepage.h"
#include "text/lines.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::size_t kLongestFolder = 50;  // bytes in a menu

// As it is found again from any folder; the same file always by the same name.
std::filesystem::path FullPath(const std::filesystem::path& path) {
  std::error_code failed;
  const std::filesystem::path full = std::filesystem::absolute(path, failed);
  return (failed ? path : full).lexically_normal();
}

// Lines would cut it, and a text file cannot hold what is no text.
bool FitsALine(const std::string& text) {
  return !text.empty() && text.find_first_of("\r\n") == text.npos && IsValidUtf8(text);
}

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string EndOf(const std::string& folder) {
  if (folder.size() <= kLongestFolder) return folder;
  std::size_t at = folder.size() - kLongestFolder;
  while (at < folder.size() && IsContinuation(folder[at])) ++at;
  return "..." + folder.substr(at);
}

}  // namespace

RecentFiles::RecentFiles(Files& files, const std::filesystem::path& home)
    : files_(files), file_(RecentFilesPath(home)) {
  const auto bytes = files_.Read(file_);
  if (!bytes.ok()) return;
  const std::string text = DecodeFile(bytes.value());
  LineReader lines(text);
  for (std::string_view line; paths_.size() < kMost && lines.Next(line);) {
    if (!line.empty()) paths_.push_back(PathFromText(line));
  }
}

Status RecentFiles::Add(const std::filesystem::path& path) {
  const std::filesystem::path full = FullPath(path);
  if (!FitsALine(TextFromPath(full))) return Status::Ok();
  std::erase(paths_, full);
  paths_.insert(paths_.begin(), full);
  if (paths_.size() > kMost) paths_.resize(kMost);
  return Write();
}

Status RecentFiles::Remove(const std::filesystem::path& path) {
  std::erase(paths_, path);
  return Write();
}

std::filesystem::path RecentFiles::Folder() const {
  return paths_.empty() ? std::filesystem::path() : paths_.front().parent_path();
}

Status RecentFiles::Write() const {
  std::string text;
  for (const std::filesystem::path& path : paths_) text += TextFromPath(path) + "\r\n";
  return files_.Replace(file_, EncodeText(text)).Within("remember the last files");
}

std::filesystem::path StartFolder(Files& files, const std::filesystem::path& home) {
  const std::filesystem::path folder = RecentFiles(files, home).Folder();
  return !folder.empty() && files.ListFolder(folder).ok() ? folder : home;
}

std::string RecentCaption(std::size_t place, const std::filesystem::path& path) {
  return std::to_string(place + 1) + " " + TextFromPath(path.filename()) + " - " +
         EndOf(TextFromPath(path.parent_path()));
}

}  // namespace zento
