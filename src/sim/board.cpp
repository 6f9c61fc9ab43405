#include "sim/board.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zento::sim {
namespace {

constexpr int kWordBits = 12;

}  // namespace

int Quantise(double volts, double range, int bits) {
  const int codes = 1 << bits;
  const double code = std::floor((volts + range) * codes / (2.0 * range) + 0.5);
  return static_cast<int>(std::clamp(code, 0.0, codes - 1.0));
}

Board::Board(const Parameters& parameters, Random& random)
    : noise_(parameters.noise * 1e-3),
      mains_(parameters.mains * 1e-3),
      mains_frequency_(parameters.mains_frequency),
      bits_(static_cast<int>(parameters.bits)),
      random_(random) {}

double Board::Mains(std::int64_t micros) const {
  const double cycles = static_cast<double>(micros) * 1e-6 * mains_frequency_;
  return mains_ * std::sin(2.0 * std::numbers::pi * (cycles - std::floor(cycles)));
}

double Board::Volts(double disturbed, double range) const {
  if (bits_ == 0) return std::clamp(disturbed, -range, range);
  return Quantise(disturbed, range, bits_) * (2.0 * range) / (1 << bits_) - range;
}

std::uint16_t Board::Word(double disturbed) const {
  const int bits = bits_ == 0 ? kWordBits : std::min(bits_, kWordBits);
  return static_cast<std::uint16_t>(Quantise(disturbed, kWidestRange, bits) << (kWordBits - bits));
}

}  // namespace zento::sim
