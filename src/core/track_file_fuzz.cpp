#include "core/track_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/track_store.h"

using namespace zento;

namespace {

// Room taken by the points, in bytes.
std::size_t Room(const TrackStore& tracks) {
  std::size_t room = 0;
  for (int slot = 0; slot < kSlots; ++slot) {
    for (int column = 0; column < kTrackColumns; ++column) {
      room += tracks.Column(column, slot).capacity() * sizeof(double);
    }
  }
  return room;
}

void Check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  TrackStore tracks;
  const TrackFileLoad load = ReadTracks(bytes, tracks);
  // Ten channels may share the time that one of them brought.
  Check(Room(tracks) <= 64 * (size + 64) || tracks.Record(0).Mode == kModeMulti);

  TrackHeaders headers;
  ReadHeaders(bytes, headers);
  TrackStore imported;
  for (const int track : {0, 3, 20, -1}) ImportTrack(bytes, track, imported, 22);

  std::int32_t points = 0;
  for (int track = 0; track < kTracks; ++track) points += tracks.PointCount(track);
  if (load.complete() && points < 2000) {
    // What was read can be written and read again; from then on nothing changes any more. (The
    // first time it may: a rotation-rate sweep without a time column is written with one and read
    // without.)
    TrackStore again;
    Check(ReadTracks(FormatTracks(tracks), again).complete());
    const std::string written = FormatTracks(again);
    TrackStore third;
    Check(ReadTracks(written, third).complete());
    Check(FormatTracks(third) == written);
  }
  return 0;
}
