#include "tests/support/TemporaryDirectory.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

// The app itself, as a process of its own with a home of its own.
namespace menubar {
namespace {

using testing_support::TemporaryDirectory;
using Lines = std::vector<std::string>;

class Program {
public:
    explicit Program(const Lines& extraEnvironment = {}, const Lines& arguments = {}) {
        Lines environment = {"HOME=" + m_home.path(), "PATH=/usr/bin:/bin"};
        for (const char* name : {"DISPLAY", "OSTREL_MENUBAR_DEFAULTS_DOMAIN"}) {
            if (const char* value = std::getenv(name); value != nullptr) {
                environment.push_back(std::string(name) + "=" + value);
            }
        }
        environment.insert(environment.begin(), extraEnvironment.begin(), extraEnvironment.end()); // the first holds
        Lines command = {MENUBAR_PROGRAM};
        command.insert(command.end(), arguments.begin(), arguments.end());
        posix_spawn_file_actions_t files;
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errorFile().c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                           0600);
        EXPECT_EQ(::posix_spawn(&m_process, MENUBAR_PROGRAM, &files, nullptr, pointers(command).data(),
                                pointers(environment).data()),
                  0);
        ::posix_spawn_file_actions_destroy(&files);
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    ~Program() {
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            ::waitpid(m_process, nullptr, 0);
        }
    }

    /// What it has written to standard error so far, by lines.
    [[nodiscard]] Lines errorLines() const {
        std::ifstream file(errorFile());
        Lines lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    /// Waits for that many lines, within bounds.
    [[nodiscard]] Lines waitForErrorLines(std::size_t count) const {
        waitUntil([&] { return errorLines().size() >= count; });
        return errorLines();
    }

    /// Sends SIGTERM; the exit status, or -1 when it does not end by itself in time.
    [[nodiscard]] int terminate() {
        ::kill(m_process, SIGTERM);
        return wait();
    }

    /// The exit status, or -1 when it does not end by itself in time.
    [[nodiscard]] int wait() {
        int status = 0;
        const pid_t process = m_process;
        if (!waitUntil([&] { return ::waitpid(process, &status, WNOHANG) == process; })) {
            return -1;
        }
        m_process = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    [[nodiscard]] std::string home() const { return m_home.path(); }

    [[nodiscard]] pid_t process() const { return m_process; }

private:
    template <typename Condition>
    static bool waitUntil(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!condition()) {
            if (std::chrono::steady_clock::now() >= end) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return true;
    }

    static std::vector<char*> pointers(Lines& texts) {
        std::vector<char*> result;
        for (std::string& text : texts) {
            result.push_back(text.data());
        }
        result.push_back(nullptr);
        return result;
    }

    [[nodiscard]] std::string errorFile() const { return m_files / "stderr"; }

    TemporaryDirectory m_home;
    TemporaryDirectory m_files;
    pid_t m_process = 0;
};

/// The processes whose parent is `process`.
Lines childrenOf(pid_t process) {
    const testing_support::TemporaryDirectory directory;
    const std::string list = directory / "list";
    const std::string command = "ps -A -o ppid= -o comm= > '" + list + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::ifstream file(list);
    Lines names;
    bool isListed = false;
    for (std::string line; std::getline(file, line);) {
        isListed = isListed || line.find("ostrel-menubar") != std::string::npos;
        if (std::stol(line) == process) {
            names.push_back(line);
        }
    }
    EXPECT_TRUE(isListed) << "the program itself is in the list of processes";
    return names;
}

#ifndef __APPLE__
TEST(Program, saysInASentenceThatThereIsNoDisplay) {
    Program program({"DISPLAY=:64999"});
    EXPECT_EQ(program.wait(), 1);
    const Lines lines = program.errorLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(),
              "ostrel-menubar: the display :64999 cannot be opened; ostrel-menubarctl shows the menu in a "
              "terminal");
    for (const std::string& line : lines) {
        EXPECT_EQ(line.find("Exception"), std::string::npos) << line;
    }
}
#endif

TEST(Program, firstSaysWhichFileItWatchesAndEndsCleanlyOnSigterm) {
    Program program;
    const Lines lines = program.waitForErrorLines(1);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "ostrel-menubar: watching " + program.home() + "/.local/state/ostrel/status.json");
    EXPECT_EQ(program.terminate(), 0);
    EXPECT_EQ(program.errorLines().size(), 1U) << program.errorLines().back();
}

TEST(Program, watchesTheFileThatTheEnvironmentNames) {
    const Program program({"OSTREL_STATUS_FILE=~/elsewhere.json"});
    const Lines lines = program.waitForErrorLines(1);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "ostrel-menubar: watching " + program.home() + "/elsewhere.json");
}

TEST(Program, opensTheSettingsWindowAtStartOnlyForExactlyOne) {
    // The window's own switch, refused for want of a scratch file, tells that it was opened.
    const std::string saveOnOpen = "OSTREL_MENUBAR_SAVE_ON_OPEN=1";
    Program on({"OSTREL_MENUBAR_OPEN_SETTINGS=1", saveOnOpen});
    ASSERT_EQ(on.waitForErrorLines(2).size(), 2U);
    EXPECT_EQ(on.errorLines().back(),
              "ostrel-menubar: OSTREL_MENUBAR_SAVE_ON_OPEN ignored: set OSTREL_CONFIG_FILE to a "
              "scratch file first");
    EXPECT_EQ(on.terminate(), 0);
    for (const char* value : {"true", "yes", "0", ""}) {
        Program off({std::string("OSTREL_MENUBAR_OPEN_SETTINGS=") + value, saveOnOpen});
        ASSERT_EQ(off.waitForErrorLines(1).size(), 1U);
        EXPECT_EQ(off.terminate(), 0);
        EXPECT_EQ(off.errorLines().size(), 1U) << value;
    }
}

TEST(Program, answersAboutTheLoginItemAndEndsBeforeItShowsAnything) {
    Program program({"OSTREL_MENUBAR_LOGIN=status"});
    const int status = program.wait();
#ifdef __APPLE__
    EXPECT_EQ(status, 0);
    EXPECT_EQ(program.errorLines(), Lines{});
#else
    EXPECT_EQ(status, 1);
    EXPECT_EQ(program.errorLines(), Lines{"only macOS can start the app at login"});
#endif
}

TEST(Program, readsNoArguments) {
    Program program({}, {"/etc/hostname", "-compact", "YES"});
    ASSERT_EQ(program.waitForErrorLines(1).size(), 1U);
    EXPECT_EQ(program.terminate(), 0);
    EXPECT_EQ(program.errorLines().size(), 1U);
}

TEST(Program, severalMayRunSideBySide) {
    Program first;
    Program second;
    EXPECT_EQ(first.waitForErrorLines(1).size(), 1U);
    EXPECT_EQ(second.waitForErrorLines(1).size(), 1U);
    EXPECT_EQ(first.terminate(), 0);
    EXPECT_EQ(second.terminate(), 0);
}

TEST(Program, startsNoProcessAndWritesNothingToTheAccountsHome) {
    const std::filesystem::path accountFolder = std::filesystem::path(::getpwuid(::getuid())->pw_dir) / "GNUstep";
    const bool existed = std::filesystem::exists(accountFolder);
    const auto before = existed ? std::filesystem::last_write_time(accountFolder) : std::filesystem::file_time_type();
    Program program;
    ASSERT_EQ(program.waitForErrorLines(1).size(), 1U);
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // what launching starts, it starts at once
    EXPECT_EQ(childrenOf(program.process()), Lines{});
    EXPECT_EQ(program.terminate(), 0);
    EXPECT_EQ(std::filesystem::exists(accountFolder), existed);
    if (existed) {
        EXPECT_EQ(std::filesystem::last_write_time(accountFolder), before);
    }
}

} // namespace
} // namespace menubar
