#include "tests/support/StatusMenuHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using menubar::recording::StatusMenuHarness;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr const char* twoSessions =
    R"({"dirName":"api","contextPct":72,"level":"ok","workspaceId":"w1","surfaceId":"s1"},)"
    R"({"dirName":"web","contextPct":93,"level":"critical","workspaceId":"w2"})";

} // namespace

TEST(StatusMenuController, startReadsTheFileOnceAndPollsEveryThreeSeconds) {
    StatusMenuHarness shell;
    shell.writeRunningStatus(R"({"contextPct":72,"level":"ok"})");
    shell.start();
    EXPECT_EQ(shell.files.reads, 1);
    EXPECT_EQ(shell.item.shown.title, "72%");
    EXPECT_EQ(shell.item.shown.symbolName, "eye");
    EXPECT_THAT(shell.mainLoop.intervals, ElementsAre(std::chrono::milliseconds(3000)));
    EXPECT_THAT(shell.mainLoop.tolerances, ElementsAre(std::chrono::milliseconds(300)));
    shell.tick();
    EXPECT_EQ(shell.files.reads, 2);
}

TEST(StatusMenuController, aClosedMenuIsDrawnOnlyWhenSomebodyLooksAtIt) {
    StatusMenuHarness shell;
    shell.start();
    shell.tick();
    EXPECT_EQ(shell.item.menuDraws, 0);
    shell.controller->menuNeedsUpdate();
    shell.controller->menuNeedsUpdate();
    EXPECT_EQ(shell.item.menuDraws, 1);
    EXPECT_EQ(shell.settings.updates, 2) << "it shows the last poll";
    shell.tick();
    EXPECT_EQ(shell.item.menuDraws, 1);
    shell.controller->menuNeedsUpdate();
    EXPECT_EQ(shell.item.menuDraws, 2);
}

TEST(StatusMenuController, anOpenMenuIsDrawnAtEveryRefresh) {
    StatusMenuHarness shell;
    shell.start();
    shell.controller->menuNeedsUpdate();
    shell.writeRunningStatus();
    shell.controller->menuWillOpen();
    EXPECT_EQ(shell.item.menuDraws, 2);
    EXPECT_THAT(shell.item.menu[0].title, StartsWith("Daemon running"));
    shell.files.files.clear();
    shell.tick();
    EXPECT_EQ(shell.item.menuDraws, 3);
    EXPECT_EQ(shell.item.menu[0].title, "Daemon not running");
    shell.controller->menuDidClose();
    shell.tick();
    EXPECT_EQ(shell.item.menuDraws, 3);
}

TEST(StatusMenuController, aBrokenFileIsNamedInTheSecondLineAndTheNextPollRecovers) {
    StatusMenuHarness shell;
    shell.writeStatus(R"({"sessions":[{"contextTokens":"many"}]})");
    shell.start();
    EXPECT_EQ(shell.menu()[0].title, "Status file unreadable");
    EXPECT_EQ(shell.menu()[1].title, "type mismatch (Int) at sessions.Index 0.contextTokens");
    shell.writeRunningStatus();
    shell.tick();
    EXPECT_THAT(shell.menu()[0].title, StartsWith("Daemon running"));
}

TEST(StatusMenuController, anUnchangedPresentationIsNotDrawnAgain) {
    StatusMenuHarness shell;
    shell.start();
    shell.tick();
    shell.tick();
    EXPECT_EQ(shell.item.repaints, 1);
    shell.writeRunningStatus();
    shell.tick();
    EXPECT_EQ(shell.item.repaints, 2);
}

TEST(StatusMenuController, openingTheMenuRefreshesItWithoutAProbe) {
    StatusMenuHarness shell;
    shell.start();
    const int probes = shell.item.probes;
    shell.item.visibility.onscreen = false;
    shell.controller->menuWillOpen();
    EXPECT_EQ(shell.settings.updates, 2);
    shell.tick();
    EXPECT_EQ(shell.item.probes, probes);
    EXPECT_THAT(shell.commands.log, IsEmpty());
    shell.controller->menuDidClose();
    shell.tick();
    EXPECT_EQ(shell.item.probes, probes + 1);
    EXPECT_EQ(shell.commands.log.size(), 1U);
}

TEST(StatusMenuController, eachHiddenSpellIsAnnouncedOnce) {
    StatusMenuHarness shell;
    shell.start();
    shell.item.visibility = {.occlusionVisible = false, .onscreen = false, .x = 1412.0, .width = 22.0};
    shell.tick();
    shell.tick();
    EXPECT_THAT(shell.log, ElementsAre("status item is hidden (menu bar full or behind the notch); try icon-only mode "
                                       "(OSTREL_MENUBAR_COMPACT=1 or the Icon only menu item); window x=1412 width=22 "
                                       "onscreen=no occlusion=occluded"));
    ASSERT_EQ(shell.commands.log.size(), 1U);
    EXPECT_THAT(shell.commands.log[0], StartsWith("notify ostrel menu bar icon is hidden | The status item does not"));
    EXPECT_NE(shell.itemTitled("Icon hidden since 14:03 (menu bar full or behind the notch)"), nullptr);

    shell.item.visibility = {};
    shell.tick();
    EXPECT_EQ(shell.log.size(), 1U) << "an unknown reading ends no spell";
    shell.item.visibility = {.occlusionVisible = true, .onscreen = true, .x = 1200.0, .width = 22.0};
    shell.tick();
    EXPECT_EQ(shell.log.back(), "status item is visible again");
    EXPECT_EQ(shell.itemTitled("Icon hidden"), nullptr);

    shell.item.visibility.onscreen = false;
    shell.tick();
    EXPECT_EQ(shell.commands.log.size(), 2U);
}

TEST(StatusMenuController, aHiddenIconOnlyItemIsLoggedWithTheOtherAdvice) {
    StatusMenuHarness shell;
    shell.defaults.values["compact"] = true;
    shell.item.visibility.onscreen = false;
    shell.start();
    ASSERT_EQ(shell.log.size(), 1U);
    EXPECT_THAT(shell.log[0], StartsWith("status item is hidden (menu bar full or behind the notch); already icon "
                                         "only, free a slot in the menu bar; window x="));
}

TEST(StatusMenuController, theStoredDefaultTakesEffectAtTheNextPoll) {
    StatusMenuHarness shell;
    shell.writeRunningStatus(R"({"contextPct":72,"level":"ok"})");
    shell.start();
    EXPECT_EQ(shell.item.shown.title, "72%");
    shell.defaults.values["compact"] = true;
    shell.tick();
    EXPECT_EQ(shell.item.shown.title, "");
    EXPECT_TRUE(shell.itemTitled("Icon only")->checked);
}

TEST(StatusMenuController, theCompactToggleStoresTheOppositeAndRefreshes) {
    StatusMenuHarness shell;
    shell.start();
    ASSERT_TRUE(shell.choose("Icon only"));
    EXPECT_EQ(shell.defaults.values.at("compact"), true);
    EXPECT_EQ(shell.settings.updates, 2);
    ASSERT_TRUE(shell.choose("Icon only"));
    EXPECT_EQ(shell.defaults.values.at("compact"), false);
}

TEST(StatusMenuController, theEnvironmentLocksTheCompactToggle) {
    StatusMenuHarness shell;
    shell.environment["OSTREL_MENUBAR_COMPACT"] = "1";
    shell.start();
    const MenuItem* toggle = shell.itemTitled("Icon only (set by OSTREL_MENUBAR_COMPACT)");
    ASSERT_NE(toggle, nullptr);
    EXPECT_TRUE(toggle->checked);
    EXPECT_FALSE(toggle->enabled);
}

TEST(StatusMenuController, choosingASessionFocusesItsTerminalAndRefreshesAfterwards) {
    StatusMenuHarness shell;
    shell.writeRunningStatus(twoSessions);
    shell.start();
    ASSERT_TRUE(shell.choose("api"));
    ASSERT_TRUE(shell.choose("[critical] web"));
    EXPECT_THAT(shell.commands.log, ElementsAre("focus w1 s1", "focus w2 -"));
    EXPECT_EQ(shell.files.reads, 1);
    shell.commands.complete();
    EXPECT_EQ(shell.files.reads, 3);
}

TEST(StatusMenuController, aTagOfAnEarlierMenuDoesNothing) {
    StatusMenuHarness shell;
    shell.writeRunningStatus(twoSessions);
    shell.start();
    for (const int tag : {0, 3, -1, 1000000}) {
        shell.controller->perform(MenuAction::focusSession, tag, std::nullopt);
    }
    shell.writeRunningStatus();
    shell.tick();
    shell.controller->perform(MenuAction::focusSession, 1, std::nullopt);
    EXPECT_THAT(shell.commands.log, IsEmpty());
}

TEST(StatusMenuController, aHandoffOpensOrIsRevealedWithOption) {
    StatusMenuHarness shell;
    shell.files.files["/repo/HANDOFF.md"] = "";
    shell.writeRunningStatus(R"({"dirName":"api","level":"ok","handoff":{"path":"/repo/HANDOFF.md"}})");
    shell.start();
    ASSERT_TRUE(shell.choose("Open handoff · api"));
    shell.workspace.optionKey = true;
    ASSERT_TRUE(shell.choose("Open handoff · api"));
    shell.controller->perform(MenuAction::openHandoff, 0, std::nullopt);
    EXPECT_THAT(shell.workspace.log, ElementsAre("open /repo/HANDOFF.md", "reveal /repo/HANDOFF.md"));
}

TEST(StatusMenuController, aHandoffBehindAClosedFolderCountsAsMissing) {
    StatusMenuHarness shell;
    shell.files.files["/repo/HANDOFF.md"] = "";
    shell.files.hidden.insert("/repo/HANDOFF.md");
    shell.writeRunningStatus(R"({"dirName":"api","level":"ok","handoff":{"path":"/repo/HANDOFF.md"}})");
    shell.start();
    EXPECT_NE(shell.itemTitled("Open handoff · api (missing)"), nullptr);
    EXPECT_FALSE(shell.choose("Open handoff · api"));
    shell.files.hidden.clear();
    shell.tick();
    EXPECT_TRUE(shell.choose("Open handoff · api"));
}

TEST(StatusMenuController, logsAndStatusFileOpenWhereTheyAre) {
    StatusMenuHarness shell;
    shell.start();
    EXPECT_FALSE(shell.choose("Open logs"));
    EXPECT_FALSE(shell.choose("Open status file"));
    shell.files.files[StatusMenuHarness::logsDirectory] = "";
    shell.writeRunningStatus();
    shell.tick();
    EXPECT_TRUE(shell.choose("Open logs"));
    EXPECT_TRUE(shell.choose("Open status file"));
    EXPECT_THAT(shell.workspace.log, ElementsAre("open /home/ann/Library/Logs/ostrel", "open /home/ann/status.json"));
}

TEST(StatusMenuController, theDaemonIsControlledByItsStateAndTheMenuFollows) {
    StatusMenuHarness shell;
    shell.files.files[StatusMenuHarness::plistPath] = "";
    shell.start();
    ASSERT_TRUE(shell.choose("Start daemon"));
    shell.writeRunningStatus();
    shell.commands.complete();
    ASSERT_TRUE(shell.choose("Stop daemon"));
    shell.clock.time += std::chrono::minutes(10);
    shell.commands.complete();
    ASSERT_TRUE(shell.choose("Restart daemon"));
    EXPECT_THAT(shell.commands.log, ElementsAre("start", "stop", "start"));
}

TEST(StatusMenuController, theOtherItemsReachTheirPlaces) {
    StatusMenuHarness shell;
    shell.start();
    ASSERT_TRUE(shell.choose("Settings..."));
    ASSERT_TRUE(shell.choose("Refresh"));
    ASSERT_TRUE(shell.choose("Quit"));
    EXPECT_EQ(shell.settings.shows, 1);
    EXPECT_EQ(shell.settings.updates, 2);
    EXPECT_THAT(shell.workspace.log, ElementsAre("terminate"));
}

TEST(StatusMenuController, theSettingsHearOfEveryPoll) {
    StatusMenuHarness shell;
    shell.writeRunningStatus();
    shell.start();
    EXPECT_EQ(shell.settings.updates, 1);
    EXPECT_TRUE(shell.settings.lastStatus.has_value());
    EXPECT_TRUE(shell.settings.lastState.isRunning());
    shell.files.files.clear();
    shell.tick();
    EXPECT_EQ(shell.settings.updates, 2);
    EXPECT_FALSE(shell.settings.lastStatus.has_value());
    EXPECT_EQ(shell.settings.lastState.kind(), DaemonState::Case::missing);
}

TEST(StatusMenuController, afterASleepItLooksAtOnce) {
    StatusMenuHarness shell;
    shell.start();
    shell.writeRunningStatus();
    shell.workspace.wake();
    EXPECT_THAT(shell.menu()[0].title, StartsWith("Daemon running"));
}

TEST(StatusMenuController, terminationStopsThePolling) {
    StatusMenuHarness shell;
    shell.start();
    EXPECT_EQ(shell.mainLoop.runningTimers(), 1U);
    shell.controller->applicationWillTerminate();
    EXPECT_EQ(shell.mainLoop.runningTimers(), 0U);
    shell.tick();
    shell.workspace.wake();
    EXPECT_EQ(shell.settings.updates, 1);
}

TEST(StatusMenuController, aCompletionAfterItsEndDoesNothing) {
    StatusMenuHarness shell;
    shell.files.files[StatusMenuHarness::plistPath] = "";
    shell.item.visibility.onscreen = false;
    shell.start();
    ASSERT_TRUE(shell.choose("Start daemon"));
    shell.writeRunningStatus(twoSessions);
    shell.tick();
    ASSERT_TRUE(shell.choose("Stop daemon"));
    ASSERT_TRUE(shell.choose("api"));
    ASSERT_EQ(shell.commands.log.size(), 4U) << "and the notification of the hidden item";
    shell.controller.reset();
    shell.commands.complete();
    EXPECT_EQ(shell.settings.updates, 2);
    EXPECT_EQ(shell.mainLoop.runningTimers(), 0U);
}
