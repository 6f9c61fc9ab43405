#pragma once

// The oxygen evaluation as it is defined, scanning the points anew for every step; for tests and
// for the benchmark's peer.

#include <array>
#include <cmath>
#include <cstddef>
#include <span>

#include "analysis/oxygen.h"

namespace zento {

inline OxygenShares LiteralOxygen(std::span<const double> x, std::span<const double> disk,
                                  std::span<const double> ring,
                                  const std::array<double, 3>& vertices,
                                  const OxygenSettings& settings) {
  OxygenShares shares;
  const double width = settings.half_width;
  std::size_t q = 0;
  for (std::size_t segment = 0; segment < 2; ++segment) {
    const double start = vertices[segment];
    const double end = vertices[segment + 1];
    const double d = end - start > 0 ? 1 : -1;
    const double step = settings.step * d;
    for (double e = start; d > 0 ? e <= end : e >= end; e += step) {
      double sum_x = 0, sum_disk = 0, sum_ring = 0;
      std::size_t n = 0, next = 0;
      bool found = false;
      std::size_t p = q;
      for (; p < x.size(); ++p) {
        if (d > 0) {
          if (x[p] <= e - width) continue;
          if (!found && x[p] > e + settings.step - width) {
            found = true;
            next = p;
          }
          if (x[p] >= e + width) break;
        } else {
          if (x[p] >= e + width) continue;
          if (!found && x[p] <= e - settings.step + width) {
            found = true;
            next = p;
          }
          if (x[p] <= e - width) break;
        }
        sum_x += x[p];
        sum_disk += disk[p];
        sum_ring += ring[p];
        ++n;
      }
      q = found ? next : p;
      if (n == 0) continue;
      const auto count = static_cast<double>(n);
      const double id = std::fabs(sum_disk / count);
      const double ir = std::fabs(sum_ring / count);
      if (id == 0 && ir == 0) continue;
      shares.potential.push_back(sum_x / count);
      shares.disk.push_back(id);
      shares.ring.push_back(ir);
      shares.water.push_back((id - ir / settings.collection) / (ir / settings.collection + id) *
                             100);
    }
  }
  return shares;
}

}  // namespace zento
