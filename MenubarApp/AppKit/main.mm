#import "MenubarApp/AppKit/AppDelegate.h"

#include "MenubarApp/AppKit/Desktop.h"

namespace {

// Kept so that neither is released while the event loop runs.
NSApplication* application = nil;
AppDelegate* delegate = nil;

} // namespace

int main() {
    @autoreleasepool {
        menubar::Desktop::prepareProcess();
        application = [NSApplication sharedApplication];
        delegate = [[AppDelegate alloc] init];
        [application setDelegate:delegate];
        [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
        menubar::Desktop::prepareApplication();
        [application run];
    }
    return 0;
}
