#import "compat/gnustep/shim/TerminationSignals.h"

#import <AppKit/AppKit.h>

#include <csignal>
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

} // namespace

void TerminationSignals::hold() {
    const sigset_t set = terminationSignals();
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

void TerminationSignals::handle() {
    std::thread(waitForOne).detach();
}

} // namespace menubar
