#include <windows.h>

#include <mmsystem.h>

#include <filesystem>
#include <string>

#include "host/native/native_sound.h"

namespace zento {
namespace {

class WindowsSound final : public Sound {
 public:
  void Play(const std::string& wave_file) override {
    const std::wstring path =
        std::filesystem::path(std::u8string(wave_file.begin(), wave_file.end())).wstring();
    PlaySoundW(path.c_str(), nullptr, SND_FILENAME | SND_ASYNC | SND_NODEFAULT);
  }
};

}  // namespace

std::unique_ptr<Sound> MakeNativeSound() {
  return std::make_unique<WindowsSound>();
}

}  // namespace zento
