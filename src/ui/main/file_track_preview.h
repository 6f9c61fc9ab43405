#pragma once

#include <filesystem>

#include "graph/preview_plot.h"
#include "text/status_fwd.h"

namespace zento {

class Files;
struct TrackFileLoad;
struct Workstation;

// Draws a track of a file, read into the scratch slot kPreviewSlot; what cannot be read leaves the
// plot empty. A channel of a multichannel record is drawn as current against potential, because the
// times stand with another channel.
inline constexpr int kPreviewSlot = 22;
TrackFileLoad PreviewFileTrack(PreviewPlot& plot, Workstation& workstation, Files& files,
                               const std::filesystem::path& path, int file_track);
// The axes' titles alone.
void ClearFilePreview(PreviewPlot& plot);

// Imports a track of a file into one of the 21 tracks as a step that can be taken back, and shows
// it if it is the main window's. Fails when the file does not hold the track (any more).
Status ImportFileTrack(Workstation& workstation, Files& files, const std::filesystem::path& path,
                       int file_track, int track);

}  // namespace zento
