#include "MenubarApp/Platform/VisibilityProbe.h"

#include "MenubarCore/Menu/HiddenItemTracker.h"

#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

constexpr std::int64_t ourProcess = 500;
constexpr std::int64_t otherProcess = 400;
constexpr std::int64_t statusLevel = 25;

ListedWindow item(bool onscreen) {
    return {.number = 7, .owner = ourProcess, .level = statusLevel, .onscreen = onscreen, .x = 1412.0, .width = 61.0};
}

ListedWindow other(std::int64_t level, bool onscreen) {
    return {.number = 3, .owner = otherProcess, .level = level, .onscreen = onscreen, .x = 1300.0, .width = 30.0};
}

ItemVisibility visibilityIn(const std::vector<ListedWindow>& windows) {
    const VisibilityProbe probe = probeWindow(windows, 7, ourProcess);
    return itemVisibility(probe.onscreen, probe.width);
}

} // namespace

TEST(VisibilityProbe, isReadFromTheEntryOfOurWindow) {
    const std::vector windows{other(statusLevel, true), item(true)};
    EXPECT_EQ(probeWindow(windows, 7, ourProcess),
              (VisibilityProbe{.occlusionVisible = std::nullopt, .onscreen = true, .x = 1412.0, .width = 61.0}));
    EXPECT_EQ(visibilityIn(windows), ItemVisibility::visible);
}

TEST(VisibilityProbe, anItemIsHiddenWhenOthersAreShown) {
    EXPECT_EQ(visibilityIn({item(false), other(statusLevel, true)}), ItemVisibility::hidden);
}

TEST(VisibilityProbe, whereNoItemIsShownNothingIsSaidOfOurs) {
    EXPECT_EQ(visibilityIn({item(false), other(statusLevel, false)}), ItemVisibility::unknown);
    EXPECT_EQ(visibilityIn({item(false), other(0, true)}), ItemVisibility::unknown) << "not a status item";
    EXPECT_EQ(visibilityIn({item(false)}), ItemVisibility::unknown);
    EXPECT_EQ(visibilityIn({item(true), other(statusLevel, false)}), ItemVisibility::visible);
}

TEST(VisibilityProbe, aWindowThatTheListGivesToAnotherProcessSaysNothing) {
    ListedWindow foreign = item(false);
    foreign.owner = otherProcess;
    EXPECT_EQ(probeWindow(std::vector{foreign, other(statusLevel, true)}, 7, ourProcess), VisibilityProbe{});
    EXPECT_EQ(probeWindow({}, 7, ourProcess), VisibilityProbe{});
}

TEST(VisibilityProbe, aWholeReadingIsDescribedWithWholePoints) {
    EXPECT_EQ(describe({.occlusionVisible = false, .onscreen = false, .x = 1412.0, .width = 0.0}),
              "window x=1412 width=0 onscreen=no occlusion=occluded");
    EXPECT_EQ(describe({.occlusionVisible = true, .onscreen = true, .x = -3.6, .width = 61.4}),
              "window x=-4 width=61 onscreen=yes occlusion=visible");
}

TEST(VisibilityProbe, whatTheWindowServerDidNotTellIsAQuestionMark) {
    EXPECT_EQ(describe(VisibilityProbe{}), "window x=? width=? onscreen=? occlusion=?");
}
