#pragma once

#include <cstdint>

namespace zento {

class TrackStore;
struct TrackRecord;

// The potential of a reference electrode (index into RefName) against SHE, in V; that of the
// reversible hydrogen electrode is -0.059 V times the pH.
double ReferencePotential(std::int32_t ref, double pH);

// Whether the track has potentials that refer to an electrode: sweeps do, transients, rotation-rate
// sweeps and monitor records do not.
bool HasReferencedPotentials(const TrackRecord& record);

// Expresses the track's potentials against the electrode `ref`, at the record's pH: its points, its
// vertices and the limits of its display range.
void ConvertReference(TrackStore& tracks, int track, std::int32_t ref);

}  // namespace zento
