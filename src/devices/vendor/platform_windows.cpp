#include <windows.h>

#include <array>

#include "devices/vendor/platform.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento::vendor {
namespace {

std::string FromWide(std::wstring_view wide) {
  return TextFromPath(std::filesystem::path(wide));
}

std::string WhyNotLoaded(DWORD code) {
  constexpr bool k64 = sizeof(void*) == 8;
  switch (code) {
    case ERROR_BAD_EXE_FORMAT:
      return k64 ? "it is not a library for this 64-bit program (a 32-bit one needs the 32-bit "
                   "program)"
                 : "it is not a library for this 32-bit program (a 64-bit one needs the 64-bit "
                   "program)";
    case ERROR_MOD_NOT_FOUND:
      return "a library that it needs was not found";
    default:
      return SystemErrorText(static_cast<int>(code));
  }
}

}  // namespace

Result<SharedLibrary> SharedLibrary::Open(const std::filesystem::path& file) {
  // What the library needs in turn is sought beside it and in the system's folder only.
  const HMODULE handle = LoadLibraryExW(
      file.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (handle != nullptr) return SharedLibrary(file, handle);
  return Status::Failure(TextFromPath(file) + " cannot be loaded: " + WhyNotLoaded(GetLastError()));
}

SharedLibrary::Function SharedLibrary::Find(const std::string& name) const {
  return reinterpret_cast<Function>(GetProcAddress(static_cast<HMODULE>(handle_), name.c_str()));
}

std::vector<std::filesystem::path> SystemLibraryFolders() {
  std::vector<std::filesystem::path> folders;
  std::array<wchar_t, MAX_PATH> buffer{};
  for (const auto get : {&GetSystemDirectoryW, &GetWindowsDirectoryW}) {
    const UINT length = get(buffer.data(), static_cast<UINT>(buffer.size()));
    if (length > 0 && length < buffer.size()) {
      folders.emplace_back(std::wstring(buffer.data(), length));
    }
  }
  return folders;
}

std::optional<std::string> EnvironmentVariable(const char* name) {
  const std::wstring wide = PathFromText(name).wstring();
  const DWORD needed = GetEnvironmentVariableW(wide.c_str(), nullptr, 0);
  if (needed <= 1) return std::nullopt;
  std::wstring value(needed, L'\0');
  value.resize(GetEnvironmentVariableW(wide.c_str(), value.data(), needed));
  return FromWide(value);
}

PortIo LoadPortIo(const Surroundings& surroundings) {
  PortIo table;
  const auto library = FindLibrary(surroundings, {"ZENTO_PORT_IO", "PortIO.dll", nullptr});
  if (!library.ok()) {
    table.missing = library.why();
    return table;
  }
  Binder binder(library.value());
  binder.Bind("PortInputByte", table.PortInputByte).Bind("PortOutputByte", table.PortOutputByte);
  if (binder.missing().empty()) return table;
  PortIo empty;
  empty.missing = binder.missing();
  return empty;
}

std::string SerialDevice(int port) {
  return "COM" + std::to_string(port);
}

void RaiseModemLines(std::intptr_t native_handle) {
  const auto handle = reinterpret_cast<HANDLE>(native_handle);
  EscapeCommFunction(handle, SETDTR);
  EscapeCommFunction(handle, SETRTS);
}

void DiscardOutput(std::intptr_t native_handle) {
  PurgeComm(reinterpret_cast<HANDLE>(native_handle), PURGE_TXABORT | PURGE_TXCLEAR);
}

std::string SystemErrorText(int code) {
  std::array<wchar_t, 512> buffer{};
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(code), 0, buffer.data(),
                                static_cast<DWORD>(buffer.size()), nullptr);
  while (length > 0 && (buffer[length - 1] == L'\n' || buffer[length - 1] == L'\r')) --length;
  return FromWide({buffer.data(), length}) + " (error " + std::to_string(code) + ")";
}

}  // namespace zento::vendor
