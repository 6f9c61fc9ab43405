#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "text/status_fwd.h"

namespace zento {

struct TrackFileLoad;

// What a command does about the outcome of opening a track file: fails unless all tracks are there;
// what could not be taken besides goes to `notes`.
Status CheckLoad(const TrackFileLoad& load, const std::filesystem::path& path,
                 std::vector<std::string>& notes);

}  // namespace zento
