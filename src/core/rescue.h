#pragma once

#include <filesystem>
#include <optional>

#include "core/workstation.h"
#include "host/services.h"
#include "text/status.h"

namespace zento {

// Takes note that the tracks as they are now stand in a file.
void MarkTracksKept(Workstation& workstation);

// Whether there are tracks that stand in no file as they are now.
bool TracksUnsaved(const Workstation& workstation);

// For tracks that are about to go before anybody saved them: writes all tracks to a track file in
// the home, "Rescued tracks 1.znt" or the next free number, and returns its path; nothing when they
// are empty or stand in a file already.
Result<std::optional<std::filesystem::path>> RescueTracks(Workstation& workstation, Files& files);

}  // namespace zento
