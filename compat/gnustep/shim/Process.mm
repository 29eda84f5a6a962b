#import "compat/gnustep/shim/Process.h"

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/Commands/log.h"
#include "compat/gnustep/desktop/XdgOpener.h"

#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>

#include <unistd.h>

namespace menubar {

namespace {

sigset_t terminationSignals() {
    sigset_t set;
    ::sigemptyset(&set);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaddset(&set, signal);
    }
    return set;
}

void waitForOne() {
    const sigset_t set = terminationSignals();
    int signal = 0;
    if (::sigwait(&set, &signal) != 0) {
        return;
    }
    for (const int each : {SIGTERM, SIGINT, SIGHUP}) {
        std::signal(each, SIG_DFL);
    }
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    @autoreleasepool {
        [NSApp
            performSelectorOnMainThread:@selector(terminate:)
                             withObject:nil
                          waitUntilDone:NO
                                  modes:@[ NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode ]];
    }
    while (true) {
        ::pause(); // until a second signal kills
    }
}

/// Held on to: the server ends with its last connection. Not destroyed at exit, when GNUstep's own tables have gone.
NSConnection* connection = nil;
pid_t process = 0;

bool isConnected() {
    @autoreleasepool {
        if (![connection isValid]) {
            [connection release];
            connection = [[NSConnection connectionWithRegisteredName:@"GNUstepGSPasteboardServer" host:@""] retain];
        }
    }
    return connection != nil;
}

} // namespace

void Process::holdTerminationSignals() {
    const sigset_t set = terminationSignals();
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

void Process::handleTerminationSignals() {
    std::thread(waitForOne).detach();
}

void Process::becomeMultiThreaded() {
    [NSThread currentThread]; // which is the main one, as the first that GNUstep gets to know
    std::thread([] {
        @autoreleasepool {
        }
    }).join();
}

void Process::keepChildren() {
    [NSTask class]; // installs its handler, now and never again
    std::signal(SIGCHLD, SIG_DFL);
}

void Process::startPasteboardServer() {
    using namespace std::chrono_literals;
    if (process > 0 && hasEnded(process)) {
        process = 0;
    }
    NSString* program = isConnected() || process > 0 ? nil : [NSTask launchPathForTool:@"gpbs"];
    if (program == nil) {
        return;
    }
    process = spawnDetached(toString(program), {"--auto", "--daemon"});
    if (process < 0) {
        log("cannot start " + toString(program) + ": " + std::strerror(-process));
        return;
    }
    const auto end = std::chrono::steady_clock::now() + 1s;
    while (!isConnected() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(10ms);
    }
}

} // namespace menubar
