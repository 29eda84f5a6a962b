#import "MenubarApp/AppKit/AppDelegate.h"

#include "MenubarApp/AppKit/ObjCPointer.h"

#include <gtest/gtest.h>

/// Counts how often the settings are asked for.
@interface CountingAppDelegate : AppDelegate {
@public
    int shown;
}
@end

@implementation CountingAppDelegate

- (void)show:(id)sender {
    ++shown;
}

@end

namespace menubar {
namespace {

TEST(AppDelegate, showsTheSettingsToWhoLaunchesTheAppAgain) {
    const auto delegate = ObjCPointer<CountingAppDelegate>::adopt([[CountingAppDelegate alloc] initWithTools:{}
                                                                                                pollInterval:{}]);
    EXPECT_FALSE([delegate.get() applicationShouldHandleReopen:NSApp hasVisibleWindows:NO]);
    EXPECT_EQ(delegate.get()->shown, 1);
}

} // namespace
} // namespace menubar
