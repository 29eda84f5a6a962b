#import "tests/appkit/Driver.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <utility>

#include <gtest/gtest.h>
#include <unistd.h>

namespace menubar::driver {

namespace {

std::mutex loggedMutex;
std::vector<std::string> logged;

void record(NSString* line) {
    const std::lock_guard lock(loggedMutex);
    logged.push_back(toString(line));
}

class LoggedLinesListener final : public ::testing::EmptyTestEventListener {
    void OnTestEnd(const ::testing::TestInfo&) override {
        for (const std::string& line : takeLoggedLines()) {
            ADD_FAILURE() << "logged: " << line;
        }
    }
};

} // namespace

void giveFocusToEveryControl() {}

unsigned short keyCode(unichar) {
    return 0;
}

int liveObjects(Class type) {
    GSDebugAllocationActive(YES);
    return GSDebugAllocationCount(type);
}

std::size_t residentBytes() {
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

void failOnLoggedLines() {
    _NSLog_printf_handler = record;
    ::testing::UnitTest::GetInstance()->listeners().Append(new LoggedLinesListener);
}

std::vector<std::string> takeLoggedLines() {
    const std::lock_guard lock(loggedMutex);
    return std::exchange(logged, {});
}

void replaceDefaults(const std::string& propertyList) {
    const auto folder = std::filesystem::path(std::getenv("HOME")) / "GNUstep" / "Defaults";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "part") << propertyList;
    std::filesystem::rename(folder / "part",
                            folder / (std::string(std::getenv("OSTREL_MENUBAR_DEFAULTS_DOMAIN")) + ".plist"));
}

ObjCPointer<NSBitmapImageRep> draw(NSView* view) {
    [view display];
    return look(view);
}

ObjCPointer<NSBitmapImageRep> look(NSView* view) {
    @autoreleasepool {
        [[view window] displayIfNeeded];
        [view lockFocus];
        NSBitmapImageRep* rep = [[NSBitmapImageRep alloc] initWithFocusedViewRect:[view bounds]];
        [view unlockFocus];
        return ObjCPointer<NSBitmapImageRep>::adopt(rep);
    }
}

} // namespace menubar::driver
