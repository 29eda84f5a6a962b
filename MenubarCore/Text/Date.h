#pragma once

#include <chrono>

namespace menubar {

/// An instant in UTC. Microseconds reach from year 1 to year 9999, which nanoseconds would not.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// `later` minus `earlier` in seconds; negative when `later` is the earlier one.
[[nodiscard]] inline double secondsBetween(Date earlier, Date later) {
    return std::chrono::duration<double>(later - earlier).count();
}

} // namespace menubar
