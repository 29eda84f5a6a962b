// The command line drives outside programs: stand-ins that record every call.

#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/JSON/JSONValue.h"

#include "tests/e2e/Eventually.h"
#include "tests/e2e/ScratchHome.h"
#include "tests/support/PropertyLists.h"

#include <filesystem>
#include <fstream>
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

    /// The recorded calls as they were written.
    [[nodiscard]] std::vector<std::string> calls() const {
        std::vector<std::string> lines;
        std::ifstream in(home / "record");
        for (std::string line; std::getline(in, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    ScratchHome home;
};

} // namespace

TEST_F(CommandsTest, focusBringsTheSessionsTerminalForward) {
    home.writeStatus(sessions);
    const auto result = run({"focus", "api"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_THAT(
        calls(),
        ElementsAre(R"({"arguments":["select-workspace","--workspace","w 1"],"quiet":"1","tool":"cmux"})",
                    R"({"arguments":["focus-panel","--panel","p\"1","--workspace","w 1"],"quiet":"1","tool":"cmux"})"));
}

TEST_F(CommandsTest, focusComplainsWhenThereIsNotOneTerminalToBringForward) {
    EXPECT_EQ(complaintOf({"focus", "api"}),
              "ostrel-menubarctl: there is no status file at " + home.statusFile() + "\n");
    home.writeStatus("{");
    EXPECT_THAT(complaintOf({"focus", "api"}), testing::StartsWith("ostrel-menubarctl: "));
    home.writeStatus(sessions);
    EXPECT_EQ(complaintOf({"focus", "mars"}), "ostrel-menubarctl: no session is called \"mars\"\n");
    EXPECT_EQ(complaintOf({"focus", "web"}),
              "ostrel-menubarctl: several sessions are called \"web\": web (id-2), web (id-5)\n");
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
    const auto call = [](const std::string& words) {
        return R"({"arguments":[)" + words + R"(],"quiet":null,"tool":"launchctl"})";
    };
    std::vector<std::string> normalized;
    for (std::string line : calls()) {
        for (std::size_t at = 0; (at = line.find("\\/")) != std::string::npos;) {
            line.erase(at, 1); // JSON may escape a slash, and ours does
        }
        normalized.push_back(line);
    }
    const std::string kickstart = call(R"("kickstart","-k",")" + domain + R"(/dev.ostrel.daemon")");
    EXPECT_THAT(normalized, ElementsAre(kickstart,
                                        call(R"("bootstrap",")" + domain + R"(",")" + home.path() +
                                             R"(/Library/LaunchAgents/dev.ostrel.daemon.plist")"),
                                        kickstart, call(R"("bootout",")" + domain + R"(/dev.ostrel.daemon")")));
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

TEST_F(CommandsTest, focusTakesTheBeginningOfANameTheNumberAndTheFirstThatWaits) {
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","sessions":[
        {"sessionId":"id-1","dirName":"api","workspaceId":"w1","contextPct":5},
        {"sessionId":"id-2","dirName":"web","workspaceId":"w2","contextPct":90},
        {"sessionId":"id-3","dirName":"docs","workspaceId":"w3","contextPct":50}]})");
    EXPECT_EQ(run({"focus", "ap"}).errors, "");
    EXPECT_EQ(run({"focus", "1"}).errors, ""); // the fullest is the first of the menu
    EXPECT_EQ(complaintOf({"focus", "id"}),
              "ostrel-menubarctl: several sessions begin with \"id\": web (id-2), docs (id-3), api (id-1)\n");
    EXPECT_EQ(complaintOf({"focus", "--waiting"}), "ostrel-menubarctl: no session needs input\n");
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","sessions":[
        {"dirName":"api","workspaceId":"w1","lifecycle":"needsInput"},{"dirName":"web","workspaceId":"w2"}]})");
    EXPECT_EQ(run({"focus", "--waiting"}).errors, "");
    const auto selects = [](const std::string& workspace) {
        return R"({"arguments":["select-workspace","--workspace",")" + workspace + R"("],"quiet":"1","tool":"cmux"})";
    };
    EXPECT_THAT(calls(), ElementsAre(selects("w1"), selects("w2"), selects("w1")));
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
}

TEST_F(CommandsTest, theRealCommandLineCannotBeToldOfAnotherLaunchctl) {
    if (std::filesystem::exists(SystemTools{}.launchctl)) {
        GTEST_SKIP() << "this machine has launchctl";
    }
    EXPECT_EQ(ScratchHome::run(home.menubarctl({"daemon", "start"})).status, 1);
    EXPECT_THAT(calls(), IsEmpty());
}
