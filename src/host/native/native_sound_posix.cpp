#include <canberra.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "host/native/native_sound.h"

namespace zento {
namespace {

// What the window thread and the playing one share; whoever leaves last takes it along.
struct Player {
  std::mutex mutex;
  std::condition_variable changed;
  std::optional<std::string> wanted;  // the file to be played next
  bool stopping = false;
  bool stopped = false;
};

void PlayFile(ca_context*& context, const std::string& wave_file) {
  // The path in the settings may be another machine's; the sound service is not even started then.
  std::error_code error;
  if (!std::filesystem::is_regular_file(wave_file, error)) return;
  if (context == nullptr && ca_context_create(&context) != CA_SUCCESS) {
    context = nullptr;
    return;
  }
  ca_context_play(context, 0, CA_PROP_MEDIA_FILENAME, wave_file.c_str(), CA_PROP_MEDIA_ROLE,
                  "event", nullptr);
}

void Serve(Player& player) {
  ca_context* context = nullptr;
  std::unique_lock lock(player.mutex);
  while (!player.stopping) {
    player.changed.wait(lock, [&] { return player.stopping || player.wanted; });
    const auto file = std::exchange(player.wanted, std::nullopt);
    if (!file || player.stopping) continue;
    lock.unlock();
    PlayFile(context, *file);
    lock.lock();
  }
  lock.unlock();
  if (context != nullptr) ca_context_destroy(context);
  lock.lock();
  player.stopped = true;
  player.changed.notify_all();
}

// A thread of its own: a file on a server that has gone, or a sound service that does not answer,
// must not hold up a measurement.
class CanberraSound final : public Sound {
 public:
  ~CanberraSound() override {
    if (!player_) return;
    constexpr std::chrono::milliseconds kPatience{500};
    std::unique_lock lock(player_->mutex);
    player_->stopping = true;
    player_->changed.notify_all();
    player_->changed.wait_for(lock, kPatience, [&] { return player_->stopped; });
  }

  void Play(const std::string& wave_file) override {
    if (wave_file.empty()) return;
    if (!player_) {
      auto player = std::make_shared<Player>();
      try {
        std::thread([player] { Serve(*player); }).detach();
      } catch (const std::system_error&) {
        return;  // No thread left: silent.
      }
      player_ = std::move(player);
    }
    const std::lock_guard lock(player_->mutex);
    player_->wanted = wave_file;
    player_->changed.notify_all();
  }

 private:
  std::shared_ptr<Player> player_;
};

}  // namespace

std::unique_ptr<Sound> MakeNativeSound() {
  return std::make_unique<CanberraSound>();
}

}  // namespace zento
