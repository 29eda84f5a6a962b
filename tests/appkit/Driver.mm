#import "tests/appkit/Driver.h"

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

std::string bytesOf(NSBitmapImageRep* picture) {
    return {reinterpret_cast<const char*>([picture bitmapData]), static_cast<std::size_t>([picture bytesPerPlane])};
}

} // namespace menubar::driver
