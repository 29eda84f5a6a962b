#include "StatusMenuScene.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;

namespace {

StatusFile withSessions(std::vector<SessionStatus> sessions) {
    StatusFile file = polled(3);
    file.sessions = std::move(sessions);
    return file;
}

/// The only item with this title; an empty one, which fails what follows, when there is none.
MenuItem itemTitled(const StatusMenu& menu, std::string_view title) {
    const auto matches = [title](const MenuItem& item) { return item.title == title; };
    EXPECT_EQ(std::ranges::count_if(menu.items, matches), 1) << title;
    const auto item = std::ranges::find_if(menu.items, matches);
    return item == menu.items.end() ? MenuItem() : *item;
}

std::vector<MenuItem> taggedItems(const StatusMenu& menu) {
    std::vector<MenuItem> result;
    std::ranges::copy_if(menu.items, std::back_inserter(result), [](const MenuItem& item) { return item.tag != 0; });
    return result;
}

} // namespace

TEST(StatusMenu, tagsCountFromOneInDisplayOrderAndFindTheirSessions) {
    const StatusMenu menu = StatusMenuScene(withSessions({session("low", 10), session("high", 90)})).make();
    const std::vector<MenuItem> items = taggedItems(menu);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].tag, 1);
    EXPECT_EQ(items[1].tag, 2);
    ASSERT_NE(menu.sessionByTag(1), nullptr);
    EXPECT_EQ(menu.sessionByTag(1)->displayName(), "high");
    ASSERT_NE(menu.sessionByTag(2), nullptr);
    EXPECT_EQ(menu.sessionByTag(2)->displayName(), "low");
}

TEST(StatusMenu, aTagThatNoSessionHasFindsNone) {
    const StatusMenu menu = StatusMenuScene(withSessions({session("api", 10)})).make();
    for (const int tag : {0, 2, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_EQ(menu.sessionByTag(tag), nullptr) << tag;
    }
    const StatusMenu withoutSessions = StatusMenuScene().make();
    EXPECT_EQ(withoutSessions.sessionByTag(1), nullptr);
}

TEST(StatusMenu, onlyASessionWithAWorkspaceCanBeFocused) {
    SessionStatus inTerminal = session("a", 30);
    inTerminal.workspaceId = "workspace";
    SessionStatus withEmptyOne = session("b", 20);
    withEmptyOne.workspaceId = "";
    const StatusMenu menu = StatusMenuScene(withSessions({inTerminal, withEmptyOne, session("c", 10)})).make();
    const std::vector<MenuItem> items = taggedItems(menu);
    ASSERT_EQ(items.size(), 3U);
    EXPECT_TRUE(items[0].enabled);
    EXPECT_EQ(items[0].action, MenuAction::focusSession);
    for (const MenuItem& item : {items[1], items[2]}) {
        EXPECT_FALSE(item.enabled) << item.title;
        EXPECT_EQ(item.action, MenuAction::none) << item.title;
    }
}

TEST(StatusMenu, aTooltipThatWouldBeEmptyIsAbsent) {
    StatusFile file = withSessions({session("bare", 10), sessionWithHandoff("pathless", handoff(""))});
    file.providerFailures = {{"acme", ""}};
    file.events = {event(now, EventLevel::ok, ""), OstrelEvent{}};
    const StatusMenu menu = StatusMenuScene(file).make();
    EXPECT_EQ(itemTitled(menu, "bare · unknown · 10% · unknown").tooltip, std::nullopt);
    EXPECT_EQ(itemTitled(menu, "acme discovery unavailable").tooltip, std::nullopt);
    EXPECT_EQ(itemTitled(menu, "14:03 [ok] session: ").tooltip, std::nullopt);
    EXPECT_EQ(itemTitled(menu, "--:-- [unknown] session: unknown").tooltip, std::nullopt);
    const MenuItem pathless = itemTitled(menu, "Open handoff · pathless (missing)");
    EXPECT_EQ(pathless.tooltip, std::nullopt);
    EXPECT_EQ(pathless.path, "");
}

TEST(StatusMenu, aConfigErrorWithoutAPathHasItsMessageAsTooltip) {
    StatusFile file = polled(3);
    file.configError = ConfigError{.message = "bad number", .path = std::nullopt, .at = std::nullopt};
    EXPECT_EQ(itemTitled(StatusMenuScene(file).make(), "Config file ignored: bad number").tooltip, "bad number");
}

TEST(StatusMenu, ofManyEventsTheFiveNewestAreListedAndIndented) {
    StatusFile file = polled(3);
    for (int i = 0; i < 8; ++i) {
        file.events.push_back(event(secondsAgo(60 * i), EventLevel::info, "event " + std::to_string(i)));
    }
    std::vector<std::string> titles;
    for (const MenuItem& item : StatusMenuScene(file).make().items) {
        if (item.indentation == 1) {
            titles.push_back(item.title);
            EXPECT_FALSE(item.enabled);
        }
    }
    EXPECT_EQ(titles, (std::vector<std::string>{"14:03 [info] session: event 0", "14:02 [info] session: event 1",
                                                "14:01 [info] session: event 2", "14:00 [info] session: event 3",
                                                "13:59 [info] session: event 4"}));
}

TEST(StatusMenu, anEventsWholeTextIsItsTooltip) {
    const std::string text(500, 'x');
    StatusFile file = polled(3);
    file.events = {event(now, EventLevel::info, text)};
    const StatusMenu menu = StatusMenuScene(file).make();
    const auto item = std::ranges::find(menu.items, 1, &MenuItem::indentation);
    ASSERT_NE(item, menu.items.end());
    EXPECT_EQ(item->tooltip, text);
    EXPECT_TRUE(item->title.ends_with("…"));
}

TEST(StatusMenu, timesFollowTheZone) {
    StatusFile file = polled(3);
    file.stoppedAt = now;
    file.events = {event(now, EventLevel::info, "x")};
    StatusMenuScene scene(file);
    scene.timeZone = kathmandu;
    scene.hiddenTracker.hiddenSince = now;
    const StatusMenu menu = scene.make();
    EXPECT_FALSE(itemTitled(menu, "Daemon stopped at 19:48").enabled);
    EXPECT_FALSE(itemTitled(menu, "19:48 [info] session: x").enabled);
    EXPECT_FALSE(itemTitled(menu, "Icon hidden since 19:48 (menu bar full or behind the notch)").enabled);
}

TEST(StatusMenu, anInstalledDaemonThatDoesNotRunCanBeStarted) {
    for (const StatusSnapshot& snapshot : {StatusSnapshot::missing(), StatusSnapshot::unreadable("x")}) {
        EXPECT_EQ(itemTitled(StatusMenuScene(snapshot).make(), "Start daemon").action, MenuAction::startDaemon);
    }
}

TEST(StatusMenu, withoutALaunchAgentNoRestartIsOffered) {
    StatusFile file = polled(3);
    file.configFile = ConfigFileStatus{.path = std::nullopt, .loadedAt = std::nullopt, .changedSinceLoad = true};
    StatusMenuScene scene(file);
    scene.isDaemonInstalled = false;
    const StatusMenu menu = scene.make();
    EXPECT_EQ(itemTitled(menu, "Restart daemon to apply settings").action, MenuAction::none) << "only the notice";
    EXPECT_FALSE(itemTitled(menu, "Daemon not installed (run: ostrel install)").enabled);
}

TEST(StatusMenu, onlyQuitHasAKey) {
    const StatusMenu menu = StatusMenuScene().make();
    for (const MenuItem& item : menu.items) {
        EXPECT_EQ(item.keyEquivalent, item.action == MenuAction::quit ? "q" : "") << item.title;
    }
}

TEST(StatusMenu, tenThousandSessionsAreAllListed) {
    StatusFile file = polled(3);
    for (int i = 0; i < 10000; ++i) {
        file.sessions.push_back(session("session " + std::to_string(i), i % 100));
    }
    const StatusMenu menu = StatusMenuScene(file).make();
    EXPECT_EQ(menu.sessions.size(), 10000U);
    const std::vector<MenuItem> items = taggedItems(menu);
    ASSERT_EQ(items.size(), 10000U);
    EXPECT_EQ(items.back().tag, 10000);
    EXPECT_EQ(items.back().title, "session 9900 · unknown · 0% · unknown");
}
