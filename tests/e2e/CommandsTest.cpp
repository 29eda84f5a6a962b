// The command line drives outside programs: stand-ins that record every call.

#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"

#include "tests/e2e/Eventually.h"
#include "tests/e2e/ScratchHome.h"
#include "tests/support/PropertyLists.h"
#include "tests/support/RecordedCalls.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace menubar;
using menubar::e2e::eventually;
using menubar::e2e::ScratchHome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char* const sessions = R"({"at":"2025-03-04T10:15:30Z","sessions":[
    {"sessionId":"id-1","shortId":"s1","dirName":"api","workspaceId":"w 1","surfaceId":"p\"1"},
    {"sessionId":"id-2","shortId":"s2","dirName":"web","workspaceId":"w2"},
    {"sessionId":"id-3","shortId":"s3","dirName":"docs"},
    {"sessionId":"id-4","shortId":"s4","dirName":"infra","workspaceId":""},
    {"sessionId":"id-5","shortId":"s5","dirName":"web","workspaceId":"w5"}]})";

class CommandsTest : public testing::Test {
protected:
    CommandsTest() {
        home.environment["PATH"] = DEMO_TOOLS;
        home.environment["OSTREL_DEMO_RECORD"] = home / "record";
        home.environment["OSTREL_DEMO_LAUNCHD"] = home / "launchd";
    }

    [[nodiscard]] ScratchHome::Result run(std::vector<std::string> arguments) const {
        auto options = home.menubarctl(std::move(arguments));
        options.program = DEMO_MENUBARCTL_PROGRAM;
        return ScratchHome::run(options);
    }

    /// What a command that must fail with status 1 complains of.
    [[nodiscard]] std::string complaintOf(std::vector<std::string> arguments) const {
        const auto result = run(std::move(arguments));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        return result.errors;
    }

    [[nodiscard]] std::vector<std::string> calls() const { return testing_support::recordedCalls(home / "record"); }

    ScratchHome home;
};

} // namespace

TEST_F(CommandsTest, focusBringsTheSessionsTerminalForward) {
    home.writeStatus(sessions);
    const auto result = run({"focus", "api"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_THAT(calls(), ElementsAre("quiet cmux <select-workspace> <--workspace> <w 1>",
                                     R"(quiet cmux <focus-panel> <--panel> <p"1> <--workspace> <w 1>)"));
}

TEST_F(CommandsTest, focusComplainsWhenThereIsNotOneTerminalToBringForward) {
    EXPECT_EQ(complaintOf({"focus", "api"}),
              "ostrel-menubarctl: there is no status file at " + home.statusFile() + "\n");
    home.writeStatus(sessions);
    EXPECT_EQ(complaintOf({"focus", "mars"}), "ostrel-menubarctl: no session is called \"mars\"\n");
    EXPECT_EQ(complaintOf({"focus", "docs"}), "ostrel-menubarctl: the session \"docs\" is in no cmux workspace\n");
    EXPECT_EQ(complaintOf({"focus", "s4"}), "ostrel-menubarctl: the session \"infra\" is in no cmux workspace\n");
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(CommandsTest, focusComplainsWithoutCmuxAndWhenItFails) {
    home.writeStatus(sessions);
    home.environment["OSTREL_DEMO_FAIL"] = "select-workspace";
    EXPECT_EQ(complaintOf({"focus", "api"}), "ostrel-menubarctl: cmux failed with status 1: cmux: told to fail\n");
    home.environment["PATH"] = "/no/such";
    EXPECT_EQ(complaintOf({"focus", "api"}), "ostrel-menubarctl: cmux not found in [] or PATH\n");
}

TEST_F(CommandsTest, whatWasRunShowsOnlyWhenAskedFor) {
    home.writeStatus(sessions);
    EXPECT_EQ(run({"focus", "s2", "--verbose"}).errors, "ostrel-menubar: watching " + home.statusFile() +
                                                            "\nostrel-menubar: ok: " + std::string(DEMO_TOOLS) +
                                                            "/cmux select-workspace --workspace w2\n");
}

TEST_F(CommandsTest, focusReadsTheStatusFileThatItIsTold) {
    const std::string path = home.write("elsewhere.json", sessions);
    EXPECT_EQ(run({"focus", "api", "--status-file", path}).status, 0);
    EXPECT_EQ(calls().size(), 2U);
}

TEST_F(CommandsTest, theDaemonIsStartedRestartedAndStopped) {
    home.write("Library/LaunchAgents/" + std::string(LaunchAgentLabel) + ".plist",
               testing_support::launchAgentPlist({DEMO_PROGRAM, "watch", "--interval-ms", "600000"}));
    EXPECT_EQ(run({"daemon", "start"}).errors, "");
    const auto shows = [&](const std::string& text) {
        return eventually([&] { return run({"status"}).output.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(shows("Daemon running"));
    EXPECT_EQ(run({"daemon", "restart"}).status, 0);
    EXPECT_TRUE(shows("Daemon running"));
    EXPECT_EQ(run({"daemon", "stop"}).status, 0);
    EXPECT_TRUE(shows("Daemon stopped"));

    const std::string domain = "gui/" + std::to_string(::getuid());
    const std::string kickstart = "launchctl <kickstart> <-k> <" + domain + "/dev.ostrel.daemon>";
    EXPECT_THAT(calls(), ElementsAre(kickstart,
                                     "launchctl <bootstrap> <" + domain + "> <" + home.path() +
                                         "/Library/LaunchAgents/dev.ostrel.daemon.plist>",
                                     kickstart, "launchctl <bootout> <" + domain + "/dev.ostrel.daemon>"));
}

TEST_F(CommandsTest, aDaemonThatCannotBeControlledIsAFailure) {
    EXPECT_EQ(complaintOf({"daemon", "start"}),
              "ostrel-menubarctl: the daemon is not installed (run: ostrel install)\n");
    home.write("Library/LaunchAgents/" + std::string(LaunchAgentLabel) + ".plist", "no property list");
    EXPECT_THAT(complaintOf({"daemon", "restart"}), HasSubstr("launchctl failed with status 5: "));
}

TEST_F(CommandsTest, stoppingADaemonThatDoesNotRunSaysSo) {
    const auto result = run({"daemon", "stop"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "the daemon does not run\n");
    EXPECT_EQ(result.errors, "");
    home.writeStatus(sessions);
    EXPECT_EQ(complaintOf({"daemon", "stop", "--now", "2025-03-04T10:15:33Z"}),
              "ostrel-menubarctl: the daemon runs, but its launch agent is not loaded: end it where it was started\n");
}

TEST_F(CommandsTest, theDaemonsStatusIsOneLineAndAnExitStatus) {
    const auto missing = home.atFixedTime({"daemon", "status"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.output, "Daemon not running\n");
    home.writeStatus(sessions);
    const auto running = home.atFixedTime({"daemon", "status"});
    EXPECT_EQ(running.status, 0);
    EXPECT_EQ(running.output, "Daemon running (last poll 3s ago)\n");
}

TEST_F(CommandsTest, focusTakesTheNumberAndTheFirstThatWaits) {
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","sessions":[
        {"sessionId":"id-1","dirName":"api","workspaceId":"w1","contextPct":5,"lifecycle":"needsInput"},
        {"sessionId":"id-2","dirName":"web","workspaceId":"w2","contextPct":90}]})");
    EXPECT_EQ(run({"focus", "1"}).errors, ""); // the fullest is the first of the menu
    EXPECT_EQ(run({"focus", "--waiting"}).errors, "");
    EXPECT_THAT(calls(), ElementsAre("quiet cmux <select-workspace> <--workspace> <w2>",
                                     "quiet cmux <select-workspace> <--workspace> <w1>"));
}

TEST_F(CommandsTest, aMachineWithoutLaunchctlSaysSo) {
    const std::string launchctl = SystemTools{}.launchctl;
    if (std::filesystem::exists(launchctl)) {
        GTEST_SKIP() << "this machine has launchctl";
    }
    for (const char* verb : {"start", "stop", "restart"}) {
        const auto result = ScratchHome::run(home.menubarctl({"daemon", verb}));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors,
                  "ostrel-menubarctl: this machine has no /bin/launchctl, which the daemon is controlled with\n");
    }
    EXPECT_THAT(calls(), IsEmpty()) << "nobody can tell it of another launchctl";
}
