#include "qt/timer_driver.h"

#include <QSocketNotifier>
#include <algorithm>
#include <chrono>

namespace zento {

TimerDriver::TimerDriver(TimerQueue& queue, Clock& clock) : queue_(queue), clock_(clock) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, [this] { Run(); });
  if (alarm_.Descriptor() >= 0) {
    watch_ = new QSocketNotifier(alarm_.Descriptor(), QSocketNotifier::Read, this);
    connect(watch_, &QSocketNotifier::activated, this, [this] { Run(); });
  }
  queue_.on_rearm = [this] { Arm(); };
  Arm();
}

TimerDriver::~TimerDriver() {
  queue_.on_rearm = {};
}

void TimerDriver::Run() {
  if (watch_ != nullptr) alarm_.Acknowledge();
  // The handlers rearm timers one after the other; one alarm is set when they are done.
  running_ = true;
  queue_.RunDue();
  running_ = false;
  Arm();
}

void TimerDriver::Arm() {
  if (running_) return;
  const auto due = queue_.NextDue();
  if (!due) {
    timer_.stop();
    if (watch_ != nullptr) alarm_.Cancel();
    return;
  }
  const std::int64_t micros = std::max<std::int64_t>(*due - clock_.Micros(), 0);
  if (watch_ != nullptr) {
    alarm_.After(micros);
  } else {
    timer_.start(std::chrono::milliseconds((micros + 999) / 1000));
  }
}

}  // namespace zento
