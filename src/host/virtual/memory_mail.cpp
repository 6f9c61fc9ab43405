#include "host/virtual/memory_mail.h"

#include <algorithm>
#include <utility>

namespace zento {

MemoryMail::MemoryMail(TimerQueue& timers) : arrival_(timers, [this] { DeliverFirst(); }) {}

void MemoryMail::Send(const MailMessage& message, std::function<void(const Status&)> done) {
  Status status;
  if (const auto fault = std::exchange(fault_, std::nullopt)) status = Status::Failure(*fault);
  on_the_way_.push_back({message, std::move(done), std::move(status)});
  if (arrival_.Enabled()) return;
  arrival_.SetInterval(std::max<std::int64_t>(duration_ms_, 1));
  arrival_.SetEnabled(true);
}

void MemoryMail::DeliverFirst() {
  OnTheWay mail = std::move(on_the_way_.front());
  on_the_way_.pop_front();
  arrival_.SetEnabled(!on_the_way_.empty());
  if (mail.status.ok()) sent.push_back(std::move(mail.message));
  if (mail.done) mail.done(mail.status);
}

void MemoryMail::Finish() {
  while (!on_the_way_.empty()) DeliverFirst();
}

}  // namespace zento
