#include <windows.h>

#include "host/native/home.h"
#include "host/native/windows_text.h"

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

}  // namespace zento
