// R. Giulietti, "The Schubfach way to render doubles" (2020). In the range served here the powers
// of ten fit into 128 bits, so that all scaling is exact and needs none of the paper's estimates.

#include "text/shortest_digits.h"

#include <array>
#include <bit>
#include <cstddef>

namespace zento {
namespace {

__extension__ using Wide = unsigned __int128;

constexpr int kMantissaBits = 52;
constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
constexpr int kExponentBias = 1075;  // of the mantissa read as an integer

// 10^n = high:low x 2^(bits - 128), exactly, with the highest bit set.
struct Power {
  std::uint64_t high;
  std::uint64_t low;
  int bits;
};

constexpr int kMostPower = 55;  // 5^55 < 2^128

constexpr std::array<Power, kMostPower + 1> MakePowers() {
  std::array<Power, kMostPower + 1> powers{};
  Wide five = 1;
  for (std::size_t n = 0; n < powers.size(); ++n) {
    const auto top = static_cast<std::uint64_t>(five >> 64);
    const int room =
        top != 0 ? std::countl_zero(top) : 64 + std::countl_zero(static_cast<std::uint64_t>(five));
    const Wide shifted = five << room;
    powers[n] = {static_cast<std::uint64_t>(shifted >> 64), static_cast<std::uint64_t>(shifted),
                 static_cast<int>(n) - room + 128};
    five *= 5;
  }
  return powers;
}
constexpr std::array<Power, kMostPower + 1> kPowers = MakePowers();

// floor(power x number / 2^128) with the last bit set where something was cut off. That one is
// never needed otherwise, as two bits stand behind the point.
std::uint64_t ScaledToOdd(const Power& power, std::uint64_t number) {
  const Wide low = static_cast<Wide>(power.low) * number;
  const Wide high = static_cast<Wide>(power.high) * number + static_cast<std::uint64_t>(low >> 64);
  const std::uint64_t cut = static_cast<std::uint64_t>(high) | static_cast<std::uint64_t>(low);
  return static_cast<std::uint64_t>(high >> 64) | static_cast<std::uint64_t>(cut != 0);
}

}  // namespace

ShortestDigits ShortestDigitsOf(double magnitude) {
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const std::uint64_t fraction = bits & (kHiddenBit - 1);
  // magnitude = mantissa x 2^binary
  const std::uint64_t mantissa = fraction | kHiddenBit;
  const int binary = static_cast<int>(bits >> kMantissaBits) - kExponentBias;
  // Below a power of two the doubles lie half as far apart.
  const bool uneven = fraction == 0;
  // floor(log10) of the distance of two doubles that read back to this one.
  const int exponent = (binary * 1262611 - (uneven ? 524031 : 0)) >> 22;
  const Power& power = kPowers[static_cast<std::size_t>(-exponent)];
  const int shift = binary + power.bits;

  // Four times the value, and the ends of the interval that reads back to it, in units of
  // 10^exponent. An end belongs to the interval when the mantissa is even.
  const std::uint64_t odd = mantissa & 1U;
  const std::uint64_t four = mantissa << 2U;
  const std::uint64_t value = ScaledToOdd(power, four << shift);
  const std::uint64_t lower = ScaledToOdd(power, (four - (uneven ? 1 : 2)) << shift) + odd;
  const std::uint64_t upper = ScaledToOdd(power, (four + 2) << shift) - odd;

  const std::uint64_t below = value >> 2U;
  const std::uint64_t tens = below / 10 * 10;
  const bool tens_read_back = lower <= tens << 2U;
  if (tens_read_back != ((tens + 10) << 2U <= upper)) {
    return {tens / 10 + (tens_read_back ? 0 : 1), exponent + 1};
  }
  const bool below_reads_back = lower <= below << 2U;
  if (below_reads_back != ((below + 1) << 2U <= upper)) {
    return {below + (below_reads_back ? 0 : 1), exponent};
  }
  const std::uint64_t half = (below << 2U) + 2;
  const bool up = value > half || (value == half && (below & 1U) != 0);
  return {below + (up ? 1 : 0), exponent};
}

}  // namespace zento
