// The fast paths of the number forms of track files and of tables on the clipboard. All are exact:
// what they cannot decide with certainty goes to the slow and exact Format.

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "text/decimal.h"
#include "text/format.h"

namespace zento {
namespace {

constexpr int kMantissaBits = 52;
constexpr int kExponentBias = 1075;  // of the mantissa read as an integer

char* WriteSlowly(char* out, double value, std::string_view pattern) {
  const std::string text = Format(MadeFinite(value), pattern);
  return std::copy(text.begin(), text.end(), out);
}

constexpr std::array<char, 200> MakePairs() {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}
constexpr std::array<char, 200> kPairs = MakePairs();

// `number` below 100.
void WritePair(char* out, std::uint32_t number) {
  std::memcpy(out, &kPairs[2 * number], 2);
}

char* WriteWhole(char* out, std::uint64_t number) {
  if (number < 10) {
    *out = static_cast<char>('0' + number);
    return out + 1;
  }
  std::array<char, 20> digits;
  char* p = digits.data() + digits.size();
  for (; number >= 100; number /= 100) WritePair(p -= 2, static_cast<std::uint32_t>(number % 100));
  if (number >= 10) {
    WritePair(p -= 2, static_cast<std::uint32_t>(number));
  } else {
    *--p = static_cast<char>('0' + number);
  }
  const auto length = static_cast<std::size_t>(digits.data() + digits.size() - p);
  std::memcpy(out, p, length);
  return out + length;
}

// Powers of ten for the decimal exponents -34 to 56, each within half a unit in its last place.
constexpr int kLeastPower = -30;
constexpr int kMostPower = 60;
constexpr std::array<double, kMostPower - kLeastPower + 1> kPower = {
    1e-30, 1e-29, 1e-28, 1e-27, 1e-26, 1e-25, 1e-24, 1e-23, 1e-22, 1e-21, 1e-20, 1e-19, 1e-18,
    1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9,  1e-8,  1e-7,  1e-6,  1e-5,
    1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,   1e7,   1e8,
    1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21,
    1e22,  1e23,  1e24,  1e25,  1e26,  1e27,  1e28,  1e29,  1e30,  1e31,  1e32,  1e33,  1e34,
    1e35,  1e36,  1e37,  1e38,  1e39,  1e40,  1e41,  1e42,  1e43,  1e44,  1e45,  1e46,  1e47,
    1e48,  1e49,  1e50,  1e51,  1e52,  1e53,  1e54,  1e55,  1e56,  1e57,  1e58,  1e59,  1e60};

// d.dddd from five digits and the exponent. Zeros behind the first decimal are dropped, or kept.
template <bool kDropZeros>
char* WriteMantissaAndExponent(char* out, std::uint32_t digits, int exponent) {
  const std::uint32_t lead = digits / 1000;  // two digits
  const std::uint32_t rest = digits % 1000;
  out[0] = kPairs[2 * lead];
  out[1] = '.';
  out[2] = kPairs[2 * lead + 1];
  WritePair(out + 3, rest / 10);
  out[5] = static_cast<char>('0' + rest % 10);
  int dropped = 0;
  if constexpr (kDropZeros) {
    dropped = rest % 10 != 0 ? 0 : rest % 100 != 0 ? 1 : rest != 0 ? 2 : 3;
  }
  out += 6 - dropped;
  out[0] = 'e';
  out[1] = exponent < 0 ? '-' : '+';
  const auto size = static_cast<std::uint32_t>(exponent < 0 ? -exponent : exponent);
  if (size < 10) {
    out[2] = static_cast<char>('0' + size);
    return out + 3;
  }
  WritePair(out + 2, size);
  return out + 4;
}

template <bool kDropZeros>
char* WriteFiveDigits(char* out, double value) {
  constexpr std::string_view kPattern = kDropZeros ? "0.0###e+0" : "0.0000e+0";
  constexpr std::string_view kZero = kDropZeros ? "0.0e+0" : "0.0000e+0";
  const double magnitude = std::fabs(value);
  if (magnitude == 0) return std::copy_n(kZero.data(), kZero.size(), out);
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const int binary = static_cast<int>(bits >> kMantissaBits) - 1023;
  // floor(binary x log10 2): the decimal exponent, or one less than it.
  int exponent = (binary * 78913) >> 18;
  if (4 - exponent > kMostPower || 3 - exponent < kLeastPower) {
    return WriteSlowly(out, value, kPattern);
  }
  double scaled = magnitude * kPower[static_cast<std::size_t>(4 - exponent - kLeastPower)];
  if (scaled >= 1e5) {
    ++exponent;
    scaled = magnitude * kPower[static_cast<std::size_t>(4 - exponent - kLeastPower)];
  }
  // The power and the product are each off by at most 2^-53 of their size, together less than 5e-11
  // here. Nearer to a half than that, and with room to spare, the exact path decides.
  auto digits = static_cast<std::uint32_t>(scaled);
  const double rest = scaled - digits;
  if (std::fabs(rest - 0.5) < 1e-9) return WriteSlowly(out, value, kPattern);
  digits += rest > 0.5 ? 1 : 0;
  if (digits == 100000) {
    digits = 10000;
    ++exponent;
  }
  *out = '-';
  return WriteMantissaAndExponent<kDropZeros>(out + (value < 0 ? 1 : 0), digits, exponent);
}

// Eight characters, the first of them in the lowest byte, as it stands in memory.
static_assert(std::endian::native == std::endian::little);
using EightCharacters = std::uint64_t;
constexpr std::uint32_t kEightDigits = 100'000'000;

// The digits of `number` below kEightDigits, with the zeros before it, as numbers from 0 to 9. It
// is halved three times; what is multiplied and shifted is division by 100 and by 10 in each part.
EightCharacters EightDigitsOf(std::uint32_t number) {
  std::uint64_t digits = number / 10000 | static_cast<std::uint64_t>(number % 10000) << 32U;
  const std::uint64_t hundreds = ((digits * 10486) >> 20U) & 0x0000007f'0000007fU;
  digits = hundreds | (digits - 100 * hundreds) << 16U;
  const std::uint64_t tens = ((digits * 103) >> 10U) & 0x000f000f'000f000fU;
  return tens | (digits - 10 * tens) << 8U;
}

// d.ddd x 10^exponent.
struct Digits {
  char first;
  EightCharacters upper;  // decimals
  EightCharacters lower;
  int decimals;  // without the zeros behind them
  int exponent;
};

// `shortest.digits` is not 0.
Digits DigitsOf(ShortestDigits shortest) {
  constexpr std::uint64_t kSixteenDigits = std::uint64_t{kEightDigits} * kEightDigits;
  std::uint64_t number = shortest.digits;
  int exponent = shortest.exponent + 16;
  for (; number < kSixteenDigits; number *= 10) --exponent;
  const std::uint64_t upper = number / kEightDigits;
  const EightCharacters zeros = 0x30303030'30303030U;
  const EightCharacters high = EightDigitsOf(static_cast<std::uint32_t>(upper % kEightDigits));
  const EightCharacters low = EightDigitsOf(static_cast<std::uint32_t>(number % kEightDigits));
  const int dropped = low != 0 ? std::countl_zero(low) / 8 : 8 + std::countl_zero(high) / 8;
  return {static_cast<char>('0' + upper / kEightDigits), high | zeros, low | zeros, 16 - dropped,
          exponent};
}

// Sixteen characters, whatever the number of decimals.
void WriteDecimals(char* out, const Digits& digits) {
  std::memcpy(out, &digits.upper, 8);
  std::memcpy(out + 8, &digits.lower, 8);
}

// The general form; see PlainNumber. Writes no farther than kLongestPlain - 1 characters.
char* WriteGeneral(char* out, const Digits& digits) {
  const int exponent = digits.exponent;
  if (exponent < kLeastPlain || exponent > kMostPlain) {
    out[0] = digits.first;
    out[1] = '.';
    WriteDecimals(out + 2, digits);
    out += digits.decimals > 0 ? 2 + digits.decimals : 1;
    out[0] = 'E';
    out[1] = exponent < 0 ? '-' : '+';
    const auto size = static_cast<std::uint32_t>(exponent < 0 ? -exponent : exponent);
    if (size >= 100) return WriteWhole(out + 2, size);
    WritePair(out + 2, size);
    return out + 4;
  }
  if (exponent < 0) {
    std::copy_n("0.000", 5, out);
    out += 1 - exponent;
    *out = digits.first;
    WriteDecimals(out + 1, digits);
    return out + 1 + digits.decimals;
  }
  std::array<char, 16> decimals;
  WriteDecimals(decimals.data(), digits);
  const int whole = std::min(digits.decimals, exponent);
  *out++ = digits.first;
  out = std::copy_n(decimals.data(), whole, out);
  out = std::fill_n(out, exponent - whole, '0');
  if (digits.decimals == whole) return out;
  *out++ = '.';
  return std::copy_n(decimals.data() + whole, digits.decimals - whole, out);
}

// Of what is far from everything that is measured. `magnitude` is above 0 and finite.
ShortestDigits ShortestDigitsByLibrary(double magnitude) {
  std::array<char, kLongestPlain> text;  // "d.ddde-xx"
  char* const begin = text.data();
  const auto written =
      std::to_chars(begin, begin + text.size(), magnitude, std::chars_format::scientific);
  const char* const e = std::find(begin, written.ptr, 'e');
  ShortestDigits shortest;
  std::from_chars(e[1] == '+' ? e + 2 : e + 1, written.ptr, shortest.exponent);
  shortest.digits = static_cast<std::uint64_t>(*begin - '0');
  for (const char* digit = begin + 2; digit < e; ++digit) {
    shortest.digits = shortest.digits * 10 + static_cast<std::uint64_t>(*digit - '0');
    --shortest.exponent;
  }
  return shortest;
}

}  // namespace

char* WriteFixed4(char* out, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int biased = static_cast<int>(bits >> kMantissaBits) & 0x7ff;
  // |value| x 10^4 = mantissa x 625 x 2^-shift, and mantissa x 625 stays below 2^63.
  const int shift = kExponentBias - 4 - biased;
  if (shift < 1) return WriteSlowly(out, value, "0.0000");  // 2^48 and more
  std::uint64_t scaled = 0;
  if (shift < 64) {
    const std::uint64_t mantissa =
        (bits & ((std::uint64_t{1} << kMantissaBits) - 1)) | (std::uint64_t{1} << kMantissaBits);
    scaled = (mantissa * 625 + (std::uint64_t{1} << (shift - 1))) >> shift;
  }
  *out = '-';
  out += static_cast<std::size_t>(bits >> 63) & static_cast<std::size_t>(scaled != 0);
  out = WriteWhole(out, scaled / 10000);
  const auto decimals = static_cast<std::uint32_t>(scaled % 10000);
  *out = '.';
  WritePair(out + 1, decimals / 100);
  WritePair(out + 3, decimals % 100);
  return out + 5;
}

char* WriteScientific(char* out, double value) {
  return WriteFiveDigits<true>(out, value);
}

char* WriteScientific4(char* out, double value) {
  return WriteFiveDigits<false>(out, value);
}

char* WritePlain(char* out, double value) {
  double magnitude = std::fabs(value);
  ShortestDigits shortest;
  if (magnitude >= kLeastShortest && magnitude < kBeyondShortest) {
    shortest = ShortestDigitsOf(magnitude);
  } else {
    magnitude = MadeFinite(magnitude);
    if (magnitude == 0) return std::fill_n(out, 1, '0');
    shortest = ShortestDigitsByLibrary(magnitude);
  }
  *out = '-';
  return WriteGeneral(out + (value < 0 ? 1 : 0), DigitsOf(shortest));
}

}  // namespace zento
