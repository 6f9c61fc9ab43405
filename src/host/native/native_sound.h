#pragma once

#include <memory>

#include "host/services.h"

namespace zento {

// Plays wave files through the system's sound service, without waiting. Silent, and without any
// complaint, where there is no sound device or the file cannot be played.
std::unique_ptr<Sound> MakeNativeSound();

}  // namespace zento
