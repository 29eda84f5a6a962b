#include "MenubarApp/AppKit/runApplication.h"

#import "MenubarApp/AppKit/AppDelegate.h"

#include "MenubarApp/AppKit/Desktop.h"
#include "MenubarApp/Platform/StandardDescriptors.h"

namespace menubar {

namespace {

// Kept so that neither is released while the event loop runs.
NSApplication* application = nil;
AppDelegate* delegate = nil;

} // namespace

int runApplication(const SystemTools& tools, std::chrono::milliseconds pollInterval) {
    secureStandardDescriptors();
    @autoreleasepool {
        Desktop::prepareProcess();
        application = [NSApplication sharedApplication];
        delegate = [[AppDelegate alloc] initWithTools:tools pollInterval:pollInterval];
        [application setDelegate:delegate];
        [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
        Desktop::prepareApplication();
        [application run];
    }
    return 0;
}

} // namespace menubar
