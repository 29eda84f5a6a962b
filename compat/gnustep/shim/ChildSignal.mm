#include "compat/gnustep/shim/ChildSignal.h"

#import <Foundation/Foundation.h>

#include <csignal>

namespace menubar {

void ChildSignal::keepToOurselves() {
    [NSTask class]; // installs its handler, now and never again
    std::signal(SIGCHLD, SIG_DFL);
}

} // namespace menubar
