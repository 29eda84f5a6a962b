#import "tests/appkit/Driver.h"

#include <gtest/gtest.h>

/// Takes the events that wait out of the queue, and adds the one that is waited for.
@interface QueueChanger : NSObject
- (void)change:(NSTimer*)timer;
@end

namespace menubar {
namespace {

void post(NSEventType type) {
    [NSApp postEvent:[NSEvent mouseEventWithType:type
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                     eventNumber:0
                                      clickCount:1
                                        pressure:0]
             atStart:NO];
}

NSEvent* next(NSEventMask mask, NSDate* limit) {
    return [NSApp nextEventMatchingMask:mask untilDate:limit inMode:NSEventTrackingRunLoopMode dequeue:YES];
}

// The end of a click is waited for while the queue holds events of other kinds, which something else takes.
TEST(EventQueue, anEventIsFoundThoughOthersLeftTheQueueMeanwhile) {
    @autoreleasepool {
        post(NSRightMouseUp);
        post(NSRightMouseUp);
        QueueChanger* changer = [[[QueueChanger alloc] init] autorelease];
        NSTimer* timer = [NSTimer timerWithTimeInterval:0.01
                                                 target:changer
                                               selector:@selector(change:)
                                               userInfo:nil
                                                repeats:NO];
        [[NSRunLoop currentRunLoop] addTimer:timer forMode:NSEventTrackingRunLoopMode];
        NSEvent* event = next(NSLeftMouseUpMask, [NSDate dateWithTimeIntervalSinceNow:30]);
        EXPECT_EQ([event type], NSLeftMouseUp);
    }
}

TEST(EventQueue, whatDoesNotComeIsWaitedForAsLongAsAsked) {
    @autoreleasepool {
        EXPECT_EQ(next(NSLeftMouseUpMask, [NSDate distantPast]), nil);
        NSDate* limit = [NSDate dateWithTimeIntervalSinceNow:0.05];
        EXPECT_EQ(next(NSLeftMouseUpMask, limit), nil);
        EXPECT_LE([limit timeIntervalSinceNow], 0.0);
    }
}

} // namespace
} // namespace menubar

@implementation QueueChanger

- (void)change:(NSTimer*)timer {
    [NSApp discardEventsMatchingMask:NSRightMouseUpMask beforeEvent:nil];
    menubar::post(NSLeftMouseUp);
}

@end
