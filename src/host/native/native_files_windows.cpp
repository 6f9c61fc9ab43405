#include "host/native/native_files.h"

#include <windows.h>
#include <algorithm>
#include <atomic>
#include <string>

#include "host/native/windows_text.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::size_t kLargest = std::size_t{1} << 30;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A handle that closes itself.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() { Close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }
  bool Close() {
    const HANDLE handle = handle_;
    handle_ = INVALID_HANDLE_VALUE;
    return handle == INVALID_HANDLE_VALUE || CloseHandle(handle) != 0;
  }

 private:
  HANDLE handle_;
};

HANDLE OpenHandle(const std::filesystem::path& path, DWORD access, DWORD disposition) {
  return CreateFileW(path.c_str(), access, kShareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                     nullptr);
}

bool WriteAll(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1 << 24));
    DWORD written = 0;
    if (WriteFile(file, bytes.data(), piece, &written, nullptr) == 0) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

// The file a symbolic link ends at; the path itself when there is nothing yet.
std::filesystem::path FollowLinks(const std::filesystem::path& path) {
  const Handle file(CreateFileW(path.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file) return path;
  std::wstring name(32768, L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(file.get(), name.data(), static_cast<DWORD>(name.size()), 0);
  if (length == 0 || length >= name.size()) return path;
  name.resize(length);
  return name;
}

// Virus scanners hold a fresh file open for a moment.
bool MoveOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  for (int attempt = 0; attempt < 10; ++attempt) {
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
        0) {
      return true;
    }
    const DWORD code = GetLastError();
    if (code != ERROR_SHARING_VIOLATION && code != ERROR_ACCESS_DENIED) return false;
    const DWORD attributes = GetFileAttributesW(to.c_str());
    SetLastError(code);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
      return false;
    }
    Sleep(20);
    SetLastError(code);
  }
  return false;
}

std::filesystem::path Beside(const std::filesystem::path& target) {
  static std::atomic<unsigned> count{0};
  return target.parent_path() / (".zento-" + std::to_string(GetCurrentProcessId()) + "-" +
                                 std::to_string(count++) + ".tmp");
}

// Removes a file when it goes, unless told that the file was moved away.
struct Remover {
  explicit Remover(std::filesystem::path file) : path(std::move(file)) {}
  ~Remover() {
    if (!path.empty()) DeleteFileW(path.c_str());
  }
  Remover(const Remover&) = delete;
  Remover& operator=(const Remover&) = delete;
  std::filesystem::path path;
};

Status AppendTo(const std::filesystem::path& path, std::string_view bytes, bool flush) {
  const std::string doing = "append to " + TextFromPath(path);
  Handle file(OpenHandle(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
  if (!file) return SystemFailure(doing);
  LARGE_INTEGER end{};
  if (SetFilePointerEx(file.get(), {}, &end, FILE_END) == 0) return SystemFailure(doing);
  if (!WriteAll(file.get(), bytes) || (flush && FlushFileBuffers(file.get()) == 0)) {
    Status failed = SystemFailure(doing);
    if (SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN) == 0 ||
        SetEndOfFile(file.get()) == 0) {
      return Status::Failure(failed.why() + "; part of it was written");
    }
    return failed;
  }
  return file.Close() ? Status::Ok() : SystemFailure(doing);
}

class WindowsReader : public FileReader {
 public:
  WindowsReader(HANDLE file, std::string doing) : file_(file), doing_(std::move(doing)) {}
  bool is_file() const { return file_ && GetFileType(file_.get()) == FILE_TYPE_DISK; }
  Result<std::size_t> Read(std::span<char> room) override {
    constexpr std::size_t kMost = 1 << 24;
    DWORD got = 0;
    if (ReadFile(file_.get(), room.data(), static_cast<DWORD>(std::min(room.size(), kMost)), &got,
                 nullptr) == 0) {
      return SystemFailure(doing_);
    }
    return std::size_t{got};
  }
  std::uint64_t Size() const override {
    LARGE_INTEGER size{};
    return GetFileSizeEx(file_.get(), &size) != 0 ? static_cast<std::uint64_t>(size.QuadPart) : 0;
  }

 private:
  Handle file_;
  std::string doing_;
};

}  // namespace

Result<std::unique_ptr<FileReader>> NativeFiles::Open(const std::filesystem::path& path) {
  std::string doing = "read " + TextFromPath(path);
  const HANDLE file = OpenHandle(path, GENERIC_READ, OPEN_EXISTING);
  if (file == INVALID_HANDLE_VALUE) return SystemFailure(doing);
  auto reader = std::make_unique<WindowsReader>(file, doing);
  if (!reader->is_file()) return Status::Failure("not a file").Within(doing);
  return std::unique_ptr<FileReader>(std::move(reader));
}

std::vector<std::filesystem::path> NativeFiles::Drives() {
  std::vector<std::filesystem::path> drives;
  const DWORD present = GetLogicalDrives();
  for (int letter = 0; letter < 26; ++letter) {
    if ((present >> letter & 1U) == 0) continue;
    drives.emplace_back(std::wstring{static_cast<wchar_t>(L'A' + letter), L':', L'\\'});
  }
  if (drives.empty()) drives.emplace_back(L"C:\\");
  return drives;
}

Result<std::string> NativeFiles::Read(const std::filesystem::path& path) {
  const std::string doing = "read " + TextFromPath(path);
  const Handle file(OpenHandle(path, GENERIC_READ, OPEN_EXISTING));
  if (!file) return SystemFailure(doing);
  std::string bytes;
  std::size_t size = 0;
  for (;;) {
    bytes.resize(size + (1 << 20));
    DWORD got = 0;
    if (ReadFile(file.get(), bytes.data() + size, 1 << 20, &got, nullptr) == 0) {
      if (GetLastError() != ERROR_BROKEN_PIPE) return SystemFailure(doing);
      got = 0;
    }
    if (got == 0) break;
    size += got;
    if (size > kLargest) return Status::Failure("larger than 1 GiB").Within(doing);
  }
  bytes.resize(size);
  return bytes;
}

Status NativeFiles::Replace(const std::filesystem::path& path, std::string_view bytes) {
  const std::string doing = "write " + TextFromPath(path);
  const std::filesystem::path target = FollowLinks(path);
  const Remover temporary(Beside(target));
  Handle file(OpenHandle(temporary.path, GENERIC_WRITE, CREATE_NEW));
  if (!file) return SystemFailure(doing + ": create a file beside it");
  bool written = WriteAll(file.get(), bytes) && FlushFileBuffers(file.get()) != 0;
  Status failed = written ? Status::Ok() : SystemFailure(doing);
  if (!file.Close() && written) failed = SystemFailure(doing);
  if (!failed.ok()) return failed;
  if (!MoveOver(temporary.path, target)) return SystemFailure(doing + ": rename into place");
  return Status::Ok();
}

Status NativeFiles::Append(const std::filesystem::path& path, std::string_view bytes) {
  return AppendTo(path, bytes, false);
}

Status NativeFiles::AppendFlushed(const std::filesystem::path& path, std::string_view bytes) {
  return AppendTo(path, bytes, true);
}

Status NativeFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (MoveFileExW(from.c_str(), to.c_str(), 0) != 0) return Status::Ok();
  return SystemFailure("rename " + TextFromPath(from) + " to " + TextFromPath(to));
}

Result<std::optional<std::string>> ReadSecretFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return std::optional<std::string>();
  return Status::Failure("who may read " + TextFromPath(path) +
                         " cannot be told on this system; put the secret into the environment");
}

std::string Utf8FromWide(std::wstring_view wide) {
  const int length = static_cast<int>(wide.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), size, nullptr, nullptr);
  return utf8;
}

std::wstring WideFromUtf8(std::string_view utf8) {
  const int length = static_cast<int>(utf8.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(), size);
  return wide;
}

Status SystemFailure(const std::string& doing) {
  const DWORD code = GetLastError();
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                code, 0, text, 512, nullptr);
  while (length > 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
  std::string why = "error " + std::to_string(code);
  if (length > 0) why = Utf8FromWide({text, length}) + " (" + why + ")";
  return Status::Failure(why).Within(doing);
}

}  // namespace zento
