#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Desktop.h"
#include "MenubarApp/AppKit/ObjCPointer.h"

#include "tests/appkit/Driver.h"

#include <cstdlib>

#include <gtest/gtest.h>

namespace {

constexpr const char* defaultsDomain = "ostrel-menubar-tests"; // not the person's own

/// Without a desktop that lets them come to the front, all tests would only wait.
class ADesktop final : public ::testing::Environment {
    void SetUp() override {
        const auto window = menubar::Desktop::makeWindow(NSMakeSize(300, 200));
        [window.get() setReleasedWhenClosed:NO];
        menubar::driver::bringForward(window.get());
        [window.get() close];
    }

    void TearDown() override {
        [[NSUserDefaults standardUserDefaults] removePersistentDomainForName:@(defaultsDomain)];
    }
};

} // namespace

/// The application object of the app, launched but not running: each test turns the loop itself.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new ADesktop);
    ::setenv("OSTREL_MENUBAR_DEFAULTS_DOMAIN", defaultsDomain, 1);
    @autoreleasepool {
        menubar::driver::failOnLoggedLines();
        menubar::Desktop::prepareProcess();
        menubar::driver::giveFocusToEveryControl();
        [NSApplication sharedApplication];
        [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
        menubar::Desktop::prepareApplication();
        [NSApp finishLaunching];
        return RUN_ALL_TESTS();
    }
}
