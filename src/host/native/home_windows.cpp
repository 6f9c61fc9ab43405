#include "host/native/home.h"

#include <windows.h>
#include <string>

#include "host/native/native_files.h"
#include "host/native/windows_text.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento {
std::optional<std::string> EnvironmentVariable(const char* name) {
  const std::wstring wide_name = WideFromUtf8(name);
  std::wstring value(32768, L'\0');
  const DWORD length =
      GetEnvironmentVariableW(wide_name.c_str(), value.data(), static_cast<DWORD>(value.size()));
  if (length == 0 || length >= value.size()) return std::nullopt;
  return Utf8FromWide({value.data(), length});
}

std::filesystem::path ExecutableFolder() {
  std::wstring name(32768, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
  if (length == 0 || length >= name.size()) return {};
  name.resize(length);
  return std::filesystem::path(name).parent_path();
}

namespace {

// The locked byte lies far beyond the text, which others must be able to read.
OVERLAPPED LockedByte() {
  OVERLAPPED place{};
  place.Offset = 0x7fffffff;
  return place;
}

class FileLock : public HomeLock {
 public:
  explicit FileLock(HANDLE file) : file_(file) {}
  ~FileLock() override {
    SetFilePointer(file_, 0, nullptr, FILE_BEGIN);
    SetEndOfFile(file_);
    OVERLAPPED place = LockedByte();
    UnlockFileEx(file_, 0, 1, 0, &place);
    CloseHandle(file_);
  }

 private:
  HANDLE file_;
};

std::string Holder(HANDLE file) {
  char text[256];
  DWORD size = 0;
  if (ReadFile(file, text, sizeof text, &size, nullptr) == 0 || size == 0) return "another program";
  return std::string(text, size);
}

}  // namespace

Result<std::unique_ptr<HomeLock>> HomeLock::Take(const std::filesystem::path& home,
                                                 std::string_view who) {
  const std::string doing = "use the home " + TextFromPath(home);
  if (Status made = NativeFiles().CreateFolder(home); !made.ok()) return made.Within(doing);
  const HANDLE file = CreateFileW((home / L".zento.lock").c_str(), GENERIC_READ | GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_HIDDEN, nullptr);
  if (file == INVALID_HANDLE_VALUE) return SystemFailure(doing + ": open its lock file");
  OVERLAPPED place = LockedByte();
  if (LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) == 0) {
    const DWORD code = GetLastError();
    const bool held = code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING;
    const Status failed = held ? Status::Failure("it is in use by " + Holder(file)).Within(doing)
                               : SystemFailure(doing + ": lock it");
    CloseHandle(file);
    return failed;
  }
  const std::string note =
      std::string(who) + " (process " + std::to_string(GetCurrentProcessId()) + ")";
  DWORD written = 0;
  SetEndOfFile(file);
  WriteFile(file, note.data(), static_cast<DWORD>(note.size()), &written, nullptr);
  return std::unique_ptr<HomeLock>(std::make_unique<FileLock>(file));
}

}  // namespace zento
