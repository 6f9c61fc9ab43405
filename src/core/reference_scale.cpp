#include "core/reference_scale.h"

#include "core/tables.h"
#include "core/track_store.h"

namespace zento {

double ReferencePotential(std::int32_t ref, double pH) {
  return ref == kReferenceRHE ? -0.059 * pH : AtOrNone(RefPotential, ref);
}

bool HasReferencedPotentials(const TrackRecord& record) {
  return TraitsOf(record.Mode).referenced;
}

void ConvertReference(TrackStore& tracks, int track, std::int32_t ref) {
  TrackRecord& record = tracks.Record(track);
  const double shift =
      ReferencePotential(record.ref, record.pH) - ReferencePotential(ref, record.pH);
  for (std::int32_t i = 0; i < tracks.PointCount(track); ++i) {
    tracks.SetValue(0, track, i, tracks.Value(0, track, i) + shift);
  }
  for (double& vertex : record.V) vertex += shift;
  record.Vxmin += shift;
  record.Vxmax += shift;
  record.ref = ref;
}

}  // namespace zento
