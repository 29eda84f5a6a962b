#include "MenubarCore/Text/TimeZone.h"

namespace menubar {

TimeZone::TimeZone(std::chrono::minutes aheadOfUTC)
    : TimeZone([aheadOfUTC](Date date) {
          const Date local = date + aheadOfUTC;
          const std::chrono::hh_mm_ss time(local - std::chrono::floor<std::chrono::days>(local));
          return ClockTime{.hour = static_cast<int>(time.hours().count()),
                           .minute = static_cast<int>(time.minutes().count())};
      }) {}

} // namespace menubar
