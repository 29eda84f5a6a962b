#include "MenubarCtl/ThisSystem.h"

#import <Foundation/Foundation.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <libproc.h>
#include <sys/types.h>
#include <unistd.h>

namespace menubar::ctl {

namespace {

/// Of the bundle that the executable lies in.
std::string versionOf(const std::string& executable, std::string_view place) {
    @autoreleasepool {
        const std::string folder = executable.substr(0, executable.size() - place.size());
        NSBundle* const bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:folder.c_str()]];
        const id version = [bundle objectForInfoDictionaryKey:@"CFBundleShortVersionString"];
        return [version isKindOfClass:[NSString class]] ? std::string([version UTF8String]) : std::string();
    }
}

} // namespace

bool canFindApps() {
    return true;
}

std::vector<RunningApp> runningApps() {
    constexpr std::string_view place = "/Contents/MacOS/ostrel-menubar";
    const int expected = proc_listpids(PROC_UID_ONLY, ::getuid(), nullptr, 0);
    std::vector<pid_t> processes(expected > 0 ? (static_cast<std::size_t>(expected) / sizeof(pid_t)) + 32 : 0);
    const int size =
        proc_listpids(PROC_UID_ONLY, ::getuid(), processes.data(), static_cast<int>(processes.size() * sizeof(pid_t)));
    processes.resize(size > 0 ? static_cast<std::size_t>(size) / sizeof(pid_t) : 0);
    std::vector<RunningApp> apps;
    std::array<char, PROC_PIDPATHINFO_MAXSIZE> buffer{};
    for (const pid_t process : processes) {
        const int length = proc_pidpath(process, buffer.data(), static_cast<std::uint32_t>(buffer.size()));
        const std::string path(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
        if (path.ends_with(place)) {
            apps.push_back({.path = path, .version = versionOf(path, place)});
        }
    }
    return apps;
}

} // namespace menubar::ctl
