#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "text/status_fwd.h"

namespace zento {

// A variable of the process's environment in UTF-8; nothing when it is not set or empty.
std::optional<std::string> EnvironmentVariable(const char* name);

// The folder the running program's file stands in; empty when the system does not tell.
std::filesystem::path ExecutableFolder();

// What decides where the home is.
struct HomeQuestion {
  std::filesystem::path wanted;             // the person's own choice; empty = none
  bool simulated = false;                   // the simulated bench has a home of its own
  std::filesystem::path executable_folder;  // empty = unknown
  std::function<std::optional<std::string>(const char*)> variable = EnvironmentVariable;
  std::function<bool(const std::filesystem::path&)> exists;  // null = the machine's files
};

// The program's folder, where settings, calibration and logs live: the person's choice; else the
// executable's own folder when it holds a settings file; else the user's data folder by the
// platform's convention ($XDG_DATA_HOME/zento, ~/.local/share/zento, %APPDATA%\Zento). The
// simulated bench's stands beside the user's one as "zento-sim" ("Zento-sim"), or inside the
// executable's. Always absolute; fails when there is no user's data folder either.
Result<std::filesystem::path> ResolveHome(const HomeQuestion& question);

// Holds a home for one program, so that two never write its files at the same time. The lock is the
// system's, on a file in the home: it is gone when its holder is, however it ended.
class HomeLock {
 public:
  // Creates the folder when it is missing. Fails, naming the holder as it described itself with
  // `who`, while another program holds the home; fails as well when the home cannot be written.
  static Result<std::unique_ptr<HomeLock>> Take(const std::filesystem::path& home,
                                                std::string_view who);
  virtual ~HomeLock() = default;
};

}  // namespace zento
