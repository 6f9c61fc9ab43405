#pragma once

#include <cstdint>

namespace zento {

// An alarm that a toolkit's event loop can watch as a file descriptor, precise to some tens of
// microseconds where a toolkit's own timers round to milliseconds. Not every platform has one.
class Alarm {
 public:
  Alarm();
  ~Alarm();
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

  // Readable once the alarm has gone off; -1 where the platform has none (then nothing else works).
  int Descriptor() const { return descriptor_; }
  // One alarm, `micros` from now (at least 0), in place of the one before.
  void After(std::int64_t micros);
  void Cancel();
  // Makes the descriptor unreadable again.
  void Acknowledge();

 private:
  int descriptor_ = -1;
};

}  // namespace zento
