#import "tests/appkit/Driver.h"

#include <gtest/gtest.h>

namespace menubar::driver {

namespace {

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
    // On a busy machine the time may be over before everything that is posted had its turn.
    constexpr int fewestTurns = 10;
    const NSTimeInterval aTurn = std::chrono::duration<double>(duration).count() / fewestTurns;
    const auto end = std::chrono::steady_clock::now() + duration;
    for (int turn = 0; turn < fewestTurns || std::chrono::steady_clock::now() < end; ++turn) {
        (void)runOnce(aTurn);
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

void bringForward(NSWindow* window) {
    [NSApp unhideWithoutActivation]; // it hides with the last window of the test before
    [NSApp activateIgnoringOtherApps:YES];
    [window makeKeyAndOrderFront:nil];
    ASSERT_TRUE(pumpUntil([window] { return [window isKeyWindow] != NO; })) << "another program keeps the keys";
}

std::string bytesOf(NSBitmapImageRep* picture) {
    return {reinterpret_cast<const char*>([picture bitmapData]), static_cast<std::size_t>([picture bytesPerPlane])};
}

} // namespace menubar::driver
