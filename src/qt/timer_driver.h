#pragma once

#include <QObject>
#include <QTimer>

#include "host/clock.h"
#include "host/native/alarm.h"
#include "host/timer_queue.h"

class QSocketNotifier;

namespace zento {

// Runs a timer queue from the event loop. Deadlines are absolute (the queue's), so an alarm that
// comes late delays one tick, never the rate.
class TimerDriver : public QObject {
 public:
  // Both must outlive the driver.
  TimerDriver(TimerQueue& queue, Clock& clock);
  ~TimerDriver() override;

 private:
  void Arm();
  void Run();

  TimerQueue& queue_;
  Clock& clock_;
  Alarm alarm_;
  QSocketNotifier* watch_ = nullptr;
  // Where the platform has no alarm to watch; rounds to milliseconds.
  QTimer timer_;
  bool running_ = false;
};

}  // namespace zento
