#include "MenubarApp/AppKit/AppKitWorkspace.h"

#import <AppKit/AppKit.h>

#include <memory>

#include <gtest/gtest.h>

namespace menubar {
namespace {

/// Posts a key event with these modifiers and waits until it is the current one.
void makeCurrent(NSUInteger modifiers) {
    [NSApp postEvent:[NSEvent keyEventWithType:NSEventTypeKeyUp
                                            location:NSZeroPoint
                                       modifierFlags:modifiers
                                           timestamp:0
                                        windowNumber:0
                                             context:nil
                                          characters:@"x"
                         charactersIgnoringModifiers:@"x"
                                           isARepeat:NO
                                             keyCode:0]
             atStart:YES];
    ASSERT_NE([NSApp nextEventMatchingMask:NSEventMaskKeyUp
                                 untilDate:[NSDate dateWithTimeIntervalSinceNow:30]
                                    inMode:NSDefaultRunLoopMode
                                   dequeue:YES],
              nil);
}

TEST(AppKitWorkspace, tellsThatTheMachineHasWokenToWhoIsStillSubscribed) {
    const auto wake = [] {
        [[[NSWorkspace sharedWorkspace] notificationCenter] postNotificationName:NSWorkspaceDidWakeNotification
                                                                          object:[NSWorkspace sharedWorkspace]];
    };
    int wakes = 0;
    auto workspace = std::make_unique<AppKitWorkspace>();
    auto subscription = workspace->onWake([&] { ++wakes; });
    wake();
    EXPECT_EQ(wakes, 1);
    subscription = {};
    wake();
    subscription = workspace->onWake([&] { ++wakes; });
    workspace.reset();
    wake();
    EXPECT_EQ(wakes, 1);
}

TEST(AppKitWorkspace, theOptionKeyIsThatOfTheCurrentEvent) {
    const AppKitWorkspace workspace;
    makeCurrent(NSEventModifierFlagOption);
    EXPECT_TRUE(workspace.isOptionKeyDown());
    makeCurrent(NSEventModifierFlagOption | NSEventModifierFlagShift);
    EXPECT_TRUE(workspace.isOptionKeyDown());
    makeCurrent(NSEventModifierFlagShift);
    EXPECT_FALSE(workspace.isOptionKeyDown());
    makeCurrent(0);
    EXPECT_FALSE(workspace.isOptionKeyDown());
}

} // namespace
} // namespace menubar
