// Keeps GNUstep from starting processes and writing files that the app has no use for, and from losing events. Each
// category replaces methods of GNUstep's own class.
#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSDisplayServer.h>
#import <GNUstepGUI/GSServicesManager.h>
#import <GNUstepGUI/GSTheme.h>

#include "compat/gnustep/look/Drawing.h"

/// Distributed notifications need the daemon gdnc, which AppKit starts at launch. Nobody here listens to other
/// processes.
@implementation NSDistributedNotificationCenter (MenubarOverride)

+ (NSNotificationCenter*)defaultCenter {
    return [NSNotificationCenter defaultCenter];
}

+ (NSNotificationCenter*)notificationCenterForType:(NSString*)type {
    return [NSNotificationCenter defaultCenter];
}

@end

/// Runs make_services, which writes to the account's home directory whatever HOME says.
@implementation NSWorkspace (MenubarOverride)

- (void)findApplications {
}

@end

/// Registering asks, in a modal alert, what to do about another program of the same name.
@implementation GSServicesManager (MenubarOverride)

- (void)registerAsServiceProvider {
}

@end

/// The theme that the app has chosen stays: with every change of the user defaults, of which reading them anew is one,
/// GNUstep would go back to the one that they name, and make all windows again for it.
@implementation GSTheme (MenubarOverride)

+ (void)defaultsDidChange:(NSNotification*)notification {
}

@end

/// GNUstep remembers how much of the queue it has looked at while it waits. What leaves the queue meanwhile moves the
/// next event to before that place, where it is not seen; and what a timer adds wakes nobody. A button would wait for
/// the end of a click that has come. So all of the queue is looked at, and while something is tracked, again and again.
@implementation GSDisplayServer (MenubarOverride)

- (NSEvent*)getEventMatchingMask:(unsigned)mask beforeDate:(NSDate*)limit inMode:(NSString*)mode dequeue:(BOOL)dequeue {
    constexpr NSTimeInterval turn = 0.05;
    NSDate* end = limit == nil ? [NSDate distantFuture] : limit;
    const bool isTracking = ![mode isEqualToString:NSDefaultRunLoopMode];
    bool isLast = false;
    for (;;) {
        for (NSUInteger i = 0; i < [event_queue count]; ++i) {
            NSEvent* event = [event_queue objectAtIndex:i];
            if ((NSEventMaskFromType([event type]) & mask) != 0) {
                [[event retain] autorelease];
                if (dequeue) {
                    [event_queue removeObjectAtIndex:i];
                }
                return event;
            }
        }
        NSDate* wake = isTracking ? [end earlierDate:[NSDate dateWithTimeIntervalSinceNow:turn]] : end;
        if (isLast || ![[NSRunLoop currentRunLoop] runMode:mode beforeDate:wake]) {
            return nil;
        }
        isLast = [end timeIntervalSinceNow] <= 0;
    }
}

@end

/// The system's colours as they are legible on a light surface; GNUstep's are pure primaries.
@implementation NSColor (MenubarOverride)

+ (NSColor*)systemGreenColor {
    return [NSColor colorWithCalibratedRed:0.11 green:0.52 blue:0.22 alpha:1.0];
}

+ (NSColor*)systemOrangeColor {
    return [NSColor colorWithCalibratedRed:0.79 green:0.33 blue:0.0 alpha:1.0];
}

+ (NSColor*)systemRedColor {
    return [NSColor colorWithCalibratedRed:0.84 green:0.0 blue:0.08 alpha:1.0];
}

+ (NSColor*)secondaryLabelColor {
    return [NSColor colorWithCalibratedRed:0.43 green:0.43 blue:0.45 alpha:1.0];
}

+ (NSColor*)separatorColor {
    return menubar::Palette::separator();
}

@end
