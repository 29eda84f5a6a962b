#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>

/// Turns the event loop for tests, and listens for what GNUstep swallows.
namespace menubar::driver {

using std::chrono::milliseconds;

/// Runs the main loop for that long, in the default mode.
void pump(milliseconds duration);

/// Handles the events that are waiting, and those that they bring about, and returns.
void handleWaitingEvents();

/// Runs the main loop until `done` or the time is over. Whether it was done.
[[nodiscard]] bool pumpUntil(const std::function<bool()>& done, milliseconds limit = milliseconds(30000));

#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool isMemoryMeasurable = false; // freed memory is held back for a while
#else
inline constexpr bool isMemoryMeasurable = true;
#endif

/// This process's resident memory.
[[nodiscard]] std::size_t residentBytes();

/// GNUstep catches exceptions of timers and notifications and only logs them. From now on every line that it logs
/// fails the test that is running.
void failOnLoggedLines();

/// The lines logged since the last call; the test has looked at them.
std::vector<std::string> takeLoggedLines();

} // namespace menubar::driver
