#include "MenubarApp/Platform/ProcessEnvironment.h"

#include <csignal>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

extern "C" char** environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace menubar {

namespace {

std::string accountHome() {
    constexpr std::size_t recordSize = 16384; // what both platforms suggest for a record and its texts
    std::vector<char> buffer(recordSize);
    passwd record{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &record, buffer.data(), buffer.size(), &found) != 0 || found == nullptr ||
        found->pw_dir == nullptr) {
        return "/";
    }
    return found->pw_dir;
}

} // namespace

Environment processEnvironment() {
    Environment result;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        if (const auto equals = text.find('='); equals != std::string_view::npos && equals > 0) {
            // The first of several entries is the one that getenv finds.
            result.emplace(text.substr(0, equals), text.substr(equals + 1));
        }
    }
    return result;
}

std::string homeDirectory(const Environment& environment) {
    const std::string_view home = variable(environment, "HOME");
    return home.empty() ? accountHome() : std::string(home);
}

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
