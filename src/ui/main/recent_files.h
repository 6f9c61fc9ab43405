#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "text/status_fwd.h"

namespace zento {

class Files;

// The track files that were opened or saved last, the latest first. They are remembered in a text
// file of the home, a full path a line.
class RecentFiles {
 public:
  static constexpr std::size_t kMost = 10;

  // Takes what the home remembers; nothing when it does not. `files` must outlive this.
  RecentFiles(Files& files, const std::filesystem::path& home);

  const std::vector<std::filesystem::path>& paths() const { return paths_; }
  // Where the first one lies; empty when there is none.
  std::filesystem::path Folder() const;
  // Makes a file the first one. A relative path counts from the current folder. What fails is the
  // remembering: the list itself has changed all the same.
  Status Add(const std::filesystem::path& path);
  Status Remove(const std::filesystem::path& path);

 private:
  Status Write() const;

  Files& files_;
  std::filesystem::path file_;
  std::vector<std::filesystem::path> paths_;
};

// Where a window that looks for track files begins: in the folder of the file opened or saved last,
// else in the home.
std::filesystem::path StartFolder(Files& files, const std::filesystem::path& home);

// "1 name - folder" for the file at a place from 0 on; of a long folder the end, behind "...".
std::string RecentCaption(std::size_t place, const std::filesystem::path& path);

}  // namespace zento
