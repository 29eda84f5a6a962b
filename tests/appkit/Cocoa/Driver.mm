#import "tests/appkit/Driver.h"

#include "tests/support/TemporaryDirectory.h"

#include <cstdlib>
#include <string_view>

#include <gtest/gtest.h>
#include <mach/mach.h>

namespace menubar::driver {

void giveFocusToEveryControl() {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    NSMutableDictionary* arguments =
        [NSMutableDictionary dictionaryWithDictionary:[defaults volatileDomainForName:NSArgumentDomain]];
    [arguments setObject:@3 forKey:@"AppleKeyboardUIMode"];  // what the switch for keyboard navigation writes
    [defaults removeVolatileDomainForName:NSArgumentDomain]; // one that is there is never replaced
    [defaults setVolatileDomain:arguments forName:NSArgumentDomain];
}

/// AppKit looks at it where it looks for a key equivalent. As HIToolbox/Events.h lists them for an ANSI keyboard.
unsigned short keyCode(unichar character) {
    constexpr std::u16string_view inTheirOrder =
        u"asdfhgzxcv\u00A7bqweryt123465=97-80]ou[ip\rlj'k;\\,/nm.\t `\x7F\3\x1B";
    static_assert(inTheirOrder.size() == 0x36);
    switch (character) {
    case NSBackTabCharacter: return keyCode('\t');
    case NSDownArrowFunctionKey: return 0x7D;
    case NSUpArrowFunctionKey: return 0x7E;
    default: break;
    }
    const auto code = inTheirOrder.find(static_cast<char16_t>(character));
    return code == std::u16string_view::npos ? 0 : static_cast<unsigned short>(code);
}

int liveObjects(Class) {
    return 0;
}

std::size_t residentBytes() {
    // Not the resident size, which counts what is read of the system's libraries too.
    task_vm_info info{};
    mach_msg_type_number_t count = TASK_VM_INFO_COUNT;
    const auto result = ::task_info(mach_task_self(), TASK_VM_INFO, reinterpret_cast<task_info_t>(&info), &count);
    return result == KERN_SUCCESS ? info.phys_footprint : 0;
}

void failOnLoggedLines() {}

std::vector<std::string> takeLoggedLines() {
    return {};
}

void replaceDefaults(const std::string& propertyList) {
    const testing_support::TemporaryDirectory directory;
    const std::string file = directory.write("defaults.plist", propertyList);
    const std::string command =
        std::string("/usr/bin/defaults import ") + std::getenv("OSTREL_MENUBAR_DEFAULTS_DOMAIN") + " '" + file + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

ObjCPointer<NSBitmapImageRep> draw(NSView* view) {
    @autoreleasepool {
        NSBitmapImageRep* rep = [view bitmapImageRepForCachingDisplayInRect:[view bounds]];
        [view cacheDisplayInRect:[view bounds] toBitmapImageRep:rep];
        return ObjCPointer<NSBitmapImageRep>::retain(rep);
    }
}

/// What is out of date is the layers' business here; nobody else can tell what is on the screen without asking a person
/// for the right to record it.
ObjCPointer<NSBitmapImageRep> look(NSView* view) {
    return draw(view);
}

} // namespace menubar::driver
