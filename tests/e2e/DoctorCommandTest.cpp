#include "MenubarCore/JSON/JSONValue.h"

#include "tests/e2e/ScratchHome.h"
#include "tests/support/PropertyLists.h"

#include <chrono>
#include <filesystem>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using menubar::JSONValue;
using menubar::e2e::ScratchHome;
using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

std::set<std::string> everythingIn(const std::string& folder) {
    std::set<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        paths.insert(entry.path().string());
    }
    return paths;
}

} // namespace

TEST(DoctorCommand, looksAtEverythingAndChangesNothing) {
    ScratchHome home;
    home.environment["OSTREL_CLI"] = DEMO_PROGRAM;
    home.environment["PATH"] = DEMO_TOOLS;
    home.environment["OSTREL_DEMO_LAUNCHD"] = home / "launchd";
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","sessions":[{"dirName":"api","workspaceId":"w"}]})");
    home.write(".config/ostrel/config.json", R"({"warn-context":45})");
    home.write("Library/LaunchAgents/dev.ostrel.daemon.plist",
               menubar::testing_support::launchAgentPlist({DEMO_PROGRAM, "watch"}));
    const auto before = everythingIn(home.path());
    auto options = home.menubarctl({"doctor"});
    options.program = DEMO_MENUBARCTL_PROGRAM;
    options.arguments.insert(options.arguments.end(), ScratchHome::fixedTime.begin(), ScratchHome::fixedTime.end());
    const auto result = ScratchHome::run(options);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1); // the launch agent is not loaded
    EXPECT_THAT(result.output,
                ContainsRegex("^ok     status file: " + home.statusFile() + " \\(the default\\), 1 session\n"));
    EXPECT_THAT(result.output, HasSubstr("\nok     daemon: Daemon running (last poll 3s ago)\n"));
    EXPECT_THAT(result.output, HasSubstr("dev.ostrel.daemon.plist is not loaded → start the daemon"));
    EXPECT_THAT(result.output,
                ContainsRegex("\nok     settings schema: [^\n]* config schema names [0-9]+ settings, in [0-9]+ ms\n"));
    EXPECT_THAT(result.output, HasSubstr("\nok     config check: the daemon accepts the config file\n"));
    EXPECT_THAT(result.output, HasSubstr("\nok     cmux: " + std::string(DEMO_TOOLS) + "/cmux\n"));
    EXPECT_EQ(everythingIn(home.path()), before);

    options.arguments[0] = "doctor";
    options.arguments.emplace_back("--json");
    const auto document = JSONValue::decode(ScratchHome::run(options).output);
    ASSERT_TRUE(document);
    EXPECT_GT(document->objectValue()->at("checks").arrayValue()->size(), 10U);
}

TEST(DoctorCommand, endsWithinTenSecondsThoughTheDaemonHangs) {
    ScratchHome home;
    const std::string daemon = home.write("daemon", "#!/bin/sh\nsleep 600\n");
    ASSERT_EQ(::chmod(daemon.c_str(), 0755), 0);
    home.environment["OSTREL_CLI"] = daemon;
    home.write(".config/ostrel/config.json", "{}");
    ASSERT_EQ(::mkfifo((home / "status.fifo").c_str(), 0600), 0);
    home.environment["OSTREL_STATUS_FILE"] = home / "status.fifo";
    const auto start = std::chrono::steady_clock::now();
    const auto result = home.atFixedTime({"doctor"});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output,
                HasSubstr("\nwrong  settings schema: " + daemon + " config schema: it did not answer within 3 s →"));
    EXPECT_THAT(result.output, HasSubstr("\nwrong  config check: "));
    EXPECT_THAT(result.output, HasSubstr("it is a pipe, not a regular file"));
    EXPECT_THAT(result.output, HasSubstr("\nok     icon only: off (built in)\n"));
}
