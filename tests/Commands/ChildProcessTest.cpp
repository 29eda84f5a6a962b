#include "MenubarApp/Commands/ChildProcess.h"

#include "MenubarApp/Platform/ProcessEnvironment.h"

#include "tests/support/ChildRuns.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace menubar;
using namespace menubar::testing_support;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

/// How long a process that a child leaves behind would live, were it not ended.
constexpr auto leftFor = 60s;

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/dev/fd"), std::filesystem::directory_iterator());
}

/// Many at a time take more than the 256 descriptors that some systems begin with.
void allowDescriptors(rlim_t count) {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = std::max(limit.rlim_cur, std::min(count, limit.rlim_max));
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

/// Ends the process that a child left behind, whose id the child printed.
void endLeftProcess(const std::string& printed) {
    const pid_t left = std::atoi(printed.c_str());
    ASSERT_GT(left, 1) << printed;
    ::kill(left, SIGKILL);
}

/// Whether this process has a child, running or ended, that nobody waited for.
bool hasChild() {
    return ::waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
}

/// While it exists, a signal interrupts this process a thousand times a second.
class Interruptions {
public:
    Interruptions() {
        struct sigaction action{};
        action.sa_handler = [](int) {};
        EXPECT_EQ(::sigaction(SIGALRM, &action, &m_before), 0);
        constexpr itimerval often{.it_interval = {.tv_sec = 0, .tv_usec = 1000},
                                  .it_value = {.tv_sec = 0, .tv_usec = 1000}};
        EXPECT_EQ(::setitimer(ITIMER_REAL, &often, nullptr), 0);
    }

    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

    ~Interruptions() {
        constexpr itimerval never{};
        ::setitimer(ITIMER_REAL, &never, nullptr);
        ::sigaction(SIGALRM, &m_before, nullptr);
    }

private:
    struct sigaction m_before{};
};

} // namespace

TEST(ChildProcess, tenMegabytesOnStandardErrorFirstDoNotStall) {
    const CommandResult result = runChild({"err-bytes", "10000000", "out", "done", "exit", "1"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.stdout_, "done");
    EXPECT_EQ(result.stderr_, std::string(10'000'000, 'x'));
}

TEST(ChildProcess, bothOutputsMayExceedAPipe) {
    const CommandResult result =
        runChild({"out-bytes", "300000", "err-bytes", "300000", "out-bytes", "300000", "err-bytes", "300000"});
    EXPECT_EQ(result.stdout_.size(), 600'000U);
    EXPECT_EQ(result.stderr_.size(), 600'000U);
}

TEST(ChildProcess, whatExceedsTheMaximumIsReadAndDropped) {
    const std::string tooMuch = std::to_string(ChildProcess::maximumOutput + 100'000);
    const CommandResult result = runChild({"out-bytes", tooMuch, "err", "end"});
    EXPECT_EQ(result.stdout_.size(), ChildProcess::maximumOutput);
    EXPECT_EQ(result.stderr_, "end");
}

TEST(ChildProcess, standardInputIsAtItsEnd) {
    EXPECT_EQ(runChild({"stdin"}).stdout_, "0");
}

TEST(ChildProcess, aChildThatNeverReadsIsNoDifferent) {
    EXPECT_EQ(runChild({"sleep", "20", "out", "bye"}).stdout_, "bye");
}

TEST(ChildProcess, aChildThatClosesItsOutputsIsWaitedFor) {
    const CommandResult result = runChild({"out", "early", "close", "sleep", "120", "exit", "7"});
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.stdout_, "early");
}

TEST(ChildProcess, aSilentChildMayTakeLongerThanTheGraceAndTheChecks) {
    static_assert(400ms > ChildProcess::outputGrace + ChildProcess::exitCheckInterval);
    EXPECT_EQ(runChild({"sleep", "400", "out", "late"}).stdout_, "late");
}

TEST(ChildProcess, aProcessLeftBehindDoesNotHoldTheRunner) {
    const auto begin = Clock::now();
    const CommandResult result = runChild({"leave", "60000", "err", "all of it", "exit", "5"});
    const auto taken = Clock::now() - begin;
    endLeftProcess(result.stdout_);
    EXPECT_EQ(result.status, 5);
    EXPECT_EQ(result.stderr_, "all of it");
    EXPECT_GE(taken, ChildProcess::outputGrace);
    EXPECT_LT(taken, leftFor);
}

TEST(ChildProcess, aProcessLeftBehindThatWritesAllTheTimeDoesNotEither) {
    const auto begin = Clock::now();
    const CommandResult result = runChild({"leave-writing", "60000", "exit", "5"});
    endLeftProcess(result.stdout_);
    EXPECT_EQ(result.status, 5);
    EXPECT_LT(Clock::now() - begin, leftFor);
}

TEST(ChildProcess, whatALeftProcessWritesWithinTheGraceCounts) {
    // Within the grace of a machine that is not busy; another gets more tries.
    std::string written;
    for (int attempt = 0; attempt < 20 && !written.ends_with("mineleft"); ++attempt) {
        written = runChild({"leave", "100", "out", "mine"}).stdout_;
    }
    EXPECT_TRUE(written.ends_with("mineleft")) << written;
}

TEST(ChildProcess, allThatTheChildWroteIsReadThoughItsPipesStayOpen) {
    const CommandResult result = runChild({"leave", "20000", "out-bytes", "1000000", "err-bytes", "1000000"});
    endLeftProcess(result.stdout_);
    EXPECT_EQ(result.stdout_.size() - result.stdout_.find('x'), 1'000'000U);
    EXPECT_EQ(result.stderr_.size(), 1'000'000U);
}

TEST(ChildProcess, theChildGetsThreeDescriptorsWhateverThisProcessHasOpen) {
    const int inheritable = ::open("/dev/null", O_RDONLY); // NOLINT(android-cloexec-open): that is the point
    const int high = ::fcntl(inheritable, F_DUPFD, 200);
    ASSERT_GE(high, 200);
    EXPECT_EQ(runChild({"descriptors"}).stdout_, "0 1 2");
    ::close(inheritable);
    ::close(high);
}

TEST(ChildProcess, theChildHasDefaultSignalsWhateverThisThreadBlocksAndIgnores) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigaddset(&blocked, SIGCHLD);
    sigaddset(&blocked, SIGUSR1);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
    const auto pipeBefore = ::signal(SIGPIPE, SIG_IGN);
    const auto hangUpBefore = ::signal(SIGHUP, SIG_IGN);
    const std::string seen = runChild({"signals"}).stdout_;
    ::signal(SIGHUP, hangUpBefore);
    ::signal(SIGPIPE, pipeBefore);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(seen, "default");
}

TEST(ChildProcess, leavesNoDescriptorAndNoZombieBehind) {
    (void)runChild({});
    const auto before = openDescriptors();
    for (int i = 0; i < 100; ++i) {
        const auto result = i % 10 == 9 ? run("/no/such", {}).result : runChild({"exit", "1"});
        ASSERT_EQ(result.status, i % 10 == 9 ? -1 : 1);
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChild());
}

TEST(ChildProcess, sixtyFourAtOnceKeepTheirOutputsApart) {
    constexpr int count = 64;
    allowDescriptors(1024);
    const auto before = openDescriptors();
    std::vector<CommandResult> results(count);
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&results, i] {
            const std::string number = std::to_string(i);
            results[static_cast<std::size_t>(i)] = runChild({"out", "out " + number, "err-bytes", "100000", "variable",
                                                             "NUMBER", "descriptors", "sleep", "20", "exit", number},
                                                            {{"NUMBER", number}});
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        const CommandResult& result = results[static_cast<std::size_t>(i)];
        EXPECT_EQ(result.status, i);
        EXPECT_EQ(result.stdout_, "out " + number + "NUMBER=" + number + "\n0 1 2");
        EXPECT_EQ(result.stderr_.size(), 100'000U);
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChild());
}

TEST(ChildProcess, signalsThatInterruptTheWaitDoNotEndIt) {
    const Interruptions interruptions;
    // The first is waited for at its pipes, the second, which has closed them, by its end.
    EXPECT_EQ(runChild({"sleep", "100", "out", "late", "exit", "3"}),
              (CommandResult{.status = 3, .stdout_ = "late", .stderr_ = ""}));
    EXPECT_EQ(runChild({"out", "early", "close", "sleep", "100", "exit", "7"}),
              (CommandResult{.status = 7, .stdout_ = "early", .stderr_ = ""}));
}

// What concerns the whole process is tried in a process of its own.

TEST(ChildProcess, worksWithTheStandardDescriptorsClosed) {
    EXPECT_EXIT(
        {
            ::close(STDIN_FILENO);
            ::close(STDOUT_FILENO);
            ::close(STDERR_FILENO);
            const auto result =
                ChildProcess::run(testChild, {"out", "o", "err", "e", "descriptors"}, processEnvironment());
            ::_exit(result && result->standardOutput == "o0 1 2 \n" && result->standardError == "e" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(ChildProcess, knowsTheStatusThoughTheParentIgnoredEndingChildren) {
    EXPECT_EXIT(
        {
            ::signal(SIGCHLD, SIG_IGN);
            ::_exit(runChild({"exit", "5"}).status == 5 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(ChildProcess, knowsItThoughThisProcessAskedNotToBeTold) {
    EXPECT_EXIT(
        {
            struct sigaction unwilling{};
            unwilling.sa_handler = [](int) {};
            unwilling.sa_flags = SA_NOCLDWAIT;
            ::sigaction(SIGCHLD, &unwilling, nullptr);
            ::_exit(runChild({"exit", "5"}).status == 5 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(ChildProcess, aChildThatSomebodyElseWaitedForHasNoStatus) {
    EXPECT_EXIT(
        {
            const std::string text = "failed to wait for " + testChild + ": " + reason(ECHILD);
            // Who comes first decides; a thief that came too late tries again.
            for (;;) {
                std::atomic<bool> isOver = false;
                bool isStolen = false;
                std::thread thief([&] {
                    while (!isOver && !isStolen) {
                        isStolen = ::waitpid(-1, nullptr, WNOHANG) > 0;
                    }
                });
                const CommandResult result = runChild({"leave", "1000"});
                isOver = true;
                thief.join();
                if (isStolen) {
                    ::_exit(result == CommandResult{.status = -1, .stdout_ = {}, .stderr_ = text} ? 0 : 1);
                }
            }
        },
        testing::ExitedWithCode(0), "");
}

TEST(ChildProcess, aLimitEndsTheChildAndWhatItStarted) {
    const auto start = Clock::now();
    const auto ended = ChildProcess::run("/bin/sh", {"-c", "sleep 600 & echo $!; wait"}, processEnvironment(), 300ms);
    ASSERT_TRUE(ended);
    EXPECT_TRUE(ended->isOverdue);
    EXPECT_EQ(ended->status, SIGKILL);
    EXPECT_GE(Clock::now() - start, 300ms);
    EXPECT_LT(Clock::now() - start, 30s);
    const pid_t left = std::atoi(ended->standardOutput.c_str());
    ASSERT_GT(left, 1);
    // Whoever adopts the grandchild reaps it a moment later.
    for (int i = 0; i < 3000 && ::kill(left, 0) == 0; ++i) {
        std::ifstream stat("/proc/" + std::to_string(left) + "/stat");
        std::string id;
        std::string name;
        std::string state;
        if (stat >> id >> name >> state && state == "Z") {
            return; // dead, and nobody has looked
        }
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_NE(::kill(left, 0), 0);
}

TEST(ChildProcess, aLimitAlsoHoldsForAChildThatHasClosedItsOutputs) {
    const auto ended = ChildProcess::run("/bin/sh", {"-c", "exec sleep 600 >&- 2>&-"}, processEnvironment(), 300ms);
    ASSERT_TRUE(ended);
    EXPECT_TRUE(ended->isOverdue);
}

TEST(ChildProcess, aChildThatEndsWithinItsLimitIsNotOverdue) {
    const auto ended = ChildProcess::run("/bin/sh", {"-c", "echo hi; exit 3"}, processEnvironment(), 20s);
    ASSERT_TRUE(ended);
    EXPECT_FALSE(ended->isOverdue);
    EXPECT_EQ(ended->status, 3);
    EXPECT_EQ(ended->standardOutput, "hi\n");
}
