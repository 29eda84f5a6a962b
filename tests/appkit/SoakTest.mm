#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/AppKitMainLoop.h"
#include "MenubarApp/AppKit/AppKitStatusItem.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/MenuDriver.h"

#include <string>

#include <gtest/gtest.h>

namespace menubar {
namespace {

/// What one poll changes: the title, the tooltip, and every line of the menu.
void poll(AppKitStatusItem& item, int number) {
    using Tone = StatusItemPresentation::Tone;
    constexpr Tone tones[] = {Tone::ok, Tone::warn, Tone::critical, Tone::muted};
    item.apply({.symbolName = number % 2 == 0 ? "eye" : "eye.slash",
                .title = std::to_string(number % 100) + "%",
                .tone = tones[number % 4],
                .tooltip = "poll " + std::to_string(number)});
    Menu menu = {driver::label("Daemon running " + std::to_string(number)), driver::separator()};
    for (int i = 1; i <= 6 + number % 3; ++i) {
        MenuItem session = driver::command("session " + std::to_string(number + i), MenuAction::focusSession, i);
        session.tooltip = "tooltip";
        session.path = "/home/ann/plan.md";
        menu.push_back(session);
    }
    item.setMenu(menu);
}

int liveObjects() {
    int count = 0;
    for (Class type : {[NSMenuItem class], [NSURL class], [NSAttributedString class], [NSMutableArray class]}) {
        count += driver::liveObjects(type);
    }
    return count;
}

TEST(Soak, tenThousandPollsLeaveNothingBehind) {
    (void)liveObjects(); // from here on they are counted
    AppKitStatusItem item;
    const auto run = [&item](int from, int to) {
        for (int number = from; number < to; ++number) {
            @autoreleasepool {
                poll(item, number);
                if (number % 100 == 0) {
                    driver::pump(driver::milliseconds(1));
                }
            }
        }
    };
    run(0, 1000); // caches fill
    const int objects = liveObjects();
    const std::size_t bytes = driver::residentBytes();
    run(1000, 11'000); // ends on a menu of the same length as the thousandth
    EXPECT_LE(liveObjects(), objects + 10);
    if (driver::isMemoryMeasurable) {
        EXPECT_LE(driver::residentBytes(), bytes + (std::size_t{2} << 20));
    }
}

TEST(Soak, openingTheMenuAHundredTimesLeavesNoWindowBehind) {
    AppKitStatusItem item;
    poll(item, 1);
    const auto openAndClose = [&item] { EXPECT_FALSE(driver::openMenu(item, {driver::key(0x1B)})); };
    openAndClose();
    const NSUInteger windows = [[NSApp windows] count];
    for (int i = 0; i < 100; ++i) {
        @autoreleasepool {
            openAndClose();
        }
    }
    EXPECT_EQ([[NSApp windows] count], windows);
}

} // namespace
} // namespace menubar
