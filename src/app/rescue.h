#pragma once

#include <filesystem>
#include <optional>

#include "core/workstation.h"
#include "host/services.h"
#include "text/status.h"

namespace zento {

// For a program that is made to end before anybody could save: writes all tracks to a track file in
// the home, "Rescued tracks 1.znt" or the next free number, and returns its path; nothing when all
// tracks are empty.
Result<std::optional<std::filesystem::path>> RescueTracks(const Workstation& workstation,
                                                          Files& files);

}  // namespace zento
