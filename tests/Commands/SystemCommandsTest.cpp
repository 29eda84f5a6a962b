#include "MenubarApp/Commands/SystemCommands.h"

#include "MenubarApp/Platform/ProcessEnvironment.h"

#include "tests/support/StandIns.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace menubar;
using namespace menubar::testing_support;
using testing::ElementsAre;

TEST(SystemCommands, drivesTheProgramThatEachCallIsFor) {
    StandIns standIns;
    SystemCommands commands(standIns.mainLoop, standIns.context);
    int completions = 0;
    const auto completion = [&] { ++completions; };
    commands.focus("w", "s", completion);
    commands.notify("title", "body", completion);
    commands.notify("title", "body", nullptr);
    commands.stopDaemon(completion);
    commands.startDaemon(completion);
    EXPECT_EQ(completions, 0);
    standIns.mainLoop.drain();
    EXPECT_EQ(completions, 4);

    const std::string domain = "gui/" + std::to_string(::getuid());
    EXPECT_THAT(standIns.calls(), ElementsAre("quiet cmux <select-workspace> <--workspace> <w>",
                                              "quiet cmux <focus-panel> <--panel> <s> <--workspace> <w>",
                                              "quiet cmux <notify> <--title> <title> <--body> <body>",
                                              "quiet cmux <notify> <--title> <title> <--body> <body>",
                                              "launchctl <bootout> <" + domain + "/dev.ostrel.daemon>",
                                              "launchctl <kickstart> <-k> <" + domain + "/dev.ostrel.daemon>",
                                              "launchctl <bootstrap> <" + domain + "> <" + standIns.home.path() +
                                                  "/Library/LaunchAgents/dev.ostrel.daemon.plist>"));
}

TEST(SystemCommands, theSystemsToolsAreConstants) {
    const ScopedVariable path("PATH", "/only/here");
    const CommandContext context = CommandContext::ofThisProcess();
    EXPECT_EQ(context.tools.launchctl, "/bin/launchctl");
    EXPECT_EQ(context.tools.osascript, "/usr/bin/osascript");
    EXPECT_THAT(context.tools.cmux, ElementsAre("/opt/homebrew/bin/cmux", "/usr/local/bin/cmux"));
}

TEST(SystemCommands, theContextIsThisProcess) {
    const ScopedVariable path("PATH", "/only/here");
    const ScopedVariable home("HOME", "/home/ann");
    const CommandContext context = CommandContext::ofThisProcess();
    EXPECT_EQ(context.environment, processEnvironment());
    EXPECT_EQ(context.environment.at("PATH"), "/only/here");
    EXPECT_EQ(context.home, "/home/ann");
    EXPECT_EQ(context.uid, ::getuid());
}
