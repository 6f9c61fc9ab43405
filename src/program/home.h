#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include "host/native/home.h"
#include "host/services.h"
#include "sim/parameters.h"
#include "text/status_fwd.h"

namespace zento {

// A home found and held for this program.
struct HeldHome {
  std::filesystem::path folder;
  std::unique_ptr<HomeLock> lock;
};

// Finds the home (`wanted` empty: where ResolveHome says) and takes its lock for `who`, a few words
// that a second program shows. On failure nothing was opened.
Result<HeldHome> TakeHome(const std::filesystem::path& wanted, bool simulated,
                          std::string_view who);

// Where the files that were installed with the program may stand: beside the program, and where
// data of an installed one are.
std::vector<std::filesystem::path> DataFolders();

// The home without holding it, for looking only.
Result<std::filesystem::path> FindHome(const std::filesystem::path& wanted, bool simulated);

// Writes what a fresh home of the simulated bench needs: settings that switch every device of the
// bench on, with one preset for its cell, and the calibration of its motor. A home that has
// settings is left as it is.
Status PrepareBenchHome(Files& files, const std::filesystem::path& home,
                        const sim::Parameters& parameters);

}  // namespace zento
