#include "ui/main/track_folder.h"

#include <algorithm>
#include <string>

#include "core/track_file.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/natural_order.h"

namespace zento {
namespace {

using Paths = std::vector<std::filesystem::path>;

bool IsTrackFileName(const std::string& name) {
  if (name.size() < kTrackFileExtension.size()) return false;
  const std::string end = name.substr(name.size() - kTrackFileExtension.size());
  return std::equal(end.begin(), end.end(), kTrackFileExtension.begin(),
                    [](char a, char b) { return natural::Folded(a) == natural::Folded(b); });
}

Paths Sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return NaturalLess(a, b); });
  Paths paths;
  paths.reserve(names.size());
  for (const std::string& name : names) paths.push_back(PathFromText(name));
  return paths;
}

}  // namespace

Result<TrackFolder> ReadTrackFolder(Files& files, const std::filesystem::path& folder) {
  auto entries = files.ListFolder(folder);
  if (!entries.ok()) return entries.status();
  std::vector<std::string> folders;
  std::vector<std::string> own_folders;
  std::vector<std::string> names;
  for (const FolderEntry& entry : entries.value()) {
    std::string name = TextFromPath(entry.name);
    if (entry.folder) {
      if (!entry.link) own_folders.push_back(name);
      folders.push_back(std::move(name));
    } else if (IsTrackFileName(name)) {
      names.push_back(std::move(name));
    }
  }
  return TrackFolder{Sorted(std::move(folders)), Sorted(std::move(own_folders)),
                     Sorted(std::move(names))};
}

}  // namespace zento
