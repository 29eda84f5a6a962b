#include "MenubarApp/Commands/CommandRunner.h"

#include "tests/support/ChildRuns.h"
#include "tests/support/RecordingShell.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace menubar;
using namespace menubar::testing_support;
using testing::ElementsAre;

namespace {

const std::string& child = testChild;

} // namespace

TEST(CommandRunner, trimsBothEndsOfWhatTheChildPrinted) {
    const LoggedRun ran = run(child, {"out", "  hello\n\n", "err", "\t\n"});
    EXPECT_EQ(ran.result, (CommandResult{.status = 0, .stdout_ = "hello", .stderr_ = ""}));
}

TEST(CommandRunner, trimsUnicodeWhiteSpaceButNothingInside) {
    EXPECT_EQ(runChild({"out", "\u00A0\u2028\u3000\ra \n b\u0085\u2003\v"}).stdout_, "a \n b");
    EXPECT_EQ(runChild({"out", "\u200Ba\uFEFF"}).stdout_, "\u200Ba\uFEFF");
}

TEST(CommandRunner, logsOneLineForASuccess) {
    const LoggedRun ran = run(child, {"arguments", "two words", "\"quoted\""});
    EXPECT_THAT(ran.lines, ElementsAre("ok: " + child + " arguments two words \"quoted\""));
}

TEST(CommandRunner, logsStatusAndStandardErrorOfAFailure) {
    EXPECT_THAT(run(child, {"err", "boom\n", "exit", "3"}).lines,
                ElementsAre("exit 3: " + child + " err boom\n exit 3 -- boom"));
    EXPECT_THAT(run(child, {"exit", "3"}).lines, ElementsAre("exit 3: " + child + " exit 3"));
    EXPECT_THAT(run(child, {"err", " \n", "exit", "3"}).lines, ElementsAre("exit 3: " + child + " err  \n exit 3"));
    EXPECT_THAT(run(child, {"err", "only a warning"}).lines, ElementsAre("ok: " + child + " err only a warning"));
}

TEST(CommandRunner, aRunWithoutArgumentsLogsThePathAlone) {
    EXPECT_THAT(run(child, {}).lines, ElementsAre("ok: " + child));
}

TEST(CommandRunner, logsThroughTheProgramsLogUnlessToldOtherwise) {
    testing::internal::CaptureStderr();
    const CommandResult result = CommandRunner::runSync(child, {"err", "two\nlines", "exit", "1"});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ostrel-menubar: exit 1: " + child + " err two\\nlines exit 1 -- two\\nlines\n");
    EXPECT_EQ(result.stderr_, "two\nlines");
}

TEST(CommandRunner, reportsEveryExitStatus) {
    for (const int status : {0, 1, 2, 126, 127, 128, 255}) {
        EXPECT_EQ(runChild({"exit", std::to_string(status)}).status, status);
    }
}

TEST(CommandRunner, reportsASignalByItsNumber) {
    for (const int number : {SIGKILL, SIGTERM, SIGINT, SIGPIPE, SIGUSR1, SIGQUIT, SIGABRT}) {
        const LoggedRun ran = run(child, {"out", "so far", "raise", std::to_string(number)});
        EXPECT_EQ(ran.result.status, number);
        EXPECT_EQ(ran.result.stdout_, "so far");
        EXPECT_THAT(ran.lines.at(0), testing::StartsWith("exit " + std::to_string(number) + ": "));
    }
}

struct LaunchFailure {
    const char* name;
    const char* path; // below the scratch directory unless absolute
    int error;
};

class CommandRunnerLaunchFailures : public testing::TestWithParam<LaunchFailure> {
protected:
    CommandRunnerLaunchFailures() {
        m_directory.write("plain", "not a program");
        ::chmod((m_directory / "plain").c_str(), 0644);
        m_directory.write("script", "echo from a shell\n");
        ::chmod((m_directory / "script").c_str(), 0755);
        m_directory.write("orphan", "#!/no/such/interpreter\n");
        ::chmod((m_directory / "orphan").c_str(), 0755);
        std::filesystem::create_directory(m_directory / "directory");
        std::filesystem::create_symlink("loop", m_directory / "loop");
        m_directory.write("empty", "");
        ::chmod((m_directory / "empty").c_str(), 0755);
    }

    TemporaryDirectory m_directory;
};

TEST_P(CommandRunnerLaunchFailures, isMinusOneWithOneLineThatSaysWhy) {
    const std::string given = GetParam().path;
    const std::string path = given.starts_with('/') ? given : m_directory / given;
    const LoggedRun ran = run(path, {"argument"});
    const std::string text = "failed to launch " + path + ": " + reason(GetParam().error);
    EXPECT_EQ(ran.result, (CommandResult{.status = -1, .stdout_ = "", .stderr_ = text}));
    EXPECT_THAT(ran.lines, ElementsAre(text));
}

INSTANTIATE_TEST_SUITE_P(
    Each, CommandRunnerLaunchFailures,
    testing::Values(LaunchFailure{"missing", "/no/such", ENOENT}, LaunchFailure{"notExecutable", "plain", EACCES},
                    LaunchFailure{"aDirectory", "directory", EACCES},
                    LaunchFailure{"textWithoutInterpreter", "script", ENOEXEC},
                    LaunchFailure{"interpreterMissing", "orphan", ENOENT}, LaunchFailure{"emptyFile", "empty", ENOEXEC},
                    LaunchFailure{"beneathAFile", "plain/x", ENOTDIR}, LaunchFailure{"linkToItself", "loop", ELOOP}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(CommandRunner, thePathIsTakenAsGivenAndNeverLookedUp) {
    EXPECT_EQ(run("true", {}).result.stderr_, "failed to launch true: " + reason(ENOENT));
    EXPECT_EQ(run("", {}).result.stderr_, "failed to launch : " + reason(ENOENT));
}

TEST(CommandRunner, aTextWithANulCannotBePassedOn) {
    const std::string withNul("a\0b", 3);
    EXPECT_EQ(run(child, {withNul}).result.status, -1);
    EXPECT_EQ(run(withNul, {}).result.status, -1);
    EXPECT_EQ(run(child, {}, {{"KEY", withNul}}).result.status, -1);
    EXPECT_EQ(run(child, {}, {{"A=B", "c"}}).result.stderr_, "failed to launch " + child + ": " + reason(EINVAL));
    EXPECT_EQ(run(child, {}, {{"", "c"}}).result.status, -1);
}

TEST(CommandRunner, argumentsArriveByteForByte) {
    EXPECT_EQ(runChild({"arguments", "two words", "\"quoted\" 'too'", "line\nfeed", "back\\slash\\", "", "$HOME `x`",
                        "*", "--", "\u00FCber", "\xFF\xFE"})
                  .stdout_,
              R"(two\x20words
"quoted"\x20'too'
line\x0afeed
back\x5cslash\x5c

$HOME\x20`x`
*
--
\xc3\xbcber
\xff\xfe)");
}

TEST(CommandRunner, anArgumentOfAHundredKilobytesArrivesWhole) {
    const std::string longArgument(100'000, 'a');
    EXPECT_EQ(runChild({"arguments", longArgument}).stdout_, longArgument);
}

TEST(CommandRunner, moreArgumentsThanTheSystemTakesAreALaunchFailure) {
    const std::vector<std::string> arguments(200, std::string(100'000, 'a'));
    EXPECT_EQ(runChild(arguments).stderr_, "failed to launch " + child + ": " + reason(E2BIG));
}

TEST(CommandRunner, theChildInheritsTheEnvironment) {
    const ScopedVariable variable("MENUBAR_TEST_VARIABLE", "a=b c");
    EXPECT_EQ(runChild({"variable", "MENUBAR_TEST_VARIABLE"}).stdout_, "MENUBAR_TEST_VARIABLE=a=b c");
}

TEST(CommandRunner, anExtraVariableReplacesTheInheritedOneForTheChildOnly) {
    const ScopedVariable variable("MENUBAR_TEST_VARIABLE", "inherited");
    EXPECT_EQ(runChild({"variable", "MENUBAR_TEST_VARIABLE"}, {{"MENUBAR_TEST_VARIABLE", "extra"}}).stdout_,
              "MENUBAR_TEST_VARIABLE=extra");
    EXPECT_STREQ(std::getenv("MENUBAR_TEST_VARIABLE"), "inherited");
    const std::string path = std::getenv("PATH");
    EXPECT_EQ(runChild({"variable", "PATH"}, {{"PATH", "/only/here"}}).stdout_, "PATH=/only/here");
    EXPECT_EQ(std::getenv("PATH"), path);
}

TEST(CommandRunner, anExtraVariableMayBeNewOrEmpty) {
    EXPECT_EQ(runChild({"variable", "MENUBAR_TEST_NEW"}, {{"MENUBAR_TEST_NEW", ""}}).stdout_, "MENUBAR_TEST_NEW=");
    EXPECT_EQ(runChild({"variable", "MENUBAR_TEST_NEW"}).stdout_, "MENUBAR_TEST_NEW unset");
}

TEST(CommandRunner, illFormedUtf8IsReplacedNeverRefused) {
    EXPECT_EQ(runChild({"hex", "61ff62"}).stdout_, "a\uFFFDb");
    EXPECT_EQ(runChild({"hex", "c3bc20e282"}).stdout_, "\u00FC \uFFFD");
    EXPECT_EQ(runChild({"hex", "eda080"}).stdout_, "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(runChild({"err", "\xC0\xAF", "exit", "1"}).stderr_, "\uFFFD\uFFFD");
    EXPECT_EQ(runChild({"hex", "6100620a"}).stdout_, std::string("a\0b", 3));
}

namespace {

/// A main loop whose background work runs on a thread of its own until `drain`, which runs what was posted.
class ThreadedMainLoop final : public MainLoop {
public:
    void post(Action action) override { m_posted.post(std::move(action)); }

    void runInBackground(Action action) override { m_workers.emplace_back(std::move(action)); }

    std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds, std::chrono::milliseconds, Action) override {
        return nullptr;
    }

    void drain() {
        for (std::thread& worker : std::exchange(m_workers, {})) {
            worker.join();
        }
        m_posted.drain();
    }

private:
    recording::FakeMainLoop m_posted;
    std::vector<std::thread> m_workers;
};

} // namespace

TEST(CommandRunner, runReturnsAtOnceAndCompletesOnTheMainThread) {
    ThreadedMainLoop loop;
    std::vector<CommandResult> results;
    std::thread::id completedOn;
    std::vector<std::string> lines; // written by the worker alone
    CommandRunner::run(
        loop, child, {"out", "hello", "exit", "4"}, {},
        [&](const CommandResult& result) {
            results.push_back(result);
            completedOn = std::this_thread::get_id();
        },
        [&](std::string_view line) { lines.emplace_back(line); });
    EXPECT_TRUE(results.empty());
    loop.drain();
    EXPECT_THAT(results, ElementsAre(CommandResult{.status = 4, .stdout_ = "hello", .stderr_ = ""}));
    EXPECT_EQ(completedOn, std::this_thread::get_id());
    EXPECT_THAT(lines, ElementsAre("exit 4: " + child + " out hello exit 4"));
}

TEST(CommandRunner, runWithoutACompletionRunsAllTheSame) {
    ThreadedMainLoop loop;
    std::vector<std::string> lines;
    CommandRunner::run(loop, child, {}, {}, nullptr, [&](std::string_view line) { lines.emplace_back(line); });
    loop.drain();
    EXPECT_THAT(lines, ElementsAre("ok: " + child));
}

TEST(CommandRunner, runReportsALaunchFailureTheSameWay) {
    ThreadedMainLoop loop;
    std::vector<CommandResult> results;
    CommandRunner::run(
        loop, "/no/such", {}, {}, [&](const CommandResult& result) { results.push_back(result); },
        [](std::string_view) {});
    loop.drain();
    EXPECT_THAT(results, ElementsAre(CommandResult{
                             .status = -1, .stdout_ = "", .stderr_ = "failed to launch /no/such: " + reason(ENOENT)}));
}
