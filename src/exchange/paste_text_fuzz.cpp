#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/tables.h"
#include "core/track_store.h"
#include "exchange/paste_text.h"
#include "exchange/table_text.h"

using namespace zento;

// Any text makes a track that can be shown, and copied and pasted again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TrackStore tracks;
  const Pasted pasted = PasteText({reinterpret_cast<const char*>(data), size}, tracks, 3);
  const TrackRecord& record = tracks.Record(3);
  if (pasted.points != record.pnum || record.pnum < 0 || record.pnum > kMaxPoints) std::abort();
  if (record.Mode < 0 || record.Mode >= kModes) std::abort();
  if (!pasted.has_mode) return 0;
  const std::string text = TrackInfoText(tracks, 3, "") + "\r\n" + DataTableText(tracks, 3);
  TrackStore again;
  again.Record(3).ref = record.ref;
  if (PasteText(text, again, 3).points != pasted.points) std::abort();
  // What was rounded once is not changed by further copies.
  if (TrackInfoText(again, 3, "") + "\r\n" + DataTableText(again, 3) == text) return 0;
  // But for the vertices of steps and of rate sweeps, which are taken from the points.
  if (record.Mode != kModePS && record.Mode != kModeRPMvsj) std::abort();
  return 0;
}
