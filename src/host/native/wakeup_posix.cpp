#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <system_error>

#include "host/native/wakeup.h"

namespace zento {

struct Wakeup::State {
  int ends[2] = {-1, -1};
};

Wakeup::Wakeup() : state_(new State) {
  if (::pipe2(state_->ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    const int cause = errno;
    delete state_;
    throw std::system_error(cause, std::generic_category(), "create a pipe");
  }
}

Wakeup::~Wakeup() {
  for (const int end : state_->ends) ::close(end);
  delete state_;
}

void Wakeup::Wake() {
  const int kept = errno;
  // A full pipe already wakes.
  [[maybe_unused]] const ssize_t written = ::write(state_->ends[1], "", 1);
  errno = kept;
}

void Wakeup::Sleep(std::optional<std::int64_t> micros) {
  timespec limit{};
  if (micros && *micros > 0) {
    limit.tv_sec = static_cast<std::time_t>(*micros / 1'000'000);
    limit.tv_nsec = static_cast<long>(*micros % 1'000'000 * 1000);
  }
  pollfd end{state_->ends[0], POLLIN, 0};
  // A signal ends the sleep too; whoever sleeps looks at the clock afterwards.
  if (::ppoll(&end, 1, micros ? &limit : nullptr, nullptr) <= 0) return;
  char drained[64];
  while (::read(state_->ends[0], drained, sizeof drained) > 0) {
  }
}

}  // namespace zento
