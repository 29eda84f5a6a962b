#include "MenubarCore/Menu/HiddenItemTracker.h"

#include "Records.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;
using namespace std::chrono_literals;
using enum ItemVisibility;
using enum HiddenItemTracker::Transition;

namespace {

/// What each reading, three seconds apart, leads to.
std::vector<HiddenItemTracker::Transition> transitions(HiddenItemTracker& tracker,
                                                       const std::vector<ItemVisibility>& readings) {
    std::vector<HiddenItemTracker::Transition> result;
    Date time = now;
    for (const ItemVisibility reading : readings) {
        result.push_back(tracker.observe(reading, time));
        time += 3s;
    }
    return result;
}

} // namespace

TEST(ItemVisibility, theOnScreenFlagDecidesWhenThereIsAWidth) {
    EXPECT_EQ(itemVisibility(true, 22), visible);
    EXPECT_EQ(itemVisibility(false, 22), hidden);
    EXPECT_EQ(itemVisibility(false, 0.001), hidden);
}

TEST(ItemVisibility, aMissingReadingOrAWidthOfNothingTellsNothing) {
    EXPECT_EQ(itemVisibility(std::nullopt, 22), unknown);
    EXPECT_EQ(itemVisibility(true, std::nullopt), unknown);
    EXPECT_EQ(itemVisibility(false, std::nullopt), unknown);
    EXPECT_EQ(itemVisibility(std::nullopt, std::nullopt), unknown);
    EXPECT_EQ(itemVisibility(true, 0), unknown);
    EXPECT_EQ(itemVisibility(false, 0), unknown);
    EXPECT_EQ(itemVisibility(false, -1), unknown);
    EXPECT_EQ(itemVisibility(false, std::nan("")), unknown);
}

TEST(HiddenItemTracker, aNewOneIsNotHidden) {
    EXPECT_FALSE(HiddenItemTracker().isHidden());
    EXPECT_EQ(HiddenItemTracker().hiddenSince, std::nullopt);
}

TEST(HiddenItemTracker, aHiddenSpellIsAnnouncedOnceAndKeepsItsFirstTime) {
    HiddenItemTracker tracker;
    EXPECT_EQ(transitions(tracker, {hidden, hidden, unknown, hidden}),
              (std::vector{becameHidden, unchanged, unchanged, unchanged}));
    EXPECT_EQ(tracker.hiddenSince, now);
    EXPECT_TRUE(tracker.isHidden());
    EXPECT_EQ(tracker.observe(visible, now + 1min), becameVisible);
    EXPECT_FALSE(tracker.isHidden());
}

TEST(HiddenItemTracker, unknownReadingsNeitherStartNorEndASpell) {
    HiddenItemTracker tracker;
    EXPECT_EQ(transitions(tracker, {visible, unknown, visible}), (std::vector{unchanged, unchanged, unchanged}));
    EXPECT_FALSE(tracker.isHidden());
    EXPECT_EQ(transitions(tracker, {hidden, unknown}), (std::vector{becameHidden, unchanged}));
    EXPECT_TRUE(tracker.isHidden());
}

TEST(HiddenItemTracker, aSecondSpellIsAnnouncedAgainWithItsOwnTime) {
    HiddenItemTracker tracker;
    EXPECT_EQ(transitions(tracker, {hidden, visible, hidden}),
              (std::vector{becameHidden, becameVisible, becameHidden}));
    EXPECT_EQ(tracker.hiddenSince, now + 6s);
}

TEST(HiddenItemTracker, trackersAreEqualWhenTheirSpellsBeganTogether) {
    HiddenItemTracker one;
    HiddenItemTracker other;
    EXPECT_EQ(one, other);
    one.observe(hidden, now);
    EXPECT_NE(one, other);
    other.observe(hidden, now);
    EXPECT_EQ(one, other);
}

TEST(HiddenItemCopy, theTextsSayWhyAndWhatToDo) {
    EXPECT_EQ(HiddenItemCopy::reason, "menu bar full or behind the notch");
    EXPECT_EQ(HiddenItemCopy::notificationTitle, "ostrel menu bar icon is hidden");
    EXPECT_EQ(
        HiddenItemCopy::notificationBody,
        "The status item does not fit in the menu bar (items can only be reordered, not dragged off). Quit another "
        "menu bar app, use a menu bar manager, or switch to the narrower icon-only item: defaults write "
        "ostrel-menubar compact -bool true (or OSTREL_MENUBAR_COMPACT=1).");
}

TEST(HiddenItemCopy, theLogLineAdvisesByWhetherTheItemIsCompactAlready) {
    EXPECT_EQ(HiddenItemCopy::logLine(true), "status item is hidden (menu bar full or behind the notch); already icon "
                                             "only, free a slot in the menu bar");
    EXPECT_EQ(HiddenItemCopy::logLine(false),
              "status item is hidden (menu bar full or behind the notch); try icon-only "
              "mode (OSTREL_MENUBAR_COMPACT=1 or the Icon only menu item)");
}

TEST(HiddenItemCopy, theMenuLineGivesTheTimeInItsZone) {
    EXPECT_EQ(HiddenItemCopy::menuLine(now, TimeZone()), "Icon hidden since 14:03 (menu bar full or behind the notch)");
    EXPECT_EQ(HiddenItemCopy::menuLine(now, kathmandu), "Icon hidden since 19:48 (menu bar full or behind the notch)");
}
