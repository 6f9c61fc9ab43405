#pragma once

namespace zento {

// A moment of local civil time, as a wall clock shows it.
struct CalendarTime {
  int year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;    // 1 to 31
  int hour = 0;   // 0 to 23
  int minute = 0;
  int second = 0;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

}  // namespace zento
