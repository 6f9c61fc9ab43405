#include <canberra.h>

#include <filesystem>
#include <system_error>

#include "host/native/native_sound.h"

namespace zento {
namespace {

class CanberraSound final : public Sound {
 public:
  ~CanberraSound() override {
    if (context_ != nullptr) ca_context_destroy(context_);
  }

  void Play(const std::string& wave_file) override {
    // The path in the settings may be another machine's; the sound service is not even started
    // then.
    std::error_code error;
    if (!std::filesystem::is_regular_file(wave_file, error)) return;
    if (context_ == nullptr && ca_context_create(&context_) != CA_SUCCESS) {
      context_ = nullptr;
      return;
    }
    ca_context_play(context_, 0, CA_PROP_MEDIA_FILENAME, wave_file.c_str(), CA_PROP_MEDIA_ROLE,
                    "event", nullptr);
  }

 private:
  ca_context* context_ = nullptr;
};

}  // namespace

std::unique_ptr<Sound> MakeNativeSound() {
  return std::make_unique<CanberraSound>();
}

}  // namespace zento
