#include "program/home_setup.h"

#include <utility>

#include "host/native/home.h"

namespace zento {

Result<std::filesystem::path> FindHome(const std::filesystem::path& wanted, bool simulated) {
  HomeQuestion question;
  question.wanted = wanted;
  question.simulated = simulated;
  question.executable_folder = ExecutableFolder();
  return ResolveHome(question);
}

std::vector<std::filesystem::path> DataFolders() {
  const std::filesystem::path folder = ExecutableFolder();
  if (folder.empty()) return {};
  return {folder, folder.parent_path() / "share" / "zento"};
}

Result<HeldHome> TakeHome(const std::filesystem::path& wanted, bool simulated,
                          std::string_view who) {
  auto folder = FindHome(wanted, simulated);
  if (!folder.ok()) return folder.status();
  auto lock = HomeLock::Take(folder.value(), who);
  if (!lock.ok()) return lock.status();
  return HeldHome{std::move(folder.value()), std::move(lock.value())};
}

}  // namespace zento
