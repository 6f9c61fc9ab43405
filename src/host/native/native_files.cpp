#include "host/native/native_files.h"

#include <system_error>

#include "host/path_text.h"

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

}  // namespace zento
