#include "MenubarApp/Commands/LaunchAgent.h"

#include "tests/support/ChildRuns.h"
#include "tests/support/PropertyLists.h"
#include "tests/support/StandIns.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::testing_support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A machine whose launch agent's program waits to be ended. Nothing is loaded at first.
struct LaunchAgentTest : testing::Test {
    LaunchAgentTest() {
        std::filesystem::create_directories(standIns.home / "Library/LaunchAgents");
        standIns.home.write("Library/LaunchAgents/dev.ostrel.daemon.plist",
                            launchAgentPlist({testChild, "sleep", "60000"}));
    }

    ~LaunchAgentTest() override {
        if (agent() > 0) {
            LaunchAgent::stopSync(standIns.context);
        }
    }

    LaunchAgentTest(const LaunchAgentTest&) = delete;
    LaunchAgentTest& operator=(const LaunchAgentTest&) = delete;

    void start() {
        LaunchAgent::start(standIns.mainLoop, standIns.context, [this] { ++completions; });
        EXPECT_EQ(completions, 0);
        standIns.mainLoop.drain();
        EXPECT_EQ(std::exchange(completions, 0), 1);
    }

    void stop() {
        LaunchAgent::stop(standIns.mainLoop, standIns.context, [this] { ++completions; });
        EXPECT_EQ(completions, 0);
        standIns.mainLoop.drain();
        EXPECT_EQ(std::exchange(completions, 0), 1);
    }

    /// The process of the running agent, 0 for none.
    [[nodiscard]] pid_t agent() const {
        pid_t process = 0;
        std::ifstream(standIns.home / "launchd/dev.ostrel.daemon.pid") >> process;
        return process;
    }

    StandIns standIns;
    int completions = 0;

    const std::string domain = "gui/" + std::to_string(::getuid());
    const std::string kickstart = "launchctl <kickstart> <-k> <" + domain + "/dev.ostrel.daemon>";
    const std::string bootstrap = "launchctl <bootstrap> <" + domain + "> <" + standIns.home.path() +
                                  "/Library/LaunchAgents/dev.ostrel.daemon.plist>";
    const std::string bootout = "launchctl <bootout> <" + domain + "/dev.ostrel.daemon>";
};

} // namespace

TEST_F(LaunchAgentTest, startLoadsAnAgentThatIsNotLoaded) {
    start();
    EXPECT_THAT(standIns.calls(), ElementsAre(kickstart, bootstrap));
    EXPECT_GT(agent(), 0);
}

TEST_F(LaunchAgentTest, startOfALoadedAgentIsOneCallThatRestartsIt) {
    start();
    const pid_t before = agent();
    start();
    EXPECT_THAT(standIns.calls(), ElementsAre(kickstart, bootstrap, kickstart));
    EXPECT_GT(agent(), 0);
    EXPECT_NE(agent(), before);
    EXPECT_EQ(::kill(before, 0), -1);
    EXPECT_EQ(errno, ESRCH);
}

TEST_F(LaunchAgentTest, stopUnloadsTheAgent) {
    start();
    const pid_t running = agent();
    stop();
    EXPECT_THAT(standIns.calls(), ElementsAre(kickstart, bootstrap, bootout));
    EXPECT_EQ(agent(), 0);
    EXPECT_EQ(::kill(running, 0), -1);
    start();
    EXPECT_THAT(standIns.calls(), ElementsAre(kickstart, bootstrap, bootout, kickstart, bootstrap));
}

TEST_F(LaunchAgentTest, stopOfAnAgentThatIsNotLoadedCompletesAllTheSame) {
    stop();
    EXPECT_THAT(standIns.calls(), ElementsAre(bootout));
    EXPECT_THAT(standIns.lines, ElementsAre("exit 3: " + standIns.context.tools.launchctl + " bootout " + domain +
                                            "/dev.ostrel.daemon -- launchctl: Boot-out failed: 3: No such process"));
}

TEST_F(LaunchAgentTest, startCompletesThoughNothingCouldBeStarted) {
    std::filesystem::remove_all(standIns.home / "Library");
    start();
    EXPECT_THAT(standIns.calls(), ElementsAre(kickstart, bootstrap));
    EXPECT_EQ(agent(), 0);
}

TEST_F(LaunchAgentTest, startTriesToLoadWhenLaunchctlIsNotThereEither) {
    standIns.context.tools.launchctl = "/no/such/launchctl";
    start();
    stop();
    const std::string line = "failed to launch /no/such/launchctl: " + reason(ENOENT);
    EXPECT_THAT(standIns.lines, ElementsAre(line, line, line));
}

TEST_F(LaunchAgentTest, theHomeDirectoryIsJoinedAsItStands) {
    standIns.context.home += '/';
    (void)LaunchAgent::startSync(standIns.context);
    EXPECT_EQ(standIns.calls().at(1), "launchctl <bootstrap> <" + domain + "> <" + standIns.home.path() +
                                          "//Library/LaunchAgents/dev.ostrel.daemon.plist>");
}

TEST_F(LaunchAgentTest, theUserIdIsWrittenInDecimal) {
    standIns.context.uid = 4294967294U;
    (void)LaunchAgent::stopSync(standIns.context);
    EXPECT_THAT(standIns.calls(), ElementsAre("launchctl <bootout> <gui/4294967294/dev.ostrel.daemon>"));
}

TEST_F(LaunchAgentTest, theSynchronousFormsGiveTheLastCommandsResult) {
    EXPECT_EQ(LaunchAgent::stopSync(standIns.context).status, 3);
    EXPECT_EQ(LaunchAgent::startSync(standIns.context).status, 0);
    EXPECT_EQ(LaunchAgent::stopSync(standIns.context).status, 0);
    std::filesystem::remove_all(standIns.home / "Library");
    EXPECT_EQ(LaunchAgent::startSync(standIns.context).status, 5);
}
