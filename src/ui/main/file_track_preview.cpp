#include "ui/main/file_track_preview.h"

#include <string>

#include "core/settings.h"
#include "core/track_file.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "core/workstation.h"
#include "graph/track_preview.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento {

void ClearFilePreview(PreviewPlot& plot) {
  plot.Clear();
  plot.SetAxisTitles("Potential /V", "Current /A");
}

TrackFileLoad PreviewFileTrack(PreviewPlot& plot, Workstation& workstation, Files& files,
                               const std::filesystem::path& path, int file_track) {
  TrackStore& tracks = workstation.tracks;
  TrackRecord& record = tracks.Record(kPreviewSlot);
  record = {};
  for (int column = 0; column < kTrackColumns; ++column) {
    tracks.Column(column, kPreviewSlot).clear();
  }
  ClearFilePreview(plot);
  TrackFileLoad load = ImportTrackFromFile(tracks, files, path, file_track, kPreviewSlot);
  if (record.Mode == kModeMulti) {
    record.Mode = kModeSSVAll;
    record.Vxmin = record.Vxmax = 0;
  }
  const bool dots = workstation.settings.PrevGraphDrawSetting == 1;
  DrawTrack(plot, tracks, kPreviewSlot, RangeOf(tracks, kPreviewSlot),
            dots ? PreviewStyle::kDots : PreviewStyle::kLines);
  plot.ResetZoom();
  return load;
}

Status ImportFileTrack(Workstation& workstation, Files& files, const std::filesystem::path& path,
                       int file_track, int track) {
  TrackHeaders headers;
  const TrackFileLoad looked = ReadTrackHeaders(files, path, headers);
  if (!looked.complete()) return looked.status;
  if (headers[static_cast<std::size_t>(file_track)].Mode == kModeNone) {
    return Status::Failure("no track " + std::to_string(file_track) + " in it")
        .Within(TextFromPath(path));
  }
  TrackFileLoad load;
  {
    const TrackChange change(workstation, "Import of track " + std::to_string(track), {track});
    load = ImportTrackFromFile(workstation.tracks, files, path, file_track, track);
  }
  if (workstation.shown_track == track) workstation.ShowTrack(track);
  return load.status;
}

}  // namespace zento
