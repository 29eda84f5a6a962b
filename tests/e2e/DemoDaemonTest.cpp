#include "MenubarCore/Status/StatusDecoder.h"

#include "tests/e2e/Eventually.h"
#include "tests/e2e/ScratchHome.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::StatusFile;
using menubar::e2e::ChildProcess;
using menubar::e2e::eventually;
using menubar::e2e::ScratchHome;
using menubar::testing_support::bytesOf;
using testing::HasSubstr;

namespace {

/// The file as it is now; fails the test when there is one that cannot be read.
std::optional<StatusFile> read(const std::string& path) {
    if (!std::filesystem::exists(path)) {
        return std::nullopt;
    }
    const auto file = menubar::StatusDecoder::decode(bytesOf(path));
    EXPECT_TRUE(file) << describe(file.error());
    return file ? std::optional(*file) : std::nullopt;
}

std::set<std::string> namesIn(const std::string& directory) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

} // namespace

TEST(DemoDaemon, writesTheStatusFileAtTheUsualPlaceAndTheHandoffsThatItNames) {
    const ScratchHome home;
    ChildProcess daemon(home.demo({"watch"}));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(home.statusFile()); }));
    const auto file = read(home.statusFile());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->daemonPid, daemon.pid());
    EXPECT_EQ(file->sessions.size(), 6U);
    std::size_t handoffs = 0;
    for (const auto& session : file->sessions) {
        if (session.handoff) {
            ++handoffs;
            EXPECT_THAT(bytesOf(session.handoff->path), HasSubstr("# Hand-off: " + session.dirName.value_or("")));
        }
    }
    EXPECT_GE(handoffs, 2U);
    daemon.send(SIGTERM);
    EXPECT_EQ(daemon.wait(), 0);
}

TEST(DemoDaemon, keepsPollingAtItsInterval) {
    const ScratchHome home;
    ChildProcess daemon(home.demo({"watch", "--interval-ms=20"}));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(home.statusFile()); }));
    const auto first = read(home.statusFile());
    ASSERT_TRUE(first);
    EXPECT_EQ(first->intervalMs, 20);
    EXPECT_TRUE(eventually([&] { return read(home.statusFile())->at > first->at; }));
}

TEST(DemoDaemon, marksThatItStoppedWhenItIsToldTo) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const ScratchHome home;
        ChildProcess daemon(home.demo({"watch"}));
        ASSERT_TRUE(eventually([&] { return std::filesystem::exists(home.statusFile()); }));
        EXPECT_FALSE(read(home.statusFile())->stoppedAt);
        daemon.send(signal);
        EXPECT_EQ(daemon.wait(), 0);
        EXPECT_EQ(daemon.errors(), "");
        const auto file = read(home.statusFile());
        ASSERT_TRUE(file);
        EXPECT_EQ(file->stoppedAt, file->at);
        EXPECT_THAT(ScratchHome::run(home.menubarctl({"status"})).output, HasSubstr("Daemon stopped at "));
    }
}

TEST(DemoDaemon, neverShowsAPartOfAFileAndLeavesNoneBehind) {
    const ScratchHome home;
    ChildProcess daemon(home.demo({"watch", "--interval-ms", "1"}));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(home.statusFile()); }));
    // Read as fast as can be, so that many reads fall into a write.
    std::set<menubar::Date> polls;
    ASSERT_TRUE(eventually([&] {
        for (int round = 0; round < 20; ++round) {
            const auto file = read(home.statusFile());
            polls.insert(file ? file->at.value_or(menubar::Date{}) : menubar::Date{});
        }
        return polls.size() > 5; // each waits for the disk
    }));
    EXPECT_FALSE(polls.contains(menubar::Date{})) << "one could not be read";
    daemon.send(SIGTERM);
    EXPECT_EQ(daemon.wait(), 0);
    EXPECT_THAT(namesIn(home / ".local/state/ostrel"), testing::ElementsAre("handoffs", "status.json"));
}

TEST(DemoDaemon, writesWhereTheVariableOrTheOptionSays) {
    ScratchHome home;
    home.environment["OSTREL_STATUS_FILE"] = "~/variable/s.json";
    ChildProcess first(home.demo({"watch"}));
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(home / "variable/s.json"); }));
    ChildProcess second(home.demo({"watch", "--state", home / "option/s.json"}));
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(home / "option/s.json"); }));
    EXPECT_TRUE(std::filesystem::is_directory(home / "option/handoffs"));
}

TEST(DemoDaemon, noticesThatTheConfigFileChanged) {
    const ScratchHome home;
    ChildProcess daemon(home.demo({"watch", "--interval-ms=20"}));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(home.statusFile()); }));
    const auto before = read(home.statusFile());
    ASSERT_TRUE(before);
    EXPECT_FALSE(before->configChangedSinceLoad());
    ASSERT_TRUE(before->configFile);
    EXPECT_EQ(before->configFile->path, home / ".config/ostrel/config.json");
    home.write(".config/ostrel/config.json", "{}");
    EXPECT_TRUE(eventually([&] { return read(home.statusFile())->configChangedSinceLoad(); }));
}

TEST(DemoDaemon, aPlaceThatCannotBeWrittenIsAFailure) {
    const ScratchHome home;
    const std::string file = home.write("file", "");
    const auto result = ScratchHome::run(home.demo({"watch", "--state", file + "/s.json"}));
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("ostrel (stand-in): cannot create the directory " + file + "/handoffs"));
}

TEST(DemoDaemon, isShownByTheMenu) {
    const ScratchHome home;
    ChildProcess daemon(home.demo({"watch"}));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(home.statusFile()); }));
    const auto menu = ScratchHome::run(home.menubarctl({"menu"}));
    EXPECT_THAT(menu.output, HasSubstr("Daemon running (last poll "));
    EXPECT_THAT(menu.output, HasSubstr("[critical] web · acme · model-5 · 93% · needs input · cache expires in "));
    EXPECT_THAT(menu.output, HasSubstr("[warn] api · acme · model-4 · 81% · running"));
    EXPECT_THAT(menu.output, HasSubstr("  straßenkarte · quill · nimbus-2-lite · 35% · idle"));
    EXPECT_THAT(menu.output, HasSubstr("Open handoff · web (4m ago)\n"));
    EXPECT_THAT(menu.output, HasSubstr("acme web: asked for a hand-off document (dry-run)\n"));
}
