#include "host/native/home.h"

#include "host/path_text.h"
#include "text/status.h"

namespace zento {
namespace {

bool Exists(const HomeQuestion& question, const std::filesystem::path& path) {
  if (question.exists) return question.exists(path);
  std::error_code failed;
  return std::filesystem::exists(path, failed);
}

// Relative values are to be ignored, as the convention for these variables has it.
std::optional<std::filesystem::path> Folder(const HomeQuestion& question, const char* variable) {
  const auto value = question.variable(variable);
  if (!value) return std::nullopt;
  std::filesystem::path folder = PathFromText(*value);
  if (!folder.is_absolute()) return std::nullopt;
  return folder;
}

std::optional<std::filesystem::path> UserHome(const HomeQuestion& question) {
#ifdef _WIN32
  const char* name = question.simulated ? "Zento-sim" : "Zento";
  if (const auto folder = Folder(question, "APPDATA")) return *folder / name;
#else
  const char* name = question.simulated ? "zento-sim" : "zento";
  if (const auto folder = Folder(question, "XDG_DATA_HOME")) return *folder / name;
  if (const auto folder = Folder(question, "HOME")) return *folder / ".local/share" / name;
#endif
  return std::nullopt;
}

}  // namespace

Result<std::filesystem::path> ResolveHome(const HomeQuestion& question) {
  if (!question.wanted.empty()) {
    std::error_code failed;
    auto folder = std::filesystem::absolute(question.wanted, failed);
    if (failed) return Status::Failure(failed.message()).Within("find the home");
    return folder.lexically_normal();
  }
  const auto& own = question.executable_folder;
  if (!own.empty() && Exists(question, own / "Parameters.txt")) {
    return question.simulated ? own / "zento-sim" : own;
  }
  if (auto folder = UserHome(question)) return folder->lexically_normal();
  return Status::Failure("there is no folder for the user's data; choose one with --home DIR");
}

}  // namespace zento
