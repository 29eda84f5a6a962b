#include "compat/gnustep/shim/PasteboardServer.h"

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/Commands/log.h"
#include "compat/gnustep/desktop/spawnDetached.h"

#include <chrono>
#include <cstring>
#include <thread>

namespace menubar {

namespace {

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

void PasteboardServer::start() {
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
