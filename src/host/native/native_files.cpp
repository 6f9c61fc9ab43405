#include "host/native/native_files.h"

#include <system_error>

#include "host/path_text.h"
#include "text/status.h"

namespace zento {

bool NativeFiles::Exists(const std::filesystem::path& path) {
  std::error_code failed;
  return std::filesystem::exists(path, failed);
}

Status NativeFiles::CreateFolder(const std::filesystem::path& path) {
  std::error_code failed;
  std::filesystem::create_directories(path, failed);
  if (!failed && std::filesystem::is_directory(path, failed)) return Status::Ok();
  const std::string why = failed ? failed.message() : "a file of that name is in the way";
  return Status::Failure(why).Within("create folder " + TextFromPath(path));
}

Result<std::vector<FolderEntry>> NativeFiles::ListFolder(const std::filesystem::path& path) {
  std::error_code failed;
  std::vector<FolderEntry> entries;
  std::filesystem::directory_iterator entry(path, failed);
  for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
    // What has gone since, or may not be looked at, is neither.
    std::error_code unknown;
    const bool folder = entry->is_directory(unknown);
    if (!folder && !entry->is_regular_file(unknown)) continue;
    entries.push_back({entry->path().filename(), folder, entry->is_symlink(unknown)});
  }
  if (failed) {
    return Status::Failure(failed.message()).Within("list folder " + TextFromPath(path));
  }
  return entries;
}

}  // namespace zento
