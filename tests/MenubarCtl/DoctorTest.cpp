#include "MenubarCtl/Doctor.h"

#include "MenubarCore/Status/StatusFileLocator.h"
#include "MenubarCtl/JSONOutput.h"

#include "tests/MenubarCtl/Scene.h"
#include "tests/support/PropertyLists.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string statusPath = "/home/.local/state/ostrel/status.json";
const std::string plistPath = "/home/Library/LaunchAgents/dev.ostrel.daemon.plist";
const std::string configPath = "/home/.config/ostrel/config.json";
const std::string schema =
    R"({"x-groups":[{"id":"g","settings":[{"name":"a","control":"number","max":9},{"name":"b","control":"text"}]}]})";

Answer made(std::int32_t status, std::string output, std::string errors = {}) {
    Answer answer;
    answer.result = {.status = status, .stdout_ = std::move(output), .stderr_ = std::move(errors)};
    answer.took = 12ms;
    return answer;
}

Answer none(std::chrono::milliseconds limit) {
    Answer made;
    made.isOverdue = true;
    made.took = limit;
    return made;
}

/// A machine where everything is right, until a test breaks something.
class DoctorTest : public testing::Test {
protected:
    DoctorTest() {
        files.files[statusPath] = R"({"at":"2025-03-04T10:15:30Z","daemonPid":77,
            "sessions":[{"dirName":"api","workspaceId":"w"}]})";
        files.files[plistPath] = testing_support::launchAgentPlist({"/bin/ostrel", "watch"});
        files.files[configPath] = R"({"a":5})";
        files.files["/home/Library/Logs/ostrel"] = "";
        folders = {"/home/.config/ostrel"};
        answers["/bin/ostrel config schema"] = made(0, schema);
        answers["/bin/ostrel config validate " + configPath + " --json"] = made(0, R"({"ok":true})");
        answers["/bin/launchctl print gui/501/dev.ostrel.daemon"] = {};
    }

    [[nodiscard]] std::vector<Check> examine() const {
        DoctorWorld world{.environment = environment,
                          .home = "/home",
                          .paths = StatusPaths::under("/home", StatusFileLocator::path(environment, "/home")),
                          .uid = 501,
                          .now = parseTimestamp("2025-03-04T10:15:33Z").value(),
                          .version = "1.2.3"};
        world.files = &files;
        world.isExecutable = [this](const std::string& path) { return programs.contains(path); };
        world.lookAt = [this](const std::string& path) {
            FileFacts facts;
            facts.kind = folders.contains(path)       ? FileFacts::Kind::folder
                         : files.files.contains(path) ? FileFacts::Kind::file
                                                      : FileFacts::Kind::missing;
            facts.isWritable = !readOnly.contains(path);
            if (const auto link = links.find(path); link != links.end()) {
                facts.linkTarget = link->second;
            }
            return facts;
        };
        world.isProcessAlive = [this](std::int64_t process) { return process == alive; };
        world.run = [this](const std::string& executable, const std::vector<std::string>& arguments,
                           std::chrono::milliseconds) {
            std::string line = executable;
            for (const std::string& argument : arguments) {
                line += " " + argument;
            }
            const auto found = answers.find(line);
            return found == answers.end() ? made(1, "") : found->second;
        };
        if (apps) {
            world.runningApps = [this] { return *apps; };
            world.loginItem = [this] { return loginItem; };
        }
        return Doctor(std::move(world)).runAll();
    }

    /// The checks of that name as lines.
    [[nodiscard]] std::vector<std::string> lines(const std::string& name) const {
        std::vector<std::string> result;
        for (const Check& check : examine()) {
            EXPECT_EQ(check.verdict == Verdict::ok, !check.fix) << check.found;
            if (check.name == name) {
                std::string line = doctorText({check}, Styling::plain);
                line.pop_back();
                result.push_back(line.substr(0, line.find_first_of(" ")) + line.substr(7 + name.size()));
            }
        }
        return result;
    }

    Environment environment{{"PATH", "/usr/bin"}};
    recording::FakeFileManager files;
    std::set<std::string> programs{"/bin/ostrel", "/bin/launchctl", "/usr/bin/cmux"};
    std::set<std::string> folders;
    std::set<std::string> readOnly;
    std::map<std::string, std::string> links;
    std::map<std::string, Answer> answers;
    std::int64_t alive = 77;
    std::optional<std::vector<RunningApp>> apps;
    std::expected<LoginItemState, std::string> loginItem = LoginItemState::on;
};

} // namespace

TEST_F(DoctorTest, whereAllIsRightEveryCheckIsOk) {
    apps = {RunningApp{.path = "/Applications/ostrel-menubar.app/Contents/MacOS/ostrel-menubar", .version = "1.2.3"}};
    EXPECT_EQ(doctorText(examine(), Styling::plain),
              "ok     status file: /home/.local/state/ostrel/status.json (the default), 1 session\n"
              "ok     daemon: Daemon running (last poll 3s ago), process 77\n"
              "ok     variables: the app has those of this shell\n"
              "ok     launch agent: /home/Library/LaunchAgents/dev.ostrel.daemon.plist starts /bin/ostrel, loaded\n"
              "ok     command line: /bin/ostrel (the launch agent's)\n"
              "ok     settings schema: /bin/ostrel config schema names 2 settings, in 12 ms\n"
              "ok     config file: /home/.config/ostrel/config.json (the default)\n"
              "ok     config check: the daemon accepts the config file\n"
              "ok     running settings: the daemon runs with what the config file says\n"
              "ok     cmux: /usr/bin/cmux\n"
              "ok     notifications: through /usr/bin/cmux\n"
              "ok     logs: /home/Library/Logs/ostrel\n"
              "ok     app: /Applications/ostrel-menubar.app/Contents/MacOS/ostrel-menubar, version 1.2.3\n"
              "ok     login item: the app starts at login\n"
              "ok     icon only: off (built in)\n");
}

TEST_F(DoctorTest, theStatusFileIsToldWithItsPathAndWhyThatOne) {
    environment["OSTREL_STATUS_FILE"] = "/else.json";
    EXPECT_THAT(lines("status file"),
                ElementsAre("wrong: /else.json (OSTREL_STATUS_FILE) is not there → start the daemon (ostrel-menubarctl "
                            "daemon start), or set OSTREL_STATUS_FILE to the file that it writes"));
    files.files["/else.json"] = "[]";
    EXPECT_THAT(lines("status file"), ElementsAre(StartsWith("wrong: /else.json (OSTREL_STATUS_FILE): ")));
    EXPECT_THAT(lines("daemon"), ElementsAre(StartsWith("note: not known")));
}

TEST_F(DoctorTest, aDaemonWhoseProcessIsGoneIsNoticed) {
    alive = 0;
    EXPECT_THAT(lines("daemon"),
                ElementsAre(StartsWith("note: Daemon running (last poll 3s ago), process 77, which is gone")));
    files.files[statusPath] = R"({"at":"2025-03-04T09:15:30Z","daemonPid":77})";
    EXPECT_THAT(lines("daemon"),
                ElementsAre(AllOf(StartsWith("wrong: Daemon not responding"), HasSubstr("which is gone → start it"))));
    alive = 77;
    EXPECT_THAT(lines("daemon"),
                ElementsAre(AllOf(StartsWith("wrong: Daemon not responding"), HasSubstr("→ restart it"))));
    files.files[statusPath] = R"({"stoppedAt":"2025-03-04T10:15:30Z"})";
    EXPECT_THAT(lines("daemon"), ElementsAre(StartsWith("wrong: Daemon stopped at 10:15 → start it")));
}

TEST_F(DoctorTest, variablesThatTheLoginSessionLacksAreNamed) {
    environment["OSTREL_CONFIG_FILE"] = "/c.json";
    answers["/bin/launchctl getenv OSTREL_CLI"] = made(0, "/old");
    EXPECT_THAT(lines("variables"),
                ElementsAre("note: OSTREL_CONFIG_FILE is /c.json here and not set for the app → launchctl setenv "
                            "OSTREL_CONFIG_FILE /c.json, then quit the app and open it again",
                            "note: OSTREL_CLI is not set here and /old for the app → launchctl unsetenv OSTREL_CLI, "
                            "then quit the app and open it again"));
    answers["/bin/launchctl getenv OSTREL_STATUS_FILE"] = none(1s);
    EXPECT_THAT(lines("variables"), ElementsAre(StartsWith("wrong: launchctl: it did not answer within 1 s")));
    programs.erase("/bin/launchctl");
    EXPECT_THAT(lines("variables"), IsEmpty());
}

TEST_F(DoctorTest, theLaunchAgentHasToBeThereReadableAndLoaded) {
    answers["/bin/launchctl print gui/501/dev.ostrel.daemon"] = made(113, "");
    EXPECT_THAT(lines("launch agent"), ElementsAre(HasSubstr("is not loaded → start the daemon")));
    answers["/bin/launchctl print gui/501/dev.ostrel.daemon"] = none(1s);
    EXPECT_THAT(lines("launch agent"), ElementsAre(HasSubstr("did not answer")));
    programs.erase("/bin/ostrel");
    EXPECT_THAT(lines("launch agent"), ElementsAre(HasSubstr("starts /bin/ostrel, which is no program")));
    files.files[plistPath] = "x";
    EXPECT_THAT(lines("launch agent"), ElementsAre(StartsWith("wrong: " + plistPath + ": ")));
    files.files.erase(plistPath);
    EXPECT_THAT(lines("launch agent"),
                ElementsAre(StartsWith("note: " + plistPath + " is not there, yet the daemon runs")));
    files.files.erase(statusPath);
    EXPECT_THAT(lines("launch agent"), ElementsAre(StartsWith("wrong: " + plistPath + " is not there →")));
}

TEST_F(DoctorTest, theCommandLineIsToldWithItsOriginAndWhatWasPassedOver) {
    environment["OSTREL_CLI"] = "/nowhere";
    EXPECT_THAT(lines("command line"),
                ElementsAre(StartsWith("note: OSTREL_CLI is /nowhere, which is no program, and is passed over"),
                            "ok: /bin/ostrel (the launch agent's)"));
    programs.insert("/nowhere");
    EXPECT_THAT(lines("command line"), ElementsAre("ok: /nowhere (OSTREL_CLI)"));
    environment.erase("OSTREL_CLI");
    files.files.erase(plistPath);
    EXPECT_THAT(lines("command line"), ElementsAre(StartsWith("wrong: the daemon's program is in no known place")));
    EXPECT_THAT(lines("settings schema"), IsEmpty());
    programs.insert("/usr/bin/ostrel");
    EXPECT_THAT(lines("command line"), ElementsAre("ok: /usr/bin/ostrel (from PATH)"));
    programs.insert("/usr/local/bin/ostrel");
    EXPECT_THAT(lines("command line"), ElementsAre("ok: /usr/local/bin/ostrel (a fixed place)"));
}

TEST_F(DoctorTest, aSchemaThatDoesNotComeIsToldWithTheReason) {
    Answer& answer = answers["/bin/ostrel config schema"];
    answer = none(3s);
    EXPECT_THAT(lines("settings schema"),
                ElementsAre(StartsWith("wrong: /bin/ostrel config schema: it did not answer within 3 s →")));
    answer = made(2, "", "unknown command");
    EXPECT_THAT(lines("settings schema"), ElementsAre(HasSubstr(": unknown command →")));
    answer = made(0, "[]");
    EXPECT_THAT(lines("settings schema"), ElementsAre(StartsWith("wrong: /bin/ostrel config schema: ")));
    EXPECT_THAT(lines("config file"), ElementsAre("ok: " + configPath + " (the default)"));
}

TEST_F(DoctorTest, theConfigFileIsToldWithItsPathWhyThatOneAndItsFaults) {
    files.files[configPath] = R"({"a":10,"zzz":1})";
    EXPECT_THAT(lines("config file"),
                ElementsAre(HasSubstr("(the default), a: Must be at most 9 → ostrel-menubarctl settings reset a"),
                            HasSubstr("has keys that the daemon does not know: zzz →")));
    files.files[configPath] = "{";
    EXPECT_THAT(lines("config file"), ElementsAre(StartsWith("wrong: " + configPath + " (the default): ")));
    files.files.erase(configPath);
    EXPECT_THAT(lines("config file"),
                ElementsAre("ok: " + configPath + " (the default) is not there yet; defaults hold"));
    EXPECT_THAT(lines("config check"), IsEmpty());
    readOnly.insert("/home/.config/ostrel");
    EXPECT_THAT(lines("config file"), Contains(StartsWith("wrong: /home/.config/ostrel cannot be written to")));
    files.files["/daemons.json"] = "{}";
    files.files[statusPath] = R"({"at":"2025-03-04T10:15:30Z","configFile":{"path":"/daemons.json"}})";
    EXPECT_THAT(lines("config file"), ElementsAre("ok: /daemons.json (the daemon's)"));
    environment["OSTREL_CONFIG_FILE"] = "/mine.json";
    EXPECT_THAT(lines("config file"), ElementsAre(HasSubstr("/mine.json (OSTREL_CONFIG_FILE) is not there yet")));
}

TEST_F(DoctorTest, aLinkIsFollowedToTheFolderThatHasToBeWritable) {
    links[configPath] = "../../dotfiles/ostrel.json";
    folders.insert("/home/.config/ostrel/../../dotfiles");
    EXPECT_THAT(lines("config file"),
                ElementsAre("ok: " + configPath + " (the default, a link to ../../dotfiles/ostrel.json)"));
    readOnly.insert("/home/.config/ostrel/../../dotfiles");
    EXPECT_THAT(lines("config file"), Contains(HasSubstr("../../dotfiles cannot be written to")));
}

TEST_F(DoctorTest, theDaemonsOwnVerdictIsAsked) {
    Answer& answer = answers["/bin/ostrel config validate " + configPath + " --json"];
    answer = made(1, R"({"ok":false,"errors":[{"message":"no","options":["a"]},{"message":"bad"}]})");
    EXPECT_THAT(lines("config check"),
                ElementsAre(StartsWith("wrong: the daemon refuses the config file: a: no; bad →")));
    answer = made(1, "oops");
    EXPECT_THAT(lines("config check"), ElementsAre(HasSubstr("exit status 1")));
}

TEST_F(DoctorTest, whatTheRunningDaemonMakesOfItIsTold) {
    files.files[statusPath] = R"({"at":"2025-03-04T10:15:30Z","configFile":{"changedSinceLoad":true},
        "configError":{"message":"line 3"},"configSources":{"a":"cli","b":"file"}})";
    EXPECT_THAT(lines("running settings"),
                ElementsAre(StartsWith("wrong: the daemon could not use the config file: line 3 →"),
                            "note: the config file has changed since the daemon read it → restart the daemon: "
                            "ostrel-menubarctl daemon restart",
                            StartsWith("note: set by flags of the launch agent, whatever the config file says: a →")));
}

TEST_F(DoctorTest, helpersThatAreMissingAreNoted) {
    programs.erase("/usr/bin/cmux");
    files.files[statusPath] = R"({"at":"2025-03-04T10:15:30Z","sessions":[{"dirName":"x\u001b"},{"workspaceId":""}]})";
    files.files.erase("/home/Library/Logs/ostrel");
    EXPECT_THAT(lines("cmux"), ElementsAre(StartsWith("note: cmux not found in [\"/opt/homebrew/bin/cmux\"")));
    EXPECT_THAT(lines("focus"), ElementsAre(HasSubstr("cannot be brought forward: x\uFFFD, session →")));
    EXPECT_THAT(lines("notifications"), ElementsAre(StartsWith("note: there is neither cmux nor /usr/bin/osascript")));
    EXPECT_THAT(lines("logs"), ElementsAre(StartsWith("note: /home/Library/Logs/ostrel is not there")));
    programs.insert("/usr/bin/osascript");
    EXPECT_THAT(lines("notifications"), ElementsAre(StartsWith("ok: through /usr/bin/osascript")));
}

TEST_F(DoctorTest, theAppIsLookedForWhereThereAreApps) {
    EXPECT_THAT(lines("app"), IsEmpty());
    apps.emplace();
    EXPECT_THAT(lines("app"), ElementsAre("note: it does not run → open ostrel-menubar.app"));
    apps = {
        RunningApp{.path = "/private/var/folders/x/AppTranslocation/y/ostrel-menubar.app/Contents/MacOS/ostrel-menubar",
                   .version = "1.2.3"}};
    EXPECT_THAT(lines("app"), ElementsAre(HasSubstr("where the system's quarantine has moved it → quit it, move")));
    apps = {RunningApp{.path = "/a/ostrel-menubar", .version = "1.0.0"}};
    EXPECT_THAT(lines("app"), ElementsAre(HasSubstr("/a/ostrel-menubar is version 1.0.0, this is 1.2.3 →")));
    loginItem = LoginItemState::awaitsApproval;
    EXPECT_THAT(lines("login item"), ElementsAre(StartsWith("note: macOS waits for your approval")));
    loginItem = std::unexpected("not in the app");
    EXPECT_THAT(lines("login item"), ElementsAre(StartsWith("note: not in the app")));
}

TEST_F(DoctorTest, whoDecidedOnIconOnlyIsTold) {
    environment["OSTREL_MENUBAR_COMPACT"] = "1";
    EXPECT_THAT(lines("icon only"), ElementsAre("ok: on (OSTREL_MENUBAR_COMPACT)"));
    environment["OSTREL_MENUBAR_COMPACT"] = "maybe";
    EXPECT_THAT(lines("icon only"), ElementsAre(StartsWith("note: off; OSTREL_MENUBAR_COMPACT is maybe")));
}

TEST(DoctorOutput, isOneLineACheckThatATerminalDoesNotObey) {
    const std::vector<Check> checks{
        {.name = "a", .verdict = Verdict::wrong, .found = "x\n\x1b[2J", .fix = "mend\nit"},
        {.name = "b", .found = "fine"},
    };
    EXPECT_EQ(doctorText(checks, Styling::plain), "wrong  a: x\uFFFD\uFFFD[2J → mend\uFFFDit\nok     b: fine\n");
    EXPECT_THAT(doctorText(checks, Styling::colours), StartsWith("\x1b[1;31mwrong\x1b[0m  a"));
    EXPECT_EQ(documentText(doctorDocument(checks)).value(),
              "{\"checks\":[{\"fix\":\"mend\\nit\",\"found\":\"x\\n\\u001b[2J\",\"name\":\"a\",\"verdict\":\"wrong\"},"
              "{\"fix\":null,\"found\":\"fine\",\"name\":\"b\",\"verdict\":\"ok\"}]}\n");
}
