#include "MenubarApp/Platform/StandardDescriptors.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace menubar {

void secureStandardDescriptors() {
    std::signal(SIGPIPE, SIG_IGN);
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) >= 0) {
            continue;
        }
        // The lowest free number is this one. It is inherited like any standard descriptor.
        if (::open("/dev/null", O_RDONLY) < 0) { // NOLINT(android-cloexec-open)
            return;
        }
    }
}

} // namespace menubar
