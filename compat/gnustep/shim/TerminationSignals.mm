#import "compat/gnustep/shim/TerminationSignals.h"

#import <AppKit/AppKit.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>

#include <fcntl.h>
#include <unistd.h>

namespace {

int writeEnd = -1;

void note(int) {
    const int error = errno;
    const char byte = 0;
    // A full pipe has been told already.
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, 1);
    errno = error;
}

} // namespace

@interface SignalWatcher : NSObject <RunLoopEvents>
@end

@implementation SignalWatcher

- (void)receivedEvent:(void*)data type:(RunLoopEventType)type extra:(void*)extra forMode:(NSString*)mode {
    char byte = 0;
    if (::read(static_cast<int>(reinterpret_cast<std::intptr_t>(data)), &byte, 1) == 1) {
        [NSApp terminate:nil];
    }
}

@end

namespace menubar {

namespace {

constexpr std::array signals{SIGTERM, SIGINT, SIGHUP};

void changeMask(int how) {
    sigset_t set;
    ::sigemptyset(&set);
    for (const int signal : signals) {
        ::sigaddset(&set, signal);
    }
    ::pthread_sigmask(how, &set, nullptr);
}

} // namespace

void TerminationSignals::hold() {
    changeMask(SIG_BLOCK);
}

void TerminationSignals::handle() {
    int ends[2] = {-1, -1};
    if (writeEnd < 0 && ::pipe2(ends, O_CLOEXEC | O_NONBLOCK) == 0) {
        writeEnd = ends[1];
        static SignalWatcher* const watcher = [[SignalWatcher alloc] init];
        for (NSString* mode in @[ NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode ]) {
            [[NSRunLoop mainRunLoop] addEvent:reinterpret_cast<void*>(static_cast<std::intptr_t>(ends[0]))
                                         type:ET_RDESC
                                      watcher:watcher
                                      forMode:mode];
        }
    }
    struct sigaction action = {};
    // Without the pipe there is no clean way out, but there is a way out.
    action.sa_handler = writeEnd >= 0 ? note : SIG_DFL;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    for (const int signal : signals) {
        ::sigaction(signal, &action, nullptr);
    }
    changeMask(SIG_UNBLOCK);
}

} // namespace menubar
