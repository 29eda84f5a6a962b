// Lists the windows of macOS's window server for scripts/accept, one a line:
// NUMBER OWNER LEVEL ONSCREEN X Y WIDTH HEIGHT OWNER_NAME
#include <array>
#include <cstdio>
#include <memory>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

namespace {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

template <typename Ref>
using Owned = std::unique_ptr<std::remove_pointer_t<Ref>, Release>;

CFDictionaryRef dictionaryAt(CFArrayRef list, CFIndex index) {
    return static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(list, index));
}

long number(CFDictionaryRef window, CFStringRef key) {
    long result = 0;
    if (const void* value = CFDictionaryGetValue(window, key)) {
        CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberLongType, &result);
    }
    return result;
}

bool isOnscreen(CFDictionaryRef window) {
    const void* value = CFDictionaryGetValue(window, kCGWindowIsOnscreen);
    return value != nullptr && CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
}

CGRect bounds(CFDictionaryRef window) {
    CGRect result{};
    if (const void* value = CFDictionaryGetValue(window, kCGWindowBounds)) {
        CGRectMakeWithDictionaryRepresentation(static_cast<CFDictionaryRef>(value), &result);
    }
    return result;
}

void print(CFDictionaryRef window) {
    std::array<char, 256> owner{"?"};
    if (const void* value = CFDictionaryGetValue(window, kCGWindowOwnerName)) {
        CFStringGetCString(static_cast<CFStringRef>(value), owner.data(), owner.size(), kCFStringEncodingUTF8);
    }
    const CGRect place = bounds(window);
    std::printf("%ld %ld %ld %s %.0f %.0f %.0f %.0f %s\n", number(window, kCGWindowNumber),
                number(window, kCGWindowOwnerPID), number(window, kCGWindowLayer), isOnscreen(window) ? "yes" : "no",
                place.origin.x, place.origin.y, place.size.width, place.size.height, owner.data());
}

} // namespace

int main() {
    const Owned<CFArrayRef> list(CGWindowListCopyWindowInfo(kCGWindowListOptionAll, kCGNullWindowID));
    if (!list) {
        std::fputs("windows: the window server does not answer\n", stderr);
        return 1;
    }
    for (CFIndex index = 0; index < CFArrayGetCount(list.get()); ++index) {
        print(dictionaryAt(list.get(), index));
    }
    return 0;
}
