#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "host/control.h"
#include "host/form.h"
#include "host/host.h"
#include "host/timer_queue.h"

namespace zento {

// A form's periodic timer. See TimerQueue for its cadence.
class Timer : public Control {
 public:
  Timer(Form& form, std::string name)
      : Control(form, std::move(name)), entry_(form.host().timers, [this] { Tick(); }) {}
  ControlKind Kind() const override { return ControlKind::kTimer; }
  // Milliseconds, at least 1.
  void SetInterval(std::int64_t millis) { entry_.SetInterval(millis); }
  std::int64_t Interval() const { return entry_.Interval(); }
  void SetEnabled(bool enabled) { entry_.SetEnabled(enabled); }
  bool Enabled() const { return entry_.Enabled(); }
  std::string Value() const override { return std::to_string(entry_.Interval()); }

  std::function<void()> on_tick;

 private:
  void Tick() {
    if (on_tick) on_tick();
  }
  TimerQueue::Entry entry_;
};

}  // namespace zento
