#include <cstdlib>
#include <system_error>

#include "host/native/home.h"

namespace zento {

std::optional<std::string> EnvironmentVariable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::filesystem::path ExecutableFolder() {
  std::error_code failed;
  const auto file = std::filesystem::read_symlink("/proc/self/exe", failed);
  return failed ? std::filesystem::path() : file.parent_path();
}

}  // namespace zento
