#include "host/virtual/virtual_clock.h"

#include <chrono>

namespace zento {

CalendarTime VirtualClock::Now() const {
  using namespace std::chrono;
  const sys_days day = sys_days(year(start_.year) / month(static_cast<unsigned>(start_.month)) /
                                std::chrono::day(static_cast<unsigned>(start_.day)));
  const auto moment = day + hours(start_.hour) + minutes(start_.minute) + seconds(start_.second) +
                      floor<seconds>(microseconds(micros_));
  const auto today = floor<days>(moment);
  const year_month_day date(today);
  const hh_mm_ss time(moment - today);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

}  // namespace zento
