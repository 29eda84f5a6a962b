#include "MenubarApp/Platform/SystemClock.h"

#include <chrono>
#include <ctime>

#include <stdlib.h>
#include <time.h>

namespace menubar {

namespace {

ClockTime localClockTime(Date date) {
    const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return {.hour = local.tm_hour, .minute = local.tm_min};
}

} // namespace

Date SystemClock::now() const {
    return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

TimeZone SystemClock::timeZone() const {
    ::tzset(); // localtime_r alone need not notice a change
    return TimeZone(localClockTime);
}

void SystemClock::useZone(const std::string& name) {
    ::setenv("TZ", name.c_str(), 1); // NOLINT(concurrency-mt-unsafe): the caller has no other thread
    ::tzset();
}

} // namespace menubar
