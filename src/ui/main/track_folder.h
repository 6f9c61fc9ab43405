#pragma once

#include <filesystem>
#include <vector>

#include "text/status_fwd.h"

namespace zento {

class Files;

// What a person who looks for tracks sees of a folder. Names without the folder, in the order in
// which a person looks for them.
struct TrackFolder {
  std::vector<std::filesystem::path> folders;
  std::vector<std::filesystem::path> own_folders;  // of these, those that are no links elsewhere
  std::vector<std::filesystem::path> files;        // track files, by their extension in any case
};

Result<TrackFolder> ReadTrackFolder(Files& files, const std::filesystem::path& folder);

}  // namespace zento
