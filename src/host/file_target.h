#pragma once

#include <filesystem>
#include <vector>

namespace zento {

// What a form is besides that does something with files of this machine that a person drops on its
// window.
class FileTarget {
 public:
  virtual ~FileTarget() = default;
  // At least one.
  virtual void FilesDropped(const std::vector<std::filesystem::path>& files) = 0;
};

}  // namespace zento
