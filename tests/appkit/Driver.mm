#import "tests/appkit/Driver.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <fstream>
#include <mutex>
#include <utility>

#include <gtest/gtest.h>
#include <unistd.h>

namespace menubar::driver {

namespace {

std::mutex loggedMutex;
std::vector<std::string> logged;

void record(NSString* line) {
    const std::lock_guard lock(loggedMutex);
    logged.push_back(toString(line));
}

class LoggedLinesListener final : public ::testing::EmptyTestEventListener {
    void OnTestEnd(const ::testing::TestInfo&) override {
        for (const std::string& line : takeLoggedLines()) {
            ADD_FAILURE() << "logged: " << line;
        }
    }
};

/// Whether there was an event.
bool runOnce(NSTimeInterval seconds) {
    @autoreleasepool {
        NSEvent* event = [NSApp nextEventMatchingMask:NSEventMaskAny
                                            untilDate:[NSDate dateWithTimeIntervalSinceNow:seconds]
                                               inMode:NSDefaultRunLoopMode
                                              dequeue:YES];
        if (event != nil) {
            [NSApp sendEvent:event];
        }
        return event != nil;
    }
}

} // namespace

void pump(milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    while (std::chrono::steady_clock::now() < end) {
        (void)runOnce(0.01);
    }
}

void handleWaitingEvents() {
    while (runOnce(0.0)) {
    }
}

bool pumpUntil(const std::function<bool()>& done, milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        (void)runOnce(0.01);
    }
    return true;
}

std::size_t residentBytes() {
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

void failOnLoggedLines() {
    _NSLog_printf_handler = record;
    ::testing::UnitTest::GetInstance()->listeners().Append(new LoggedLinesListener);
}

std::vector<std::string> takeLoggedLines() {
    const std::lock_guard lock(loggedMutex);
    return std::exchange(logged, {});
}

} // namespace menubar::driver
