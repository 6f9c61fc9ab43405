#pragma once

#include <cstdint>

#include "sim/parameters.h"
#include "sim/random.h"

namespace zento::sim {

// The inputs of a board: what a conversion makes of a voltage. Ranges are symmetric about 0.
class Board {
 public:
  static constexpr std::int64_t kConversionMicros = 25;
  static constexpr double kWidestRange = 2.5;  // V either way

  Board(const Parameters& parameters, Random& random);

  // The voltage with the noise and the mains pick-up of the moment `micros`.
  double Disturb(double volts, std::int64_t micros) {
    if (noise_ > 0.0) volts += noise_ * random_.Gaussian();
    return mains_ > 0.0 ? volts + Mains(micros) : volts;
  }

  // What a converter of `bits` parameter bits reports, in volts, within +-`range`.
  double Volts(double disturbed, double range) const;

  // The word of the boards whose interface carries 12 bits: 0 is -2.5 V, 2048 is 0 V, 4095 is
  // 2.49878 V. A coarser converter leaves the lower bits 0.
  std::uint16_t Word(double disturbed) const;

 private:
  double Mains(std::int64_t micros) const;

  double noise_, mains_, mains_frequency_;
  int bits_;
  Random& random_;
};

// The code of `volts` within +-`range` at `bits` of resolution: floor((V + range) 2^bits/(2 range)
// + 1/2), held between 0 and 2^bits - 1.
int Quantise(double volts, double range, int bits);

}  // namespace zento::sim
