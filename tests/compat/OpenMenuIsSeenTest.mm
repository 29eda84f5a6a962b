// What is drawn of a menu while it is open. A menu of macOS draws itself, and cannot be opened from inside the program.
#import "tests/appkit/Eyes.h"
#import "tests/appkit/MenuDriver.h"

#include "MenubarApp/AppKit/AppKitStatusItem.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using driver::Picture;

/// The open menu's.
NSWindow* menuWindow() {
    for (NSWindow* window in [NSApp windows]) {
        if ([window level] == NSPopUpMenuWindowLevel && [window isVisible]) {
            return window;
        }
    }
    return nil;
}

TEST(TheOpenMenuIsSeen, asItChanges) {
    AppKitStatusItem item;
    const auto events = std::make_shared<driver::RecordingEvents>();
    item.setEvents(events);
    const Menu first = {driver::label("Daemon running"), driver::command("acme", MenuAction::focusSession, 1)};
    const Menu other = {driver::label("Daemon stopped"), driver::command("beta", MenuAction::focusSession, 1)};
    item.setMenu(first);
    std::vector<Picture> seen;
    // A change is drawn in a turn or two.
    const auto wait = driver::wait();
    const driver::Step lookNow = [&] { seen.push_back(driver::look(menuWindow())); };
    EXPECT_FALSE(driver::openMenu(item, {wait, lookNow, [&] { item.setMenu(other); }, wait, wait, lookNow,
                                         [&] { item.setMenu(first); }, wait, wait, lookNow, driver::hover("acme"), wait,
                                         lookNow, driver::key(0x1B)}));
    ASSERT_EQ(seen.size(), 4U);
    EXPECT_GT(seen[0].colors(), 2U);
    EXPECT_FALSE(seen[1] == seen[0]) << "another menu looks the same";
    EXPECT_TRUE(seen[2] == seen[0]);
    EXPECT_FALSE(seen[3] == seen[0]) << "the row under the mouse";
}

} // namespace
} // namespace menubar
