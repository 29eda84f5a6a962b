// The built app on a real display: a person chooses from its menu, and the stand-ins record what the app then starts.

#include "tests/e2e/Desktop.h"

#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/Menu/HiddenItemTracker.h"

#include "tests/e2e/ReadMark.h"
#include "tests/support/PropertyLists.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace menubar;
using menubar::e2e::ChildProcess;
using menubar::e2e::Desktop;
using menubar::e2e::eventually;
using menubar::e2e::ReadMark;
using menubar::e2e::ScratchHome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char* const oneSession = R"({"at":"2025-03-04T10:15:30Z","sessions":[
    {"sessionId":"id-1","dirName":"api","workspaceId":"w 1","surfaceId":"p\"1"}]})";

const std::vector<std::string> focusCalls{"cmux <select-workspace> <--workspace> <w 1>",
                                          R"(cmux <focus-panel> <--panel> <p"1> <--workspace> <w 1>)"};

const std::string notifyCall = "cmux <notify> <--title> <" + std::string(HiddenItemCopy::notificationTitle) +
                               "> <--body> <" + std::string(HiddenItemCopy::notificationBody) + ">";

/// A shell script that the app finds before any other program of that name. Its path.
std::string writeProgram(Desktop& desktop, const std::string& name, const std::string& lines) {
    const std::string program = desktop.home.write("bin/" + name, "#!/bin/sh\n" + lines);
    EXPECT_EQ(::chmod(program.c_str(), 0755), 0);
    desktop.home.environment["PATH"] = (desktop.home / "bin") + ":" + desktop.home.environment["PATH"];
    return program;
}

} // namespace

TEST(DesktopApp, aClickOnASessionBringsItsTerminalForwardAndRefreshes) {
    Desktop desktop;
    desktop.home.environment["OSTREL_DEMO_POLL_MS"] = "3600000"; // no poll is taken for the refresh
    desktop.home.writeStatus(oneSession);
    // The start and the opening of the menu are over when the commands run: who reads the file after that refreshes.
    const std::string file = desktop.home.statusFile();
    const std::string cmux = writeProgram(desktop, "cmux",
                                          "touch -m '" + file + "'; touch -a -t 200001010000 '" + file + "'\nexec '" +
                                              std::string(DEMO_TOOLS) + "/cmux' \"$@\"\n");
    const ReadMark mark(file);
    if (!mark.isKept()) {
        GTEST_SKIP() << ReadMark::whyNot;
    }
    desktop.start();
    desktop.clickTheFirstEnabledRow();
    ASSERT_TRUE(desktop.waitForCalls(2));
    EXPECT_TRUE(eventually([&] { return mark.wasRead(); }));
    EXPECT_EQ(desktop.calls(), focusCalls);
    EXPECT_THAT(desktop.stop(), HasSubstr("ostrel-menubar: ok: " + cmux + " select-workspace --workspace w 1\n"));
}

TEST(DesktopApp, aSessionIsChosenWithTheKeyboardToo) {
    Desktop desktop;
    desktop.home.writeStatus(oneSession);
    desktop.start();
    desktop.choose("Down", 1);
    EXPECT_TRUE(desktop.waitForCalls(2));
    EXPECT_EQ(desktop.calls(), focusCalls);
}

TEST(DesktopApp, withoutCmuxAClickSaysSo) {
    Desktop desktop;
    desktop.home.environment["PATH"] = "/no/such";
    desktop.home.writeStatus(oneSession);
    desktop.start();
    desktop.choose("Down", 1);
    EXPECT_THAT(desktop.stop(), HasSubstr("\nostrel-menubar: cmux not found in [] or PATH\n"));
    EXPECT_THAT(desktop.calls(), IsEmpty());
}

TEST(DesktopApp, aCommandThatNeverEndsHoldsNeitherTheMenuNorTheEnd) {
    Desktop desktop;
    (void)writeProgram(desktop, "cmux",
                       "echo $$ > '" + (desktop.home / "id.part") + "'\nmv '" + (desktop.home / "id.part") + "' '" +
                           (desktop.home / "id") + "'\nexec sleep 100\n");
    desktop.home.writeStatus(oneSession);
    desktop.start();
    desktop.choose("Down", 1);
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(desktop.home / "id"); }));
    pid_t command = 0;
    std::ifstream(desktop.home / "id") >> command;
    ASSERT_GT(command, 1);
    desktop.choose("Up", 1); // "Quit"
    desktop.waitForEnd();
    EXPECT_EQ(::kill(command, SIGKILL), 0) << "it is the person's, and is left alone";
}

TEST(DesktopApp, worksWithoutItsStandardDescriptors) {
    for (const std::string redirections : {"2>&-", "<&- >&- 2>&-"}) {
        Desktop desktop;
        desktop.home.writeStatus(oneSession);
        desktop.start(redirections);
        desktop.choose("Down", 1);
        EXPECT_TRUE(desktop.waitForCalls(2)) << redirections;
        EXPECT_EQ(desktop.calls(), focusCalls);
        EXPECT_EQ(desktop.stop(), "");
    }
}

TEST(DesktopApp, worksWhenNobodyReadsItsDiagnosticLines) {
    Desktop desktop;
    desktop.home.writeStatus(oneSession);
    desktop.start("2>&1", ChildProcess::Output::closedPipe);
    desktop.choose("Down", 1);
    EXPECT_TRUE(desktop.waitForCalls(2));
    EXPECT_EQ(desktop.stop(), "");
}

TEST(DesktopApp, aHiddenItemIsAnnouncedExactlyOnceInEachSpell) {
    Desktop desktop;
    desktop.home.writeStatus("{}");
    const ReadMark polls(desktop.home.statusFile());
    if (!polls.isKept()) {
        GTEST_SKIP() << ReadMark::whyNot;
    }
    desktop.start();
    ASSERT_TRUE(polls.waitForReads(2)); // it has its width
    const auto place = desktop.strip();
    ASSERT_TRUE(place);
    for (std::size_t spell = 1; spell <= 2; ++spell) {
        desktop.move(*place, 5000, 0);
        ASSERT_TRUE(desktop.waitForCalls(spell));
        ASSERT_TRUE(polls.waitForReads(3)); // which find it hidden
        EXPECT_EQ(desktop.calls(), std::vector<std::string>(spell, notifyCall));
        desktop.move(*place, place->x, place->y);
        ASSERT_TRUE(eventually([&] { return desktop.strip()->x == place->x; }));
        ASSERT_TRUE(polls.waitForReads(3)); // which find it back
    }
    const std::string lines = desktop.stop();
    EXPECT_EQ(desktop.calls().size(), 2U);
    EXPECT_THAT(lines, HasSubstr("; window x=5000 width="));
    EXPECT_THAT(lines, HasSubstr("\nostrel-menubar: status item is visible again\n"));
}

TEST(DesktopApp, aClockThatIsSetBackHoldsUpNoPoll) {
    Desktop desktop;
    const std::string clock = desktop.home.write("clock", "0      ");
    desktop.home.environment["OSTREL_DEMO_CLOCK"] = clock;
    desktop.home.environment["LD_PRELOAD"] = std::string(DEMO_TOOLS) + "/clock.so";
    desktop.home.writeStatus(R"({"at":"2025-03-04T10:15:30Z"})");
    const ReadMark polls(desktop.home.statusFile());
    if (!polls.isKept()) {
        GTEST_SKIP() << ReadMark::whyNot;
    }
    desktop.start();
    ASSERT_TRUE(polls.waitForReads(3));
    std::fstream(clock, std::ios::in | std::ios::out) << "-360000";
    EXPECT_TRUE(polls.waitForReads(10));
}

TEST(DesktopApp, withoutCmuxTheScriptRunnerAnnouncesIt) {
    Desktop desktop;
    desktop.home.environment["PATH"] = "/no/such";
    desktop.start();
    const auto place = desktop.strip();
    ASSERT_TRUE(place);
    desktop.move(*place, 5000, 0);
    ASSERT_TRUE(desktop.waitForCalls(1));
    EXPECT_THAT(desktop.calls(),
                ElementsAre("osascript <-e> <on run argv> <-e> <display notification (item 2 of argv) with title (item "
                            "1 of argv)> <-e> <end run> <" +
                            std::string(HiddenItemCopy::notificationTitle) + "> <" +
                            std::string(HiddenItemCopy::notificationBody) + ">"));
}

TEST(DesktopApp, startsTheDaemonAndStopsIt) {
    Desktop desktop;
    desktop.home.write("Library/LaunchAgents/" + std::string(LaunchAgentLabel) + ".plist",
                       testing_support::launchAgentPlist({DEMO_PROGRAM, "watch", "--interval-ms", "600000"}));
    const std::string domain = "gui/" + std::to_string(::getuid());
    const std::string service = "<" + domain + "/" + std::string(LaunchAgentLabel) + ">";
    const auto shows = [&](const std::string& text) {
        return eventually([&] {
            return ScratchHome::run(desktop.home.menubarctl({"status"})).output.find(text) != std::string::npos;
        });
    };
    desktop.start();
    // Enabled without a daemon: "Refresh", "Settings...", "Icon only", "Start daemon", "Quit".
    desktop.choose("Down", 4);
    EXPECT_TRUE(shows("Daemon running"));
    EXPECT_THAT(desktop.calls(), ElementsAre("launchctl <kickstart> <-k> " + service,
                                             "launchctl <bootstrap> <" + domain + "> <" + desktop.home.path() +
                                                 "/Library/LaunchAgents/" + std::string(LaunchAgentLabel) + ".plist>"));
    // From below: "Quit", "Open status file", "Stop daemon".
    desktop.choose("Up", 3);
    ASSERT_TRUE(desktop.waitForCalls(3));
    EXPECT_EQ(desktop.calls().back(), "launchctl <bootout> " + service);
    EXPECT_TRUE(shows("Daemon stopped"));
}

TEST(DesktopApp, quitEndsIt) {
    Desktop desktop;
    desktop.start();
    desktop.choose("Up", 1);
    desktop.waitForEnd();
    EXPECT_THAT(desktop.calls(), IsEmpty());
}
