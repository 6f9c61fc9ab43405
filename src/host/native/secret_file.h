#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "text/status.h"

namespace zento {

// The first line of a file that holds a secret; nothing when there is no such file. Fails, saying
// how to mend it, when anybody but this user could read it, or where that cannot be told.
Result<std::optional<std::string>> ReadSecretFile(const std::filesystem::path& path);

}  // namespace zento
