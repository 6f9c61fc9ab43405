#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include "host/native/home_lock.h"
#include "text/status.h"

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

}  // namespace zento
