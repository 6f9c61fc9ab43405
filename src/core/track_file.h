#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/track.h"
#include "text/status.h"
#include "text/status_fwd.h"

// Track files (.znt): a signature line, seven lines of Koutecky-Levich lists, and for each track
// that is not empty its header lines, the line "Table" and one line a point. Lines end in CR LF;
// texts are UTF-8 when written, UTF-8 or code page 932 when read.

namespace zento {

class Files;
class TrackStore;
struct Workstation;

inline constexpr std::string_view kTrackFileSignature = "ZENTO File";
inline constexpr std::string_view kTrackFileExtension = ".znt";

struct TrackFileLoad {
  enum class Outcome {
    kUnreadable,     // the file could not be read; nothing was changed
    kNotRecognized,  // not a track file; nothing was changed
    kBrokenOff,      // reading ended at a line that makes no sense; what had been read stays
    kComplete,
  };
  Outcome outcome = Outcome::kComplete;
  Status status;  // a failure unless complete
  // What a complete file held that was left out, or did not hold although it said so.
  std::vector<std::string> remarks;

  bool complete() const { return outcome == Outcome::kComplete; }
};

using TrackHeaders = std::array<TrackRecord, kTracks>;

// For readers: a block's number is none of a track's.
void RemarkTrackPassedOver(TrackFileLoad& load, std::int32_t number);

// Bytes to values. The readers never take memory beyond a small multiple of the bytes' size, nor
// time beyond a multiple of it, whatever the bytes are. Lines that belong to track numbers outside
// 0 to 20 are passed over; of a track with more points than the store can hold, the first ones
// stay.

// Replaces tracks 0 to 20. Lists that the file does not name keep their values.
TrackFileLoad ReadTracks(std::string_view bytes, TrackStore& tracks);
// Reads the track numbered `file_track` only, into any slot; when the file has none of that number,
// nothing is changed.
TrackFileLoad ImportTrack(std::string_view bytes, int file_track, TrackStore& tracks, int slot);
// Reads the headers of all tracks; records of numbers that the file does not have stay as they are.
// Of a line beyond a mebibyte only the beginning counts.
TrackFileLoad ReadHeaders(std::string_view bytes, TrackHeaders& records);
// The whole store. StepTime and VoltStep are not part of the format.
std::string FormatTracks(const TrackStore& tracks);

// The same on files.

// A complete load also sets FileTitle and adds one to DataGeneration.
TrackFileLoad OpenTracks(Workstation& ws, Files& files, const std::filesystem::path& path);
// The path with ".znt" added unless it ends in exactly that.
std::filesystem::path TrackFileName(std::filesystem::path path);
// Writes to TrackFileName(path). On success sets FileTitle; on failure the old file is as it was.
Status SaveTracksAs(Workstation& ws, Files& files, const std::filesystem::path& path);
TrackFileLoad ImportTrackFromFile(TrackStore& tracks, Files& files,
                                  const std::filesystem::path& path, int file_track, int slot);
// In bounded memory, however large the file is.
TrackFileLoad ReadTrackHeaders(Files& files, const std::filesystem::path& path,
                               TrackHeaders& records);

// Takes note that the tracks as they are now stand in a file.
void MarkTracksKept(Workstation& workstation);

// Whether there are tracks that stand in no file as they are now.
bool TracksUnsaved(const Workstation& workstation);

// For tracks that are about to go before anybody saved them: writes all tracks to a track file in
// the home, "Rescued tracks 1.znt" or the next free number, and returns its path; nothing when they
// are empty or stand in a file already.
Result<std::optional<std::filesystem::path>> RescueTracks(Workstation& workstation, Files& files);

}  // namespace zento
