#pragma once

#include <filesystem>

#include "host/services.h"
#include "sim/parameters.h"

namespace zento {

// Writes what a fresh home of the simulated bench needs: settings that switch every device of the
// bench on, with one preset for its cell, and the calibration of its motor. A home that has
// settings is left as it is.
Status FurnishBench(Files& files, const std::filesystem::path& home,
                    const sim::Parameters& parameters);

}  // namespace zento
