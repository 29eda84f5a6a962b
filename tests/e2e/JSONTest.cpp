#include "tests/e2e/ScratchHome.h"

#include <filesystem>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::e2e::ScratchHome;
using testing::HasSubstr;

// The documents are written out in full, so that a renamed key cannot go unnoticed. The programs run at
// 2025-03-04T10:15:33Z in Kathmandu, where it is 16:00:33.

namespace {

/// An item that has no action, is disabled and has nothing else of note.
std::string note(const std::string& title, const std::string& tooltip = "null", int indentation = 0) {
    return R"json({"action":null,"checked":false,"enabled":false,"indentation":)json" + std::to_string(indentation) +
           R"json(,"key":"","kind":"item","path":null,"tag":0,"title":")json" + title + R"json(","tooltip":)json" +
           tooltip + "}";
}

std::string action(const std::string& name, const std::string& title, const char* key = "") {
    return R"json({"action":")json" + name + R"json(","checked":false,"enabled":true,"indentation":0,"key":")json" +
           key + R"json(","kind":"item","path":null,"tag":0,"title":")json" + title + R"json(","tooltip":null})json";
}

const std::string separator = R"json({"kind":"separator"})json";

constexpr const char* builtInCompact = R"json({"compact":{"compact":false,"source":"builtIn"},)json";

} // namespace

TEST(StatusJSON, ofARunningDaemon) {
    const ScratchHome home;
    home.writeStatus(
        R"json({"at":"2025-03-04T10:15:30.5Z","config":{"warnContextPct":70,"messageAgents":true},)json"
        R"json("sessions":[{"contextPct":72.5,"level":"warn","dirName":"api"},{"level":"critical"}]})json");
    const auto result = home.atFixedTime({"status", "--json"});
    EXPECT_EQ(
        result.output,
        std::string(builtInCompact) +
            R"json("notices":[],"presentation":{"symbolName":"eye.trianglebadge.exclamationmark","title":"73%",)json"
            R"json("tone":"warn","tooltip":"Daemon running (last poll 2s ago) · some context unavailable"},)json"
            R"json("state":{"detail":"warn 70% · critical -- · messaging on","kind":"running","pollAge":2.5,)json"
            R"json("title":"Daemon running (last poll 2s ago)"}})json"
            "\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST(MenuJSON, ofARunningDaemonWithEverything) {
    const ScratchHome home;
    const std::string handoff = home.write("notes/web.md", "# hand-off");
    const std::string missing = home / "notes/gone.md";
    home.write("Library/LaunchAgents/dev.ostrel.daemon.plist", "");
    std::filesystem::create_directories(home / "Library/Logs/ostrel");
    home.writeStatus(
        R"json({"at":"2025-03-04T10:15:30Z","config":{"warnContextPct":70,"criticalContextPct":90,"dryRun":true},)json"
        R"json("configError":{"message":"bad","path":"/etc/c.json"},"configFile":{"changedSinceLoad":true},)json"
        R"json("providerFailures":[{"provider":"zephyr","reason":"locked"}],"sessions":[)json"
        R"json({"dirName":"api","provider":"acme","model":"model-4","contextPct":72,"level":"ok","lifecycle":"running",)json"
        R"json("cacheExpiresAt":"2025-03-04T10:19:33Z","workspaceId":"w1","contextTokens":45210,"contextWindow":200000,)json"
        R"json("handoff":{"path":")json" +
        missing +
        R"json("}},)json"
        R"json({"dirName":"web","contextPct":93,"level":"critical","lifecycle":"needsInput",)json"
        R"json("handoff":{"path":")json" +
        handoff +
        R"json(","writtenAt":"2025-03-04T10:03:33Z","location":"repo"}}],)json"
        R"json("events":[{"at":"2025-03-04T08:18:00Z","provider":"acme","dirName":"api","kind":"notify","level":"warn",)json"
        R"json("text":"context\nat 81%"},{"kind":"handoff","dirName":"web","text":"web: wrote a","dryRun":true}]})json");

    const auto escaped = [](std::string path) {
        for (std::size_t at = 0; (at = path.find('/', at)) != std::string::npos; at += 2) {
            path.replace(at, 1, "\\/");
        }
        return path;
    };
    const std::string handoffPath = escaped(handoff);
    const std::string missingPath = escaped(missing);
    const std::string expected =
        R"json({"items":[)json" + note("Config file ignored: bad", R"json("bad\n\/etc\/c.json")json") + "," +
        note("Restart daemon to apply settings") + "," + note("Daemon running (last poll 3s ago)") + "," +
        note("warn 70% · critical 90% · messaging off · dry-run") + "," +
        note("zephyr discovery unavailable", "\"locked\"") + "," + separator + "," +
        R"json({"action":null,"checked":false,"enabled":false,"indentation":0,"key":"","kind":"item","path":null,)json"
        R"json("tag":1,"title":"[critical] web · unknown · 93% · needs input · handoff",)json"
        R"json("tooltip":"Handoff written 12m ago: )json" +
        handoffPath +
        R"json("},)json"
        R"json({"action":"focusSession","checked":false,"enabled":true,"indentation":0,"key":"","kind":"item",)json"
        R"json("path":null,"tag":2,)json"
        R"json("title":"api · acme · model-4 · 72% · running · cache expires in 4m · handoff",)json"
        R"json("tooltip":"45,210 of 200,000 tokens\nHandoff: )json" +
        missingPath + R"json("},)json" + separator + "," + note("Handoffs") + "," +
        R"json({"action":"openHandoff","checked":false,"enabled":true,"indentation":0,"key":"","kind":"item","path":")json" +
        handoffPath + R"json(","tag":0,"title":"Open handoff · web (12m ago)","tooltip":")json" + handoffPath +
        R"json("},)json" +
        R"json({"action":null,"checked":false,"enabled":false,"indentation":0,"key":"","kind":"item","path":")json" +
        missingPath + R"json(","tag":0,"title":"Open handoff · api (missing)","tooltip":")json" + missingPath +
        R"json("},)json" + separator + "," + note("Recent events") + "," +
        note("14:03 [warn] acme api: context at 81%", R"json("context\nat 81%")json", 1) + "," +
        note("--:-- [handoff] web: wrote a (dry-run)", R"json("web: wrote a")json", 1) + "," + separator + "," +
        action("refreshClicked", "Refresh") + "," + action("openSettings", "Settings...") + "," +
        action("toggleCompact", "Icon only") + "," + action("startDaemon", "Restart daemon to apply settings") + "," +
        action("stopDaemon", "Stop daemon") + "," + action("openLogs", "Open logs") + "," +
        action("openStatusFile", "Open status file") + "," + separator + "," + action("quit", "Quit", "q") + "]}\n";
    EXPECT_EQ(home.atFixedTime({"menu", "--json"}).output, expected);
}

TEST(StatusFilePath, anOptionBeatsTheVariableWhichBeatsTheHome) {
    ScratchHome home;
    home.writeStatus(R"json({"stoppedAt":"2025-03-04T01:00:00Z"})json");
    home.write("v.json", R"json({"stoppedAt":"2025-03-04T02:00:00Z"})json");
    const std::string option = home.write("o.json", R"json({"stoppedAt":"2025-03-04T03:00:00Z"})json");
    EXPECT_THAT(home.atFixedTime({"status"}).output, HasSubstr("Daemon stopped at 06:45\n"));
    home.environment["OSTREL_STATUS_FILE"] = "~/v.json";
    EXPECT_THAT(home.atFixedTime({"status"}).output, HasSubstr("Daemon stopped at 07:45\n"));
    EXPECT_THAT(home.atFixedTime({"status", "--status-file=" + option}).output, HasSubstr("Daemon stopped at 08:45\n"));
    home.environment["OSTREL_STATUS_FILE"] = "";
    EXPECT_THAT(home.atFixedTime({"status"}).output, HasSubstr("Daemon stopped at 06:45\n"));
}

TEST(TimeZone, isTheLocalOneUnlessItIsNamed) {
    ScratchHome home;
    home.writeStatus(R"json({"stoppedAt":"2025-03-04T01:00:00Z"})json");
    EXPECT_THAT(ScratchHome::run(home.menubarctl({"status"})).output, HasSubstr("Daemon stopped at 01:00\n"));
    for (const auto& [zone, time] :
         {std::pair("America/St_Johns", "21:30"), std::pair("JST-9", "10:00"), std::pair(":Asia/Kathmandu", "06:45")}) {
        home.environment["TZ"] = zone;
        EXPECT_THAT(ScratchHome::run(home.menubarctl({"status"})).output,
                    HasSubstr(std::string("Daemon stopped at ") + time + "\n"));
        EXPECT_THAT(ScratchHome::run(home.menubarctl({"status", "--time-zone=Asia/Kolkata"})).output,
                    HasSubstr("Daemon stopped at 06:30\n"));
    }
}

TEST(TimeZone, withoutAZoneDatabaseARuleIsStillRead) {
    ScratchHome home;
    home.writeStatus(R"json({"stoppedAt":"2025-03-04T01:00:00Z"})json");
    home.environment["TZ"] = "JST-9";
    home.environment["TZDIR"] = home / "none";
    EXPECT_THAT(ScratchHome::run(home.menubarctl({"status"})).output, HasSubstr("Daemon stopped at 10:00\n"));
    const auto named = ScratchHome::run(home.menubarctl({"status", "--time-zone=UTC"}));
    EXPECT_EQ(named.status, 2);
    EXPECT_THAT(named.errors,
                HasSubstr("--time-zone is not the name of a time zone: \"UTC\"; there is no zone database in \"" +
                          (home / "none") + "\"\n"));
}

#if !defined(__APPLE__)
TEST(StoredIconOnly, isReadFromTheDesktopAppsPreferences) {
    const ScratchHome home;
    const auto store = [&home](const std::string& value) {
        home.write(std::string("GNUstep/Defaults/") + ScratchHome::defaultsDomain + ".plist",
                   R"json(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>compact</key>)json" +
                       value + "</dict></plist>");
    };
    const auto compact = [&home] {
        const std::string output = home.atFixedTime({"status", "--json"}).output;
        return output.substr(0, output.find(",\"notices\""));
    };
    store("<true/>");
    EXPECT_EQ(compact(), R"json({"compact":{"compact":true,"source":"defaults"})json");
    store("<false/>");
    EXPECT_EQ(compact(), R"json({"compact":{"compact":false,"source":"defaults"})json");
    for (const char* other : {"<string>YES</string>", "<integer>1</integer>", "<true/><key>x", "<dict/>"}) {
        store(other);
        EXPECT_EQ(compact(), R"json({"compact":{"compact":false,"source":"builtIn"})json") << other;
    }
}
#endif
