#import "tests/appkit/Driver.h"

#include "tests/support/TemporaryDirectory.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <mach/mach.h>

namespace menubar::driver {

int liveObjects(Class) {
    return 0;
}

std::size_t residentBytes() {
    mach_task_basic_info info{};
    mach_msg_type_number_t count = MACH_TASK_BASIC_INFO_COUNT;
    const auto result =
        ::task_info(mach_task_self(), MACH_TASK_BASIC_INFO, reinterpret_cast<task_info_t>(&info), &count);
    return result == KERN_SUCCESS ? info.resident_size : 0;
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
