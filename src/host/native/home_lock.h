#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "text/status.h"

namespace zento {

// Holds a home for one program, so that two never write its files at the same time. The lock is the
// system's, on a file in the home: it is gone when its holder is, however it ended.
class HomeLock {
 public:
  // Creates the folder when it is missing. Fails, naming the holder as it described itself with
  // `who`, while another program holds the home; fails as well when the home cannot be written.
  static Result<std::unique_ptr<HomeLock>> Take(const std::filesystem::path& home,
                                                std::string_view who);
  virtual ~HomeLock() = default;
};

}  // namespace zento
