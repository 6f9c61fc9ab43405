#include "host/native/secret_file.h"
#include "host/path_text.h"

namespace zento {

Result<std::optional<std::string>> ReadSecretFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return std::optional<std::string>();
  return Status::Failure("who may read " + TextFromPath(path) +
                         " cannot be told on this system; put the secret into the environment");
}

}  // namespace zento
