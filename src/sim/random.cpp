#include "sim/random.h"

#include <array>
#include <cmath>

namespace zento::sim {
namespace {

constexpr int kLayers = 128;
constexpr double kTail = 3.442619855899;       // where the bottom layer's tail begins
constexpr double kArea = 9.91256303526217e-3;  // of each layer under exp(-x^2/2)

// Right edges of the layers, from the (virtual) bottom one inwards, and the density there.
struct Ziggurat {
  std::array<double, kLayers + 1> edge{};
  std::array<double, kLayers + 1> height{};

  Ziggurat() {
    const auto density = [](double x) { return std::exp(-0.5 * x * x); };
    edge[0] = kArea / density(kTail);
    edge[1] = kTail;
    for (int i = 2; i < kLayers; ++i) {
      edge[i] = std::sqrt(-2.0 * std::log(kArea / edge[i - 1] + density(edge[i - 1])));
    }
    edge[kLayers] = 0.0;
    for (int i = 0; i <= kLayers; ++i) height[i] = density(edge[i]);
  }
};

const Ziggurat kZiggurat;

}  // namespace

Random::Random(std::uint64_t seed) {
  for (std::uint64_t& word : state_) {
    seed += 0x9e3779b97f4a7c15u;
    std::uint64_t z = seed;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    word = z ^ (z >> 31);
  }
}

double Random::Gaussian() {
  const Ziggurat& z = kZiggurat;
  for (;;) {
    const std::uint64_t bits = Bits();
    const auto layer = static_cast<int>(bits & (kLayers - 1));
    // The upper 53 bits, signed: uniform in (-1, 1).
    const double u = static_cast<double>(static_cast<std::int64_t>(bits) >> 11) * 0x1p-52;
    const double x = u * z.edge[layer];
    if (std::abs(x) < z.edge[layer + 1]) return x;
    if (layer == 0) {
      double beyond = 0;
      double level = 0;
      do {
        beyond = -std::log(Uniform()) / kTail;
        level = -std::log(Uniform());
      } while (level + level < beyond * beyond);
      return u < 0 ? -(kTail + beyond) : kTail + beyond;
    }
    const double y = z.height[layer] + Uniform() * (z.height[layer + 1] - z.height[layer]);
    if (y < std::exp(-0.5 * x * x)) return x;
  }
}

}  // namespace zento::sim
