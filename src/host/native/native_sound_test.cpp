#include "host/native/native_sound.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace zento {
namespace {

// Nothing to hear in a test: whatever is asked for must come back, and be cleared away while it is
// still at work.
TEST(NativeSound, TakesWhateverItIsGiven) {
  const auto wave = std::filesystem::path(testing::TempDir()) /
                    ("zento-sound-" + std::to_string(std::random_device()()) + ".wav");
  // 8 kHz, 8 bit, 0.1 s of silence.
  std::string bytes(
      "RIFF\x44\x03\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x08\0"
      "data\x20\x03\0\0",
      44);
  std::ofstream(wave, std::ios::binary) << bytes << std::string(800, '\x80');
  const auto sound = MakeNativeSound();
  sound->Play("");
  sound->Play("/nowhere/none.wav");
  sound->Play(testing::TempDir());
  for (int i = 0; i < 100; ++i) sound->Play(wave.string());
  std::filesystem::remove(wave);
}

TEST(NativeSound, NeedNotPlayAtAll) {
  MakeNativeSound();
}

}  // namespace
}  // namespace zento
