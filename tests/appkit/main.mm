#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Desktop.h"

#include "tests/appkit/Driver.h"

#include <gtest/gtest.h>

/// The application object of the app, launched but not running: each test turns the loop itself.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    @autoreleasepool {
        menubar::driver::failOnLoggedLines();
        menubar::Desktop::prepareProcess();
        [NSApplication sharedApplication];
        [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
        menubar::Desktop::prepareApplication();
        [NSApp finishLaunching];
        return RUN_ALL_TESTS();
    }
}
