#import "tests/appkit/WindowFixture.h"

@implementation PanelHand

- (instancetype)initWithAct:(std::function<void(NSOpenPanel*)>)act {
    self = [super init];
    if (self != nil) {
        _act = std::move(act);
        _timer = menubar::ObjCPointer<NSTimer>::retain([NSTimer timerWithTimeInterval:0.02
                                                                               target:self
                                                                             selector:@selector(fire)
                                                                             userInfo:nil
                                                                              repeats:YES]);
        [[NSRunLoop mainRunLoop] addTimer:_timer.get() forMode:NSModalPanelRunLoopMode];
    }
    return self;
}

- (void)fire {
    // Not [NSOpenPanel openPanel], which gives the panel its defaults back.
    NSWindow* panel = [NSApp modalWindow];
    if ([panel isKindOfClass:[NSOpenPanel class]]) {
        if (const auto act = std::exchange(_act, nullptr)) {
            act(static_cast<NSOpenPanel*>(panel));
        }
    }
    // What ends a modal loop from within a timer is noticed with the next event.
    [NSApp postEvent:[NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0]
             atStart:NO];
}

- (void)stop {
    [_timer.get() invalidate]; // which retains this object
}

@end
