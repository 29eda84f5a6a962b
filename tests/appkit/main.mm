#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Desktop.h"

#include "tests/appkit/Driver.h"

#include <cstdlib>

#include <gtest/gtest.h>

/// The application object of the app, launched but not running: each test turns the loop itself.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::setenv("OSTREL_MENUBAR_DEFAULTS_DOMAIN", "ostrel-menubar-tests", 1); // not the person's own
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
