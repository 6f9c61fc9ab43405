#include "host/native/alarm.h"

namespace zento {

// Windows has no timer that an event loop could watch as a descriptor.
Alarm::Alarm() = default;
Alarm::~Alarm() = default;
void Alarm::After(std::int64_t) {}
void Alarm::Cancel() {}
void Alarm::Acknowledge() {}

}  // namespace zento
