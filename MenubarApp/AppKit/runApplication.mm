#include "MenubarApp/AppKit/runApplication.h"

#import "MenubarApp/AppKit/AppDelegate.h"

#include "MenubarApp/AppKit/Desktop.h"
#include "MenubarApp/Platform/LoginRequest.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/StandardDescriptors.h"

#include <cstdio>

namespace menubar {

namespace {

// Kept so that neither is released while the event loop runs.
NSApplication* application = nil;
AppDelegate* delegate = nil;

/// Gives the process's exit status.
int answer(LoginRequest::Kind request) {
    @autoreleasepool {
        const LoginRequest::Reply reply = LoginRequest::answer(request, Desktop::makeLoginItem().get());
        std::fputs(reply.output.c_str(), stdout);
        std::fputs(reply.errors.c_str(), stderr);
        return reply.exitStatus;
    }
}

} // namespace

int runApplication(const SystemTools& tools, std::chrono::milliseconds pollInterval) {
    secureStandardDescriptors();
    if (const auto request = LoginRequest::from(processEnvironment())) {
        return answer(*request);
    }
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
