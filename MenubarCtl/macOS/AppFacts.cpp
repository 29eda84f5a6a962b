#include "MenubarCtl/AppFacts.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>
#include <libproc.h>
#include <sys/types.h>
#include <unistd.h>

namespace menubar::ctl {

namespace {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

using Owned = std::unique_ptr<std::remove_pointer_t<CFTypeRef>, Release>;

/// Of the bundle that the executable lies in.
std::string versionOf(const std::string& executable, std::string_view place) {
    const std::string bundle = executable.substr(0, executable.size() - place.size());
    const Owned url(CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8*>(bundle.data()),
                                                            static_cast<CFIndex>(bundle.size()), true));
    const Owned info(url ? CFBundleCopyInfoDictionaryForURL(static_cast<CFURLRef>(url.get())) : nullptr);
    const void* value =
        info ? CFDictionaryGetValue(static_cast<CFDictionaryRef>(info.get()), CFSTR("CFBundleShortVersionString"))
             : nullptr;
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) {
        return {};
    }
    std::array<char, 64> text{};
    const bool fits = CFStringGetCString(static_cast<CFStringRef>(value), text.data(),
                                         static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8) != 0;
    return fits ? std::string(text.data()) : std::string();
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
