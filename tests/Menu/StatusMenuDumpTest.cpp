#include "StatusMenuScene.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;

namespace {

OstrelConfig usualConfig() {
    OstrelConfig config;
    config.warnContextPct = 70;
    config.criticalContextPct = 90;
    config.messageAgents = true;
    return config;
}

SessionStatus apiSession() {
    SessionStatus api = session("api", 72, SessionLevel::warn);
    api.provider = "acme";
    api.model = "claude-model-4";
    api.lifecycle = SessionLifecycle::running;
    api.contextTokens = 144000;
    api.contextWindow = 200000;
    api.cwd = "/src/api";
    api.sessionId = "0123456789";
    api.workspaceId = "workspace-1";
    api.cacheExpiresAt = secondsAhead(270);
    return api;
}

SessionStatus webSession() {
    SessionStatus web = session("web", 93, SessionLevel::critical);
    web.model = "model-5";
    web.lifecycle = SessionLifecycle::needsInput;
    web.workspaceId = "workspace-2";
    web.cacheExpiresAt = secondsAgo(125);
    web.handoff = handoff("/src/web/HANDOFF.md", secondsAgo(720));
    return web;
}

SessionStatus docsSession() {
    SessionStatus docs = session("docs", std::nullopt, SessionLevel::unknown);
    docs.lifecycle = SessionLifecycle::idle;
    docs.handoff = handoff("/src/docs/HANDOFF.md");
    return docs;
}

StatusFile busyFile(double pollAge) {
    StatusFile file = polled(pollAge);
    file.config = usualConfig();
    file.sessions = {docsSession(), apiSession(), webSession()};
    file.events = {event(secondsAgo(600), EventLevel::ok, "watching"),
                   event(secondsAgo(300), EventLevel::warn, "context at 81%\nsecond line"),
                   event(std::nullopt, EventLevel::info, "no time")};
    file.events[1].dirName = "web";
    return file;
}

/// The last section of an ordinary menu with this daemon control.
std::string actions(const std::string& control, const std::string& iconOnly = "\"Icon only\"") {
    return R"menu(---
"Refresh" -> refreshClicked
"Settings..." -> openSettings
)menu" + iconOnly +
           " -> toggleCompact\n" + control +
           R"menu(
"Open logs" -> openLogs
"Open status file" -> openStatusFile
---
"Quit" key=cmd-q -> quit
)menu";
}

const std::string nothingToList = R"menu(---
("Handoffs")
("No handoffs")
---
("Recent events")
("No events yet")
)menu";

const std::string quietDaemon = R"menu(("Daemon running (last poll 3s ago)")
("No config in status file")
---
("No sessions")
)menu" + nothingToList;

const std::string busySections =
    R"menu("[critical] web · model-5 · 93% · needs input · cache expired 2m ago · handoff" tag=1 -> focusSession tooltip="Handoff written 12m ago: /src/web/HANDOFF.md"
"[warn] api · acme · model-4 · 72% · running · cache expires in 4m" tag=2 -> focusSession tooltip="144,000 of 200,000 tokens\n/src/api\n0123456789"
("[unknown] docs · unknown · -- · idle · handoff") tag=3 tooltip="Handoff: /src/docs/HANDOFF.md"
---
("Handoffs")
"Open handoff · web (12m ago)" -> openHandoff path="/src/web/HANDOFF.md" tooltip="/src/web/HANDOFF.md"
("Open handoff · docs (missing)") path="/src/docs/HANDOFF.md" tooltip="/src/docs/HANDOFF.md"
---
("Recent events")
  ("13:58 [warn] web: context at 81% second line") tooltip="context at 81%\nsecond line"
  ("13:53 [ok] session: watching") tooltip="watching"
  ("--:-- [info] session: no time") tooltip="no time"
)menu";

StatusMenuScene busyScene(double pollAge) {
    StatusMenuScene scene(busyFile(pollAge));
    scene.existingHandoffs = {"/src/web/HANDOFF.md"};
    return scene;
}

} // namespace

TEST(StatusMenuDump, aRunningDaemonWithSessionsHandoffsAndEvents) {
    EXPECT_EQ(busyScene(3).dump(), R"menu(("Daemon running (last poll 3s ago)")
("warn 70% · critical 90% · messaging on")
---
)menu" + busySections + actions("\"Stop daemon\" -> stopDaemon"));
}

TEST(StatusMenuDump, aStaleDaemonWithAnAge) {
    EXPECT_EQ(busyScene(90).dump(), R"menu(("Daemon not responding (last poll 1m ago)")
("warn 70% · critical 90% · messaging on")
---
("Sessions from the last poll")
)menu" + busySections + actions("\"Restart daemon\" -> startDaemon"));
}

TEST(StatusMenuDump, aStaleDaemonWithoutAnAge) {
    EXPECT_EQ(StatusMenuScene(StatusFile()).dump(), R"menu(("Daemon not responding (no poll time in status file)")
("No config in status file")
---
("No session data")
)menu" + nothingToList + actions("\"Restart daemon\" -> startDaemon"));
}

TEST(StatusMenuDump, aStoppedDaemonKeepsItsLastSessions) {
    StatusMenuScene scene = busyScene(3);
    StatusFile file = busyFile(3);
    file.stoppedAt = secondsAgo(60);
    scene.snapshot = StatusSnapshot::loaded(file);
    EXPECT_EQ(scene.dump(), R"menu(("Daemon stopped at 14:02")
("warn 70% · critical 90% · messaging on")
---
("Sessions from the last poll")
)menu" + busySections + actions("\"Start daemon\" -> startDaemon"));
}

TEST(StatusMenuDump, aMissingStatusFile) {
    StatusMenuScene scene(StatusSnapshot::missing());
    scene.statusFileExists = false;
    scene.logsDirectoryExists = false;
    EXPECT_EQ(scene.dump(), R"menu(("Daemon not running")
("Start it with: ostrel watch (or ostrel install)")
---
("No session data")
)menu" + nothingToList + R"menu(---
"Refresh" -> refreshClicked
"Settings..." -> openSettings
"Icon only" -> toggleCompact
"Start daemon" -> startDaemon
("Open logs") -> openLogs
("Open status file") -> openStatusFile
---
"Quit" key=cmd-q -> quit
)menu");
}

TEST(StatusMenuDump, anUnreadableStatusFileGivesItsReason) {
    EXPECT_EQ(
        StatusMenuScene(StatusSnapshot::unreadable("type mismatch (Int) at sessions.Index 2.contextTokens")).dump(),
        R"menu(("Status file unreadable")
("type mismatch (Int) at sessions.Index 2.contextTokens")
---
("No session data")
)menu" + nothingToList +
            actions("\"Start daemon\" -> startDaemon"));
}

TEST(StatusMenuDump, aRunningDaemonWithoutSessions) {
    EXPECT_EQ(StatusMenuScene().dump(), quietDaemon + actions("\"Stop daemon\" -> stopDaemon"));
}

TEST(StatusMenuDump, withoutALaunchAgentTheDaemonCannotBeControlled) {
    StatusMenuScene scene;
    scene.isDaemonInstalled = false;
    EXPECT_EQ(scene.dump(), quietDaemon + actions("(\"Daemon not installed (run: ostrel install)\")"));
}

TEST(StatusMenuDump, noticesAndFailuresAndAHiddenItemStandAtTheTop) {
    StatusFile file = polled(3);
    file.configError = ConfigError{.message = "bad number", .path = "/c.json", .at = std::nullopt};
    file.configFile = ConfigFileStatus{.path = "/c.json", .loadedAt = std::nullopt, .changedSinceLoad = true};
    file.providerFailures = {{"acme", "no such directory"}, {"", ""}};
    StatusMenuScene scene(file);
    scene.hiddenTracker.hiddenSince = secondsAgo(240);
    EXPECT_EQ(scene.dump(), R"menu(("Config file ignored: bad number") tooltip="bad number\n/c.json"
("Restart daemon to apply settings")
("Icon hidden since 13:59 (menu bar full or behind the notch)")
("Daemon running (last poll 3s ago)")
("No config in status file")
("acme discovery unavailable") tooltip="no such directory"
(" discovery unavailable")
---
("No sessions")
)menu" + nothingToList +
                                actions("\"Restart daemon to apply settings\" -> startDaemon\n"
                                        "\"Stop daemon\" -> stopDaemon"));
}

TEST(StatusMenuDump, iconOnlyIsCheckedAndLockedByTheEnvironmentAlone) {
    StatusMenuScene scene;
    scene.compact = {true, CompactSetting::Source::environment};
    EXPECT_EQ(scene.dump(), quietDaemon + actions("\"Stop daemon\" -> stopDaemon",
                                                  "(\"Icon only (set by OSTREL_MENUBAR_COMPACT)\") checked"));
    scene.compact = {true, CompactSetting::Source::defaults};
    EXPECT_EQ(scene.dump(), quietDaemon + actions("\"Stop daemon\" -> stopDaemon", "\"Icon only\" checked"));
}
