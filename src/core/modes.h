#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// What a track's mode says of its columns: the one table that everything asks which depends on how
// a track was measured.

namespace zento {

// Measurement modes of a track; the numbers are those of track files.
enum Mode : std::int32_t {
  kModeNone = 0,
  kModeCV = 1,
  kModeRDE = 2,
  kModePS = 3,
  kModeRPMvsj = 4,
  kModeMulti = 5,
  kModeSSV = 6,
  kModeSSVAll = 7,
};
inline constexpr int kModes = 8;

// What stands in column 0. Column 1 is a current, A, in all modes.
enum class XQuantity { kNone, kPotential, kTime, kRotationRate };  // V, s, rpm

// What stands in column 2.
enum class ThirdColumn { kNone, kRingCurrent, kTime };  // A; s, ms in rotation-rate sweeps

// Which tracks of a mode with a third column hold one of their own.
enum class ThirdColumnIn {
  kNone,
  kEveryTrack,
  kTimeRecording,  // those whose TimeRecording is 1
  kFirstChannel,   // track 0, for all channels of the record
};

struct ModeTraits {
  std::string_view name;     // "CV"
  std::string_view caption;  // "Mode:CV"
  XQuantity x = XQuantity::kNone;
  ThirdColumn third = ThirdColumn::kNone;
  ThirdColumnIn third_in = ThirdColumnIn::kNone;
  bool sweep = false;       // x goes between the vertices V at Scanrate
  bool cycles = false;      // sweeps back and forth, more than once perhaps
  bool referenced = false;  // x is measured against the reference electrode `ref`
  int channels = 1;         // tracks that one record fills, from track 0 on if more than one
};

inline constexpr std::array<ModeTraits, kModes> kModeTraits = {{
    {"None", "Mode:"},
    {.name = "CV",
     .caption = "Mode:CV",
     .x = XQuantity::kPotential,
     .sweep = true,
     .cycles = true,
     .referenced = true},
    {.name = "RDE",
     .caption = "Mode:RDE",
     .x = XQuantity::kPotential,
     .third = ThirdColumn::kRingCurrent,
     .third_in = ThirdColumnIn::kEveryTrack,
     .sweep = true,
     .cycles = true,
     .referenced = true},
    {.name = "PS", .caption = "Mode:PS", .x = XQuantity::kTime},
    {.name = "RPMvs.j",
     .caption = "Mode:RPMvs.j",
     .x = XQuantity::kRotationRate,
     .third = ThirdColumn::kTime,
     .third_in = ThirdColumnIn::kTimeRecording},
    {.name = "Multi",
     .caption = "Mode:Multi",
     .x = XQuantity::kPotential,
     .third = ThirdColumn::kTime,
     .third_in = ThirdColumnIn::kFirstChannel,
     .channels = 10},
    {.name = "SSV",
     .caption = "Mode:SSV",
     .x = XQuantity::kPotential,
     .third = ThirdColumn::kRingCurrent,
     .third_in = ThirdColumnIn::kEveryTrack,
     .sweep = true,
     .referenced = true},
    {.name = "SSVAll",
     .caption = "Mode:SSVAll",
     .x = XQuantity::kPotential,
     .third = ThirdColumn::kTime,
     .third_in = ThirdColumnIn::kEveryTrack,
     .referenced = true},
}};

// Those of an empty track for a number that is no mode: files may bring any.
constexpr const ModeTraits& TraitsOf(std::int32_t mode) {
  return kModeTraits[mode > kModeNone && mode < kModes ? static_cast<std::size_t>(mode) : 0];
}

// The track holds a curve.
constexpr bool IsMeasured(std::int32_t mode) {
  return TraitsOf(mode).x != XQuantity::kNone;
}
constexpr bool XIsPotential(std::int32_t mode) {
  return TraitsOf(mode).x == XQuantity::kPotential;
}
constexpr bool XIsTime(std::int32_t mode) {
  return TraitsOf(mode).x == XQuantity::kTime;
}
constexpr bool XIsRotationRate(std::int32_t mode) {
  return TraitsOf(mode).x == XQuantity::kRotationRate;
}
// The third column is one of times, whatever x is.
constexpr bool HasTimeColumn(std::int32_t mode) {
  return TraitsOf(mode).third == ThirdColumn::kTime;
}
constexpr bool HasRing(std::int32_t mode) {
  return TraitsOf(mode).third == ThirdColumn::kRingCurrent;
}
constexpr bool IsSweep(std::int32_t mode) {
  return TraitsOf(mode).sweep;
}
// Of several tracks that share one column of times.
constexpr bool IsMultichannel(std::int32_t mode) {
  return TraitsOf(mode).channels > 1;
}

inline constexpr int kMultiChannels = TraitsOf(kModeMulti).channels;  // tracks 0 to 9

namespace modes_internal {
template <std::string_view ModeTraits::*text>
constexpr std::array<std::string_view, kModes> All() {
  std::array<std::string_view, kModes> all;
  std::ranges::transform(kModeTraits, all.begin(), text);
  return all;
}
}  // namespace modes_internal

inline constexpr std::array ModeName = modes_internal::All<&ModeTraits::name>();
inline constexpr std::array ModeCaption = modes_internal::All<&ModeTraits::caption>();

}  // namespace zento
