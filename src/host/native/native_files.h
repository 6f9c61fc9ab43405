#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/services.h"
#include "text/status_fwd.h"

namespace zento {

// The machine's files.
//
// Replace follows a symbolic link instead of replacing it, keeps the permissions the file had and
// refuses a file that is marked read-only. When the very last step fails, flushing the folder after
// the rename, the new content is in place and the failure says so.
// Read refuses what is larger than a gibibyte. Append takes back what it wrote when it fails half
// way, and leaves it to the system when the bytes reach the disk.
class NativeFiles : public Files {
 public:
  Result<std::string> Read(const std::filesystem::path& path) override;
  Status Replace(const std::filesystem::path& path, std::string_view bytes) override;
  Status Append(const std::filesystem::path& path, std::string_view bytes) override;
  Status AppendFlushed(const std::filesystem::path& path, std::string_view bytes) override;
  Status Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  bool Exists(const std::filesystem::path& path) override;
  Status CreateFolder(const std::filesystem::path& path) override;
  Result<std::unique_ptr<FileReader>> Open(const std::filesystem::path& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::filesystem::path& path) override;
  std::vector<std::filesystem::path> Drives() override;
};

// The failure of the system call just made, with the system's cause as text: "write a.znt: No space
// left on device". To be called before anything else may change the system's error code.
Status SystemFailure(const std::string& doing);

// The first line of a file that holds a secret; nothing when there is no such file. Fails, saying
// how to mend it, when anybody but this user could read it, or where that cannot be told.
Result<std::optional<std::string>> ReadSecretFile(const std::filesystem::path& path);

}  // namespace zento
