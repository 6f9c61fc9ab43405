#include "host/native/wakeup.h"

#include <windows.h>

#include <mmsystem.h>

#ifndef CREATE_WAITABLE_TIMER_HIGH_RESOLUTION
#define CREATE_WAITABLE_TIMER_HIGH_RESOLUTION 0x2
#endif

namespace zento {

struct Wakeup::State {
  HANDLE event = nullptr;
  HANDLE timer = nullptr;
  bool coarse = false;  // the system has no fine timers: ask for a finer tick of the system's clock
};

Wakeup::Wakeup() : state_(new State) {
  state_->event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  state_->timer = CreateWaitableTimerExW(nullptr, nullptr, CREATE_WAITABLE_TIMER_HIGH_RESOLUTION,
                                         TIMER_ALL_ACCESS);
  if (state_->timer == nullptr) {
    state_->timer = CreateWaitableTimerExW(nullptr, nullptr, 0, TIMER_ALL_ACCESS);
    state_->coarse = timeBeginPeriod(1) == TIMERR_NOERROR;
  }
}

Wakeup::~Wakeup() {
  if (state_->coarse) timeEndPeriod(1);
  CloseHandle(state_->timer);
  CloseHandle(state_->event);
  delete state_;
}

void Wakeup::Wake() {
  SetEvent(state_->event);
}

void Wakeup::Sleep(std::optional<std::int64_t> micros) {
  if (!micros) {
    WaitForSingleObject(state_->event, INFINITE);
    return;
  }
  LARGE_INTEGER due{};
  due.QuadPart = -(*micros > 0 ? *micros : 0) * 10;  // relative, in units of 100 ns
  SetWaitableTimer(state_->timer, &due, 0, nullptr, nullptr, FALSE);
  const HANDLE handles[] = {state_->event, state_->timer};
  WaitForMultipleObjects(2, handles, FALSE, INFINITE);
}

}  // namespace zento
