#include "host/virtual/memory_services.h"

#include <utility>

#include "host/path_text.h"

namespace zento {
namespace {

std::string Doing(const char* what, const std::filesystem::path& path) {
  return what + (" " + TextFromPath(path));
}

constexpr char kFull[] = "no space left on device";
constexpr char kMissing[] = "no such file or directory";

}  // namespace

void MemoryClipboard::SetPicture(Size size, const std::function<void(Surface&)>& paint) {
  text_.clear();
  ++pictures;
  picture_size = size;
  paint_picture = paint;
}

void MemoryFiles::FailNext(Operation operation, std::string why) {
  faults_.insert_or_assign(operation, std::move(why));
}

std::optional<Status> MemoryFiles::Fault(Operation operation, const std::string& doing) {
  const auto fault = faults_.extract(operation);
  if (fault.empty()) return std::nullopt;
  return Status::Failure(fault.mapped()).Within(doing);
}

std::size_t MemoryFiles::BytesWithout(const std::filesystem::path& path) const {
  std::size_t sum = 0;
  for (const auto& [name, bytes] : files_) {
    if (name != path) sum += bytes.size();
  }
  return sum;
}

Result<std::string> MemoryFiles::Read(const std::filesystem::path& path) {
  const std::string doing = Doing("read", path);
  if (auto fault = Fault(Operation::kRead, doing)) return *fault;
  const auto file = files_.find(path.lexically_normal());
  if (file == files_.end()) return Status::Failure(kMissing).Within(doing);
  return file->second;
}

Status MemoryFiles::Replace(const std::filesystem::path& path, std::string_view bytes) {
  const std::string doing = Doing("write", path);
  if (auto fault = Fault(Operation::kReplace, doing)) return *fault;
  const auto name = path.lexically_normal();
  if (capacity_ && BytesWithout(name) + bytes.size() > *capacity_) {
    return Status::Failure(kFull).Within(doing);
  }
  files_[name] = bytes;
  return Status::Ok();
}

Status MemoryFiles::Append(const std::filesystem::path& path, std::string_view bytes) {
  const std::string doing = Doing("append to", path);
  if (auto fault = Fault(Operation::kAppend, doing)) return *fault;
  if (capacity_ && BytesWithout({}) + bytes.size() > *capacity_) {
    return Status::Failure(kFull).Within(doing);
  }
  files_[path.lexically_normal()] += bytes;
  return Status::Ok();
}

Status MemoryFiles::AppendFlushed(const std::filesystem::path& path, std::string_view bytes) {
  return Append(path, bytes);
}

Status MemoryFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  const std::string doing = Doing("rename", from);
  if (auto fault = Fault(Operation::kRename, doing)) return *fault;
  if (Exists(to)) return Status::Failure(TextFromPath(to) + " exists").Within(doing);
  auto file = files_.extract(from.lexically_normal());
  if (file.empty()) return Status::Failure(kMissing).Within(doing);
  file.key() = to.lexically_normal();
  files_.insert(std::move(file));
  return Status::Ok();
}

bool MemoryFiles::Exists(const std::filesystem::path& path) {
  const auto name = path.lexically_normal();
  return files_.count(name) > 0 || folders_.count(name) > 0;
}

Status MemoryFiles::CreateFolder(const std::filesystem::path& path) {
  if (auto fault = Fault(Operation::kCreateFolder, Doing("create folder", path))) return *fault;
  folders_[path.lexically_normal()] = true;
  return Status::Ok();
}

std::vector<std::filesystem::path> MemoryFiles::List() const {
  std::vector<std::filesystem::path> paths;
  for (const auto& [name, bytes] : files_) paths.push_back(name);
  return paths;
}

}  // namespace zento
