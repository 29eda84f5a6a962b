// GNUstep's timers wait for a time of day, which it takes from gettimeofday: where the clock is set back by an hour, no
// timer would fire for an hour. Those of macOS know no clock. So gettimeofday of this program goes on evenly from the
// time of day at which it was first asked, also while the machine sleeps. The product's clock asks clock_gettime.

#include <cstdint>
#include <ctime>

#include <sys/time.h>

namespace {

constexpr std::int64_t second = 1'000'000'000;

std::int64_t nanoseconds(clockid_t clock) {
    timespec now{};
    ::clock_gettime(clock, &now);
    return now.tv_sec * second + now.tv_nsec;
}

} // namespace

extern "C" int steadyTimeOfDay(timeval* now, void* timezone) noexcept __asm__("gettimeofday");

int steadyTimeOfDay(timeval* now, void* /*timezone*/) noexcept {
    static const std::int64_t start = nanoseconds(CLOCK_REALTIME) - nanoseconds(CLOCK_BOOTTIME);
    const std::int64_t time = start + nanoseconds(CLOCK_BOOTTIME);
    now->tv_sec = time / second;
    now->tv_usec = time % second / 1000;
    return 0;
}
