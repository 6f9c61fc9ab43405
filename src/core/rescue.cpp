#include "core/rescue.h"

#include <functional>
#include <string>

#include "core/track_file.h"

namespace zento {
namespace {

bool AllEmpty(const TrackStore& tracks) {
  for (int track = 0; track < kTracks; ++track) {
    if (tracks.Record(track).Mode != kModeNone) return false;
  }
  return true;
}

}  // namespace

void MarkTracksKept(Workstation& workstation) {
  workstation.kept_tracks = std::hash<std::string>()(FormatTracks(workstation.tracks));
}

bool TracksUnsaved(const Workstation& workstation) {
  return !AllEmpty(workstation.tracks) &&
         std::hash<std::string>()(FormatTracks(workstation.tracks)) != workstation.kept_tracks;
}

Result<std::optional<std::filesystem::path>> RescueTracks(Workstation& workstation, Files& files) {
  using Path = std::optional<std::filesystem::path>;
  if (!TracksUnsaved(workstation)) return Path();
  std::filesystem::path path;
  for (int number = 1; path.empty() || files.Exists(path); ++number) {
    path = workstation.home / ("Rescued tracks " + std::to_string(number) + ".znt");
  }
  const Status saved = files.Replace(path, FormatTracks(workstation.tracks));
  if (!saved.ok()) return saved;
  MarkTracksKept(workstation);
  return Path(path);
}

}  // namespace zento
