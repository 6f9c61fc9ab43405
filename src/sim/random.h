#pragma once

#include <cstdint>

namespace zento::sim {

// The bench's only source of chance: the same seed gives the same bench, on every platform.
//
// Generator: xoshiro256++ (Blackman and Vigna 2021), its state filled by splitmix64. Gaussians by
// the ziggurat with 128 layers and exact tails (Marsaglia and Tsang 2000).
class Random {
 public:
  explicit Random(std::uint64_t seed);

  std::uint64_t Bits() {
    const std::uint64_t result = Rotate(state_[0] + state_[3], 23) + state_[0];
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = Rotate(state_[3], 45);
    return result;
  }

  // In (0, 1): never 0, so its logarithm is finite.
  double Uniform() { return (static_cast<double>(Bits() >> 12) + 0.5) * 0x1p-52; }

  // Mean 0, standard deviation 1.
  double Gaussian();

 private:
  static std::uint64_t Rotate(std::uint64_t x, int by) { return (x << by) | (x >> (64 - by)); }

  std::uint64_t state_[4];
};

}  // namespace zento::sim
