#include "core/track_file.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "core/track_header.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "core/track_table.h"
#include "core/workstation.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/number.h"

namespace zento {
namespace {

using Kind = TrackFileLines::Kind;
using Outcome = TrackFileLoad::Outcome;

constexpr int kNoTrack = -1;

bool IsTrack(std::int32_t number) {
  return number >= 0 && number < kTracks;
}

std::string TrackText(int number) {
  return "track " + std::to_string(number);
}

void Remark(TrackFileLoad& load, std::string text) {
  constexpr std::size_t kMostRemarks = 2 * kTracks;  // a file can hold a million faults
  if (load.remarks.size() < kMostRemarks) load.remarks.push_back(std::move(text));
}

void ApplyKey(TrackRecord& record, TrackFileLines& lines) {
  // Texts only can hold what needs decoding.
  if (lines.key() == "Title" || lines.key() == "MeasTime") {
    ApplyTrackKey(record, lines.key(), lines.Text());
  } else {
    ApplyTrackKey(record, lines.key(), lines.value());
  }
}

void ApplyListKey(KouteckyLevichLists& kl, std::string_view key, std::string_view value) {
  if (!key.starts_with("KL")) return;
  const std::string_view list = ListHead(value, kTracks);
  if (key == "KLUseFlag") kl.KLUseFlag = SplitIntegers(list);
  if (key == "KLNStart") kl.KLNStart = SplitLongs(list);
  if (key == "KLNEnd") kl.KLNEnd = SplitLongs(list);
  if (key == "KLBaseMode") kl.KLBaseMode = SplitIntegers(list);
  if (key == "KLBaseTrack") kl.KLBaseTrack = SplitIntegers(list);
  if (key == "KLBaseNEnd") kl.KLBaseNEnd = SplitLongs(list);
  if (key == "KLSubVal") kl.KLSubVal = SplitDoubles(list);
}

// How many points the current block says it has, which may be more than the store takes.
class ClaimedPoints {
 public:
  void Apply(const TrackFileLines& lines) {
    if (lines.key() == "DataNum") claimed_ = 0;
    if (lines.key() == "pnum") claimed_ = lines.Number();
  }
  void Check(TrackFileLoad& load, int number, std::int32_t read) const {
    if (claimed_ < 0) {
      Remark(load, TrackText(number) + ": a number of points below 0 was taken as 0");
    } else if (claimed_ > kMaxPoints && read == kMaxPoints) {
      Remark(load, TrackText(number) + ": of " + std::to_string(claimed_) + " points the first " +
                       std::to_string(kMaxPoints) + " were read, a track has room for no more");
    } else if (read < claimed_) {
      Remark(load, TrackText(number) + ": the file ends after " + std::to_string(read) + " of " +
                       std::to_string(claimed_) + " points");
    }
  }

 private:
  std::int32_t claimed_ = 0;
};

// False when the table breaks off at a line that is no point.
bool ReadTableAt(TrackFileLines& lines, TrackStore& tracks, int slot, int columns, int number,
                 const ClaimedPoints& claimed, TrackFileLoad& load) {
  std::string_view rest = lines.rest();
  const TableRead read = ReadTable(rest, tracks, slot, tracks.PointCount(slot), columns);
  lines.Continue(rest);
  if (!read.status.ok()) {
    load.outcome = Outcome::kBrokenOff;
    load.status = read.status.Within(TrackText(number));
    return false;
  }
  claimed.Check(load, number, read.points);
  return true;
}

void ShareMultichannelTime(TrackStore& tracks) {
  const std::int32_t mode = tracks.Record(0).Mode;
  if (!IsMultichannel(mode)) return;
  const std::span<const double> time = tracks.Points(2, 0);
  for (int track = 1; track < TraitsOf(mode).channels; ++track) {
    std::vector<double>& column = tracks.Column(2, track);
    if (column.size() < time.size()) column.resize(time.size());
    std::copy(time.begin(), time.end(), column.begin());
  }
}

// The next track number, remarked on when it is none.
int NextTarget(const TrackFileLines& lines, TrackFileLoad& load) {
  const std::int32_t number = lines.Number();
  if (IsTrack(number)) return number;
  RemarkTrackPassedOver(load, number);
  return kNoTrack;
}

bool ReadBlocks(TrackFileLines& lines, TrackStore& tracks, TrackFileLoad& load) {
  int target = 0;
  ClaimedPoints claimed;
  for (Kind kind = lines.Next(); kind != Kind::kEnd; kind = lines.Next()) {
    if (kind == Kind::kTable) {
      // Without a target the table's lines are passed over as lines that are no keys.
      if (target == kNoTrack) continue;
      const int columns = KeptColumns(tracks.Record(target), target == 0);
      if (!ReadTableAt(lines, tracks, target, columns, target, claimed, load)) return false;
      continue;
    }
    ApplyListKey(tracks.kl, lines.key(), lines.value());
    if (lines.key() == "DataNum") target = NextTarget(lines, load);
    claimed.Apply(lines);
    if (target != kNoTrack) ApplyKey(tracks.Record(target), lines);
  }
  return true;
}

TrackFileLoad NotRecognized() {
  return {Outcome::kNotRecognized, Status::Failure("not a track file"), {}};
}

void AppendLists(std::string& out, KouteckyLevichLists kl) {
  kl.Resize();
  const auto line = [&](std::string_view key, const auto& values) {
    out.append(key).append("=").append(JoinValues(values)).append("\r\n");
  };
  line("KLUseFlag", kl.KLUseFlag);
  line("KLNStart", kl.KLNStart);
  line("KLNEnd", kl.KLNEnd);
  line("KLBaseMode", kl.KLBaseMode);
  line("KLBaseTrack", kl.KLBaseTrack);
  line("KLBaseNEnd", kl.KLBaseNEnd);
  line("KLSubVal", kl.KLSubVal);
}

bool IsWritten(const TrackStore& tracks, int track) {
  return tracks.Record(track).Mode > kModeNone;
}

// About as many bytes as the file will have, so that it is not moved while it grows.
std::size_t ExpectedSize(const TrackStore& tracks) {
  std::size_t size = 4096;
  for (int track = 0; track < kTracks; ++track) {
    if (!IsWritten(tracks, track)) continue;
    const auto points = static_cast<std::size_t>(tracks.PointCount(track));
    size += 1024 + points * (WrittenColumns(tracks.Record(track), track == 0) == 3 ? 34 : 22);
  }
  return size;
}

// Reads the file and hands its bytes on.
template <typename Reader>
TrackFileLoad WithBytes(Files& files, const std::filesystem::path& path, Reader reader) {
  const Result<std::string> bytes = files.Read(path);
  if (!bytes.ok()) return {Outcome::kUnreadable, bytes.status(), {}};
  TrackFileLoad load = reader(bytes.value());
  load.status = load.status.Within(TextFromPath(path));
  return load;
}

}  // namespace

void RemarkTrackPassedOver(TrackFileLoad& load, std::int32_t number) {
  Remark(load, TrackText(number) + " was passed over: tracks are numbered 0 to 20");
}

TrackFileLoad ReadTracks(std::string_view bytes, TrackStore& tracks) {
  TrackFileLines lines(bytes);
  if (!lines.recognized()) return NotRecognized();
  for (int track = 0; track < kTracks; ++track) tracks.ClearTrack(track);
  TrackFileLoad load;
  if (ReadBlocks(lines, tracks, load)) ShareMultichannelTime(tracks);
  tracks.kl.Resize();
  return load;
}

TrackFileLoad ImportTrack(std::string_view bytes, int file_track, TrackStore& tracks, int slot) {
  TrackFileLines lines(bytes);
  if (!lines.recognized()) return NotRecognized();
  TrackFileLoad load;
  bool wanted = false;
  ClaimedPoints claimed;
  for (Kind kind = lines.Next(); kind != Kind::kEnd; kind = lines.Next()) {
    if (kind == Kind::kKey && lines.key() == "DataNum") wanted = lines.Number() == file_track;
    if (!wanted) continue;
    if (kind == Kind::kKey) {
      claimed.Apply(lines);
      ApplyKey(tracks.Record(slot), lines);
      continue;
    }
    const int columns = KeptColumns(tracks.Record(slot), false);
    if (!ReadTableAt(lines, tracks, slot, columns, file_track, claimed, load)) return load;
  }
  return load;
}

TrackFileLoad ReadHeaders(std::string_view bytes, TrackHeaders& records) {
  TrackHeaderStream stream(records);
  stream.Feed(bytes);
  return stream.Finish();
}

std::string FormatTracks(const TrackStore& tracks) {
  std::string out;
  out.reserve(ExpectedSize(tracks));
  out.append(kTrackFileSignature).append("\r\n");
  AppendLists(out, tracks.kl);
  for (int track = 0; track < kTracks; ++track) {
    if (!IsWritten(tracks, track)) continue;
    AppendTrackHeader(out, track, tracks.Record(track));
    out += "Table\r\n";
    AppendTable(out, tracks, track, WrittenColumns(tracks.Record(track), track == 0));
  }
  return out;
}

TrackFileLoad OpenTracks(Workstation& ws, Files& files, const std::filesystem::path& path) {
  TrackFileLoad load =
      WithBytes(files, path, [&](std::string_view bytes) { return ReadTracks(bytes, ws.tracks); });
  if (load.complete() || load.outcome == Outcome::kBrokenOff) {
    MarkTracksKept(ws);
    ws.history.Clear();
  }
  if (!load.complete()) return load;
  ws.tracks.InitializeParameters();
  ws.FileTitle = TextFromPath(path.filename());
  ++ws.DataGeneration;
  return load;
}

std::filesystem::path TrackFileName(std::filesystem::path path) {
  if (!TextFromPath(path).ends_with(kTrackFileExtension)) path += kTrackFileExtension;
  return path;
}

Status SaveTracksAs(Workstation& ws, Files& files, const std::filesystem::path& path) {
  const std::filesystem::path file = TrackFileName(path);
  Status saved = files.Replace(file, FormatTracks(ws.tracks));
  if (!saved.ok()) return saved;
  MarkTracksKept(ws);
  ws.FileTitle = TextFromPath(file.filename());
  return saved;
}

TrackFileLoad ImportTrackFromFile(TrackStore& tracks, Files& files,
                                  const std::filesystem::path& path, int file_track, int slot) {
  return WithBytes(files, path, [&](std::string_view bytes) {
    return ImportTrack(bytes, file_track, tracks, slot);
  });
}

TrackFileLoad ReadTrackHeaders(Files& files, const std::filesystem::path& path,
                               TrackHeaders& records) {
  constexpr std::size_t kPiece = std::size_t{256} << 10;
  auto file = files.Open(path);
  if (!file.ok()) return {Outcome::kUnreadable, file.status(), {}};
  TrackHeaders read = records;
  TrackHeaderStream stream(read);
  for (std::vector<char> room(kPiece);;) {
    const Result<std::size_t> got = file.value()->Read(room);
    if (!got.ok()) return {Outcome::kUnreadable, got.status(), {}};
    if (got.value() == 0 || !stream.Feed({room.data(), got.value()})) break;
  }
  TrackFileLoad load = stream.Finish();
  if (load.complete()) records = std::move(read);
  load.status = load.status.Within(TextFromPath(path));
  return load;
}

namespace {

bool AllEmpty(const TrackStore& tracks) {
  for (int track = 0; track < kTracks; ++track) {
    if (!tracks.Record(track).IsEmpty()) return false;
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
