#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/mail.h"
#include "host/timer_queue.h"

namespace zento {

// Keeps mails instead of sending them. Each takes a millisecond to arrive, or as long as it is
// told to.
class MemoryMail : public Mail {
 public:
  explicit MemoryMail(TimerQueue& timers);

  void Send(const MailMessage& message, std::function<void(const Status&)> done) override;
  int UnderWay() const override { return static_cast<int>(on_the_way_.size()); }
  void Finish() override;

  // The next mail fails with `why`.
  void FailNext(std::string why = "the server does not answer") { fault_ = std::move(why); }
  // What each mail takes from now on; one at a time, in order.
  void SetDuration(std::int64_t millis) { duration_ms_ = millis; }

  // What arrived since the last call, oldest first.
  std::vector<MailMessage> TakeSent() { return std::exchange(sent, {}); }

  std::vector<MailMessage> sent;  // what arrived

 private:
  struct OnTheWay {
    MailMessage message;
    std::function<void(const Status&)> done;
    Status status;
  };
  void DeliverFirst();

  TimerQueue::Entry arrival_;
  std::deque<OnTheWay> on_the_way_;
  std::optional<std::string> fault_;
  std::int64_t duration_ms_ = 0;
};

}  // namespace zento
