#include "tests/e2e/ScratchHome.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::e2e::ChildProcess;
using menubar::e2e::ScratchHome;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

ScratchHome::Result runWith(std::vector<std::string> arguments) {
    const ScratchHome home;
    return ScratchHome::run(home.menubarctl(std::move(arguments)));
}

} // namespace

TEST(Menubarctl, helpAndVersionGoToStandardOutput) {
    const auto help = runWith({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, StartsWith("usage: ostrel-menubarctl COMMAND [OPTIONS]\n"));
    EXPECT_EQ(help.errors, "");
    const auto version = runWith({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, testing::MatchesRegex("ostrel-menubarctl [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_THAT(runWith({"settings", "set", "--help"}).output,
                StartsWith("usage: ostrel-menubarctl settings set NAME VALUE..."));
}

TEST(Menubarctl, aWrongCommandLineGetsTwoLinesAndStatusTwo) {
    const std::vector<std::vector<std::string>> wrong{{}, {"status", "--bogus"}, {"settings", "set"}};
    for (const auto& arguments : wrong) {
        const auto result = runWith(arguments);
        EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors,
                    testing::MatchesRegex("ostrel-menubarctl: [^\n]+\ntry: ostrel-menubarctl help[^\n]*\n"));
    }
}

TEST(Menubarctl, startingAtLoginIsRefusedWhereTheProgramIsInNoApp) {
    for (const char* what : {"on", "off", "status"}) {
        const auto result = runWith({"login", what});
        EXPECT_EQ(result.status, 1) << what;
        EXPECT_EQ(result.output, "");
#if defined(__APPLE__)
        EXPECT_THAT(result.errors, StartsWith("ostrel-menubarctl: this program does not run from the app"));
#else
        EXPECT_EQ(result.errors, "ostrel-menubarctl: only macOS can start the app at login\n");
#endif
    }
}

TEST(Menubarctl, diagnosticLinesAppearOnlyWhenAskedFor) {
    const ScratchHome home;
    EXPECT_EQ(home.atFixedTime({"status"}).errors, "");
    EXPECT_EQ(home.atFixedTime({"status", "--verbose"}).errors, "ostrel-menubar: watching " + home.statusFile() + "\n");
}

TEST(Menubarctl, aReaderThatHasGoneEndsItQuietly) {
    const ScratchHome home;
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"menu"},
                                                      {"menu", "--json"},
                                                      {"status"},
                                                      {"--help"},
                                                      {"menu", "--watch"},
                                                      {"sessions"},
                                                      {"sessions", "--watch"},
                                                      {"sessions", "--json", "--watch"},
                                                      {"bar", "plain"},
                                                      {"bar", "waybar", "--watch"},
                                                      {"daemon", "status"}}) {
        auto options = home.menubarctl(arguments);
        options.output = ChildProcess::Output::closedPipe;
        const auto result = ScratchHome::run(options);
        const bool asksTheDaemon = arguments.front() == "daemon" || arguments == std::vector<std::string>{"sessions"};
        EXPECT_EQ(result.status, arguments.front() == "daemon" ? 1 : 0) << arguments.back();
        EXPECT_EQ(result.errors,
                  arguments.front() == "sessions" && asksTheDaemon ? "ostrel-menubarctl: Daemon not running\n" : "");
    }
}

TEST(Menubarctl, outputThatCannotBeWrittenIsAFailure) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no device that is always full";
    }
    const ScratchHome home;
    auto options = home.menubarctl({"-c", "exec \"$0\" status > /dev/full", MENUBARCTL_PROGRAM});
    options.program = "/bin/sh";
    const auto result = ScratchHome::run(options);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "ostrel-menubarctl: cannot write the output: No space left on device\n");
}

TEST(Menubarctl, aClosedStandardDescriptorIsNoPlaceForAnythingElse) {
    const ScratchHome home;
    const auto run = [&](const std::string& command) {
        auto options = home.menubarctl({"-c", "exec \"$0\" " + command, MENUBARCTL_PROGRAM});
        options.program = "/bin/sh";
        return ScratchHome::run(options);
    };
    const std::string complaint = "ostrel-menubarctl: cannot write the output: Bad file descriptor\n";
    for (const std::string command :
         {"status >&-", "menu --json <&- >&-", "menu --watch >&-", "menu --watch <&- >&-"}) {
        const auto result = run(command);
        EXPECT_EQ(result.status, 1) << command;
        EXPECT_EQ(result.errors, complaint) << command;
    }
    EXPECT_EQ(run("menu --watch <&- >&- 2>&-").status, 1);
    EXPECT_EQ(run("nonsense 2>&-").status, 2);
    const auto silent = run("status --verbose 2>&-");
    EXPECT_EQ(silent.status, 0);
    EXPECT_THAT(silent.output, StartsWith("Daemon not running\n"));
}

TEST(Demo, saysThatItIsAStandIn) {
    const ScratchHome home;
    const auto help = ScratchHome::run(home.demo({"--help"}));
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("stand-in"));
    const auto version = ScratchHome::run(home.demo({"--version"}));
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, EndsWith("(stand-in of ostrel-menubar)\n"));
}

TEST(Demo, refusesAWrongCommandLine) {
    const ScratchHome home;
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"install"},
                                                      {"watch", "--interval-ms", "0"},
                                                      {"watch", "--interval-ms=x"},
                                                      {"watch", "--state"},
                                                      {"watch", "--bogus=1"},
                                                      {"watch", "--seed", "-1"},
                                                      {"config"},
                                                      {"config", "edit"}}) {
        const auto result = ScratchHome::run(home.demo(arguments));
        EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr("usage: ostrel watch"));
    }
}
