#include "host/virtual/memory_services.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "host/path_text.h"
#include "text/status.h"

namespace zento {
namespace {

std::string Doing(const char* what, const std::filesystem::path& path) {
  return what + (" " + TextFromPath(path));
}

constexpr char kFull[] = "no space left on device";
constexpr char kMissing[] = "no such file or directory";

// Reads on in what the file held when it was opened.
class MemoryReader : public FileReader {
 public:
  explicit MemoryReader(std::string bytes) : bytes_(std::move(bytes)) {}
  Result<std::size_t> Read(std::span<char> room) override {
    const std::size_t count = std::min(room.size(), bytes_.size() - at_);
    std::copy_n(bytes_.data() + at_, count, room.data());
    at_ += count;
    return count;
  }
  std::uint64_t Size() const override { return bytes_.size(); }

 private:
  std::string bytes_;
  std::size_t at_ = 0;
};

// "a/b/" and "a/b" are the same folder.
std::filesystem::path Folder(const std::filesystem::path& path) {
  const auto normal = path.lexically_normal();
  return normal.has_filename() || normal == normal.root_path() ? normal : normal.parent_path();
}

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

Result<std::unique_ptr<FileReader>> MemoryFiles::Open(const std::filesystem::path& path) {
  auto bytes = Read(path);
  if (!bytes.ok()) return bytes.status();
  return std::unique_ptr<FileReader>(std::make_unique<MemoryReader>(std::move(bytes.value())));
}

Result<std::vector<FolderEntry>> MemoryFiles::ListFolder(const std::filesystem::path& path) {
  const std::string doing = Doing("list folder", path);
  if (auto fault = Fault(Operation::kListFolder, doing)) return *fault;
  const auto folder = Folder(path);
  std::vector<FolderEntry> entries;
  std::set<std::filesystem::path> folders;
  // Every path below the folder shows its first step there.
  const auto look = [&](const std::filesystem::path& name, bool is_folder) {
    const auto below = name.lexically_relative(folder);
    if (below.empty() || *below.begin() == ".." || *below.begin() == ".") return;
    if (is_folder || std::next(below.begin()) != below.end()) {
      folders.insert(*below.begin());
    } else {
      entries.push_back({below, false, false});
    }
  };
  for (const auto& [name, bytes] : files_) look(name, false);
  for (const auto& [name, made] : folders_) look(Folder(name), true);
  for (const auto& name : folders) entries.push_back({name, true, false});
  const bool known = !entries.empty() || folder == folder.root_path() ||
                     folders_.count(folder) > 0 || folders_.count(folder / "") > 0;
  if (!known) return Status::Failure(kMissing).Within(doing);
  return entries;
}

std::vector<std::filesystem::path> MemoryFiles::Drives() {
  return {"/"};
}

std::vector<std::filesystem::path> MemoryFiles::List() const {
  std::vector<std::filesystem::path> paths;
  for (const auto& [name, bytes] : files_) paths.push_back(name);
  return paths;
}

MemoryMail::MemoryMail(TimerQueue& timers) : arrival_(timers, [this] { DeliverFirst(); }) {}

void MemoryMail::Send(const MailMessage& message, std::function<void(const Status&)> done) {
  Status status;
  if (const auto fault = std::exchange(fault_, std::nullopt)) status = Status::Failure(*fault);
  on_the_way_.push_back({message, std::move(done), std::move(status)});
  if (arrival_.Enabled()) return;
  arrival_.SetInterval(std::max<std::int64_t>(duration_ms_, 1));
  arrival_.SetEnabled(true);
}

void MemoryMail::DeliverFirst() {
  OnTheWay mail = std::move(on_the_way_.front());
  on_the_way_.pop_front();
  arrival_.SetEnabled(!on_the_way_.empty());
  if (mail.status.ok()) sent.push_back(std::move(mail.message));
  if (mail.done) mail.done(mail.status);
}

void MemoryMail::Finish() {
  while (!on_the_way_.empty()) DeliverFirst();
}

}  // namespace zento
