#import "compat/gnustep/desktop/MenuPanel.h"
#import "compat/gnustep/desktop/MenuView.h"
#import "compat/gnustep/look/Hint.h"

#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/AppKit/Conversions.h"
#include "compat/gnustep/look/Drawing.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/MenuDriver.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using driver::click;
using driver::command;
using driver::hover;
using driver::key;
using driver::label;
using driver::separator;
using driver::wait;
using Lines = std::vector<std::string>;

constexpr unichar returnKey = '\r';
constexpr unichar escapeKey = 0x1B;
constexpr unichar down = NSDownArrowFunctionKey;
constexpr unichar up = NSUpArrowFunctionKey;

class StatusMenuOnScreen : public ::testing::Test {
protected:
    StatusMenuOnScreen() {
        m_item.setEvents(m_events);
        MenuItem handoff = command("plan.md", MenuAction::openHandoff);
        handoff.path = "/home/ann/plan #1.md";
        MenuItem quit = command("Quit", MenuAction::quit);
        quit.keyEquivalent = "q";
        m_item.setMenu({label("Daemon running"), separator(), command("acme", MenuAction::focusSession, 1),
                        command("beta", MenuAction::focusSession, 2), handoff, separator(), quit});
    }

    /// What happened while the menu was open and the steps were taken.
    Lines logOf(std::vector<driver::Step> steps) {
        m_hadToClose = driver::openMenu(m_item, std::move(steps));
        return std::exchange(m_events->log, {});
    }

    AppKitStatusItem m_item;
    std::shared_ptr<driver::RecordingEvents> m_events = std::make_shared<driver::RecordingEvents>();
    bool m_hadToClose = false;
};

TEST_F(StatusMenuOnScreen, clickingAnItemPerformsItsActionOnceAfterTheMenuHasClosed) {
    EXPECT_EQ(logOf({click("beta")}), (Lines{"willOpen", "didClose", "focusSession tag=2"}));
    EXPECT_EQ(logOf({click("plan.md")}), (Lines{"willOpen", "didClose", "openHandoff path=/home/ann/plan #1.md"}));
    EXPECT_FALSE(m_hadToClose);
}

TEST_F(StatusMenuOnScreen, clickingADisabledItemDoesNothingAndTheMenuStays) {
    bool stayed = false;
    EXPECT_EQ(logOf({click("Daemon running"), wait(), [&] { stayed = driver::isMenuOpen(); }, key(escapeKey)}),
              (Lines{"willOpen", "didClose"}));
    EXPECT_TRUE(stayed);
    EXPECT_FALSE(m_hadToClose);
}

TEST_F(StatusMenuOnScreen, aClickElsewhereClosesWithoutAnAction) {
    EXPECT_EQ(logOf({driver::clickFarAway()}), (Lines{"willOpen", "didClose"}));
    EXPECT_FALSE(m_hadToClose);
}

TEST_F(StatusMenuOnScreen, stateIsOpenBetweenTheTwoEvents) {
    bool openAtWillOpen = true;
    m_events->onWillOpen = [&] { openAtWillOpen = driver::isMenuOpen(); };
    bool open = false;
    EXPECT_EQ(logOf({[&] { open = driver::isMenuOpen(); }, key(escapeKey)}).size(), 2U);
    EXPECT_FALSE(openAtWillOpen) << "nothing is drawn before the event";
    EXPECT_TRUE(open);
    EXPECT_FALSE(driver::isMenuOpen());
}

TEST_F(StatusMenuOnScreen, opensWithWhatTheEventSetItTo) {
    m_events->onWillOpen = [this] { m_item.setMenu({label("fresh"), command("Refresh", MenuAction::refreshClicked)}); };
    Lines titles;
    EXPECT_EQ(logOf({[&] { titles = driver::openTitles(); }, click("Refresh")}),
              (Lines{"willOpen", "didClose", "refreshClicked"}));
    EXPECT_EQ(titles, (Lines{"fresh", "Refresh"}));
}

TEST_F(StatusMenuOnScreen, opensWithWhatItIsSetToWhenAskedForAnUpdate) {
    m_events->onNeedsUpdate = [this] { m_item.setMenu({label("fresh")}); };
    bool setBeforeItOpens = false;
    m_events->onWillOpen = [&] { setBeforeItOpens = [m_item.nativeMenu() numberOfItems] == 1; };
    EXPECT_EQ(logOf({key(escapeKey)}), (Lines{"willOpen", "didClose"}));
    EXPECT_TRUE(setBeforeItOpens);
}

TEST_F(StatusMenuOnScreen, aMenuSetWhileItIsOpenKeepsTheHighlightedRow) {
    std::string before;
    std::string after;
    EXPECT_EQ(logOf({hover("acme"),
                     [&] {
                         before = driver::highlightedTitle();
                         m_item.setMenu({label("Daemon running (last poll 3s ago)"), separator(),
                                         command("acme · 42%", MenuAction::focusSession, 1)});
                     },
                     wait(), wait(), [&] { after = driver::highlightedTitle(); }, key(escapeKey)})
                  .size(),
              2U);
    EXPECT_EQ(before, "acme");
    EXPECT_EQ(after, "acme · 42%");
}

TEST_F(StatusMenuOnScreen, theHighlightFollowsItsItemWhenOthersComeAboveIt) {
    std::string after;
    EXPECT_EQ(logOf({key(up),
                     [&] {
                         m_item.setMenu({label("Daemon running"), separator(), label("No sessions"), separator(),
                                         command("Quit", MenuAction::quit)});
                     },
                     wait(), wait(), [&] { after = driver::highlightedTitle(); }, key(returnKey)}),
              (Lines{"willOpen", "didClose", "quit"}));
    EXPECT_EQ(after, "Quit");
}

TEST_F(StatusMenuOnScreen, aHighlightedItemThatGoesTakesTheHighlightAlong) {
    std::string after = "?";
    EXPECT_EQ(logOf({hover("beta"),
                     [&] {
                         m_item.setMenu({label("Daemon running"), separator(), label("No sessions"),
                                         command("Start daemon", MenuAction::startDaemon), separator(),
                                         command("Quit", MenuAction::quit)});
                     },
                     wait(), wait(), [&] { after = driver::highlightedTitle(); }, key(escapeKey)})
                  .size(),
              2U);
    EXPECT_EQ(after, "");
}

TEST_F(StatusMenuOnScreen, theMouseHighlightsOnlyWhatCanBeChosen) {
    Lines seen;
    const auto look = [&] { seen.push_back(driver::highlightedTitle()); };
    EXPECT_EQ(logOf({hover("acme"), look, hover("Daemon running"), look, hover("Quit"), look, key(escapeKey)}).size(),
              2U);
    EXPECT_EQ(seen, (Lines{"acme", "", "Quit"}));
}

TEST_F(StatusMenuOnScreen, arrowKeysSkipWhatCannotBeChosenAndStopAtTheEnds) {
    Lines seen;
    const auto look = [&] { seen.push_back(driver::highlightedTitle()); };
    EXPECT_EQ(logOf({key(down), look, key(up), look, key(down), key(down), look, key(down), look, key(down), look,
                     key(escapeKey)})
                  .size(),
              2U);
    EXPECT_EQ(seen, (Lines{"acme", "acme", "plan.md", "Quit", "Quit"}));
}

TEST_F(StatusMenuOnScreen, upFromNowhereStartsAtTheBottomAndReturnChooses) {
    EXPECT_EQ(logOf({key(up), key(up), key(returnKey)}),
              (Lines{"willOpen", "didClose", "openHandoff path=/home/ann/plan #1.md"}));
    EXPECT_EQ(logOf({key(down), key(' ')}), (Lines{"willOpen", "didClose", "focusSession tag=1"}));
}

TEST_F(StatusMenuOnScreen, returnWithoutAHighlightKeepsTheMenuOpen) {
    EXPECT_EQ(logOf({key(returnKey)}), (Lines{"willOpen", "didClose"}));
    EXPECT_TRUE(m_hadToClose);
}

TEST_F(StatusMenuOnScreen, aKeyEquivalentChoosesItsItem) {
    EXPECT_EQ(logOf({key('q', NSEventModifierFlagCommand)}), (Lines{"willOpen", "didClose", "quit"}));
    EXPECT_EQ(logOf({key('q')}), (Lines{"willOpen", "didClose"})) << "not without Command";
    EXPECT_EQ(logOf({key('x', NSEventModifierFlagCommand)}), (Lines{"willOpen", "didClose"})) << "no item has it";
}

TEST_F(StatusMenuOnScreen, aMenuSetWhileItIsOpenShowsAtOnceAndIsWhatIsChosenFrom) {
    Lines titles;
    CGFloat widthBefore = 0;
    CGFloat widthAfter = 0;
    const auto width = [] { return NSWidth([[[MenuPanel current] window] frame]); };
    EXPECT_EQ(logOf({hover("acme"),
                     [&] {
                         widthBefore = width();
                         m_item.setMenu({command("new", MenuAction::focusSession, 9), label(std::string(60, 'w'))});
                     },
                     wait(), wait(),
                     [&] {
                         widthAfter = width();
                         titles = driver::openTitles();
                     },
                     click("new")}),
              (Lines{"willOpen", "didClose", "focusSession tag=9"}));
    EXPECT_EQ(titles, (Lines{"new", std::string(60, 'w')}));
    EXPECT_GT(widthAfter, widthBefore);
}

TEST_F(StatusMenuOnScreen, cancelTrackingClosesIt) {
    EXPECT_EQ(logOf({[this] { [m_item.nativeMenu() cancelTracking]; }}), (Lines{"willOpen", "didClose"}));
    EXPECT_FALSE(m_hadToClose);
}

TEST_F(StatusMenuOnScreen, nothingHappensOnceTheReceiverIsGone) {
    m_events.reset();
    EXPECT_FALSE(driver::openMenu(m_item, {click("acme")}));
}

TEST_F(StatusMenuOnScreen, choosesWithoutADisplayToo) {
    [m_item.nativeMenu() performActionForItemAtIndex:3];
    [m_item.nativeMenu() performActionForItemAtIndex:0];
    EXPECT_EQ(m_events->log, Lines{"focusSession tag=2"}) << "a disabled item does nothing";
}

TEST_F(StatusMenuOnScreen, theTooltipShowsWhereTheMouseRestsAlsoOnADisabledItem) {
    MenuItem event = label("event");
    event.tooltip = "the whole text";
    m_item.setMenu({event, command("acme", MenuAction::focusSession, 1)});
    std::vector<driver::Step> steps = {hover("event")};
    steps.insert(steps.end(), 60, wait()); // the delay
    std::string shown;
    steps.push_back([&] { shown = toString([[Hint shared] text]); });
    steps.push_back(hover("acme"));
    std::string later = "?";
    steps.push_back([&] { later = toString([[Hint shared] text]); });
    steps.push_back(key(escapeKey));
    EXPECT_EQ(logOf(steps).size(), 2U);
    EXPECT_EQ(shown, "the whole text");
    EXPECT_EQ(later, "");
}

class TallMenuOnScreen : public StatusMenuOnScreen {
protected:
    static constexpr int sessions = 300;

    TallMenuOnScreen() {
        Menu menu;
        for (int i = 1; i <= sessions; ++i) {
            menu.push_back(command("session " + std::to_string(i), MenuAction::focusSession, i));
        }
        m_item.setMenu(menu);
    }

    static NSRect frame() { return [[[MenuPanel current] window] frame]; }

    static bool isVisible(NSInteger index) {
        MenuView* view = [[MenuPanel current] view];
        return NSContainsRect([view bounds], [view rectOfItem:index]);
    }
};

TEST_F(TallMenuOnScreen, staysOnTheScreen) {
    NSRect open = NSZeroRect;
    EXPECT_EQ(logOf({[&] { open = frame(); }, key(escapeKey)}).size(), 2U);
    EXPECT_TRUE(NSContainsRect([[NSScreen mainScreen] frame], open));
}

TEST_F(TallMenuOnScreen, theWheelScrollsToTheEndAndBack) {
    bool lastAtFirst = true;
    bool lastAfterScrolling = false;
    bool firstAfterScrollingBack = false;
    EXPECT_EQ(logOf({[&] { lastAtFirst = isVisible(sessions - 1); }, driver::wheel(-1000),
                     [&] { lastAfterScrolling = isVisible(sessions - 1); }, driver::wheel(1000),
                     [&] { firstAfterScrollingBack = isVisible(0); }, key(escapeKey)})
                  .size(),
              2U);
    EXPECT_FALSE(lastAtFirst);
    EXPECT_TRUE(lastAfterScrolling);
    EXPECT_TRUE(firstAfterScrollingBack);
}

TEST_F(TallMenuOnScreen, theKeyboardScrollsToWhatItHighlights) {
    bool visible = false;
    EXPECT_EQ(logOf({key(up), [&] { visible = isVisible(sessions - 1); }, key(returnKey)}),
              (Lines{"willOpen", "didClose", "focusSession tag=300"}));
    EXPECT_TRUE(visible);
}

TEST_F(TallMenuOnScreen, aShorterMenuSetWhileScrolledShowsFromItsTop) {
    bool visible = false;
    EXPECT_EQ(logOf({driver::wheel(-1000), [this] { m_item.setMenu({label("a"), label("b")}); }, wait(), wait(),
                     [&] { visible = isVisible(0) && isVisible(1); }, key(escapeKey)})
                  .size(),
              2U);
    EXPECT_TRUE(visible);
}

TEST_F(StatusMenuOnScreen, aTitleWiderThanTheScreenIsCutWithAnEllipsis) {
    const std::string wide(200, 'W');
    m_item.setMenu({command(wide, MenuAction::focusSession, 1)});
    NSRect open = NSZeroRect;
    EXPECT_EQ(logOf({[&] { open = [[[MenuPanel current] window] frame]; }, key(escapeKey)}).size(), 2U);
    EXPECT_TRUE(NSContainsRect([[NSScreen mainScreen] frame], open));
    NSFont* font = [NSFont menuFontOfSize:13.0];
    const auto fits = [&](NSString* text) { return Drawing::lineWidth(text, font) <= NSWidth(open) - 60; };
    const std::string fitted = toString(Drawing::shortened(toNSString(wide), fits));
    EXPECT_TRUE(fitted.ends_with("W…")) << fitted;
    EXPECT_LT(fitted.size(), wide.size());
    EXPECT_GT(fitted.size(), 40U);
    EXPECT_EQ(toString(Drawing::shortened(@"short", fits)), "short");
}

} // namespace
} // namespace menubar
