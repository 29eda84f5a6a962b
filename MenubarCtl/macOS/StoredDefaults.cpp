#include "MenubarApp/Platform/UserDefaults.h"
#include "MenubarCtl/ThisSystem.h"

#include <memory>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>

namespace menubar::ctl {

namespace {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

using Owned = std::unique_ptr<std::remove_pointer_t<CFTypeRef>, Release>;

Owned string(std::string_view text) {
    return Owned(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(text.data()),
                                         static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

} // namespace

std::optional<bool> storedBool(std::string_view key, const Environment& environment, const FileManager&) {
    const Owned name = string(key);
    const Owned domain = string(UserDefaults::domain(environment));
    if (!name || !domain) {
        return std::nullopt;
    }
    // Sees a `defaults write` of another process at the next call, as the app does at its next poll.
    CFPreferencesAppSynchronize(static_cast<CFStringRef>(domain.get()));
    const Owned value(
        CFPreferencesCopyAppValue(static_cast<CFStringRef>(name.get()), static_cast<CFStringRef>(domain.get())));
    if (!value || CFGetTypeID(value.get()) != CFBooleanGetTypeID()) {
        return std::nullopt;
    }
    return CFBooleanGetValue(static_cast<CFBooleanRef>(value.get())) != 0;
}

std::expected<void, std::string> storeBool(std::string_view key, bool value, const Environment& environment,
                                           const FileManager&) {
    const Owned name = string(key);
    const Owned domain = string(UserDefaults::domain(environment));
    if (!name || !domain) {
        return std::unexpected("the preference has no name");
    }
    const auto application = static_cast<CFStringRef>(domain.get());
    CFPreferencesSetAppValue(static_cast<CFStringRef>(name.get()), value ? kCFBooleanTrue : kCFBooleanFalse,
                             application);
    if (CFPreferencesAppSynchronize(application) == 0) {
        return std::unexpected("the system did not store the preference");
    }
    return {};
}

} // namespace menubar::ctl
