#include "tests/e2e/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

// The app itself, as a process of its own with a home of its own.
namespace menubar {
namespace {

using e2e::ChildProcess;
using testing_support::TemporaryDirectory;
using Lines = std::vector<std::string>;

class Program {
public:
    explicit Program(const std::map<std::string, std::string>& environment = {}, Lines arguments = {})
        : m_child(options(environment, std::move(arguments))) {}

    /// What it has written to standard error, as far as it was waited for.
    [[nodiscard]] Lines errorLines() const {
        std::istringstream text(m_child.errors());
        Lines lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    [[nodiscard]] Lines waitForErrorLines(std::ptrdiff_t count) {
        EXPECT_TRUE(m_child.readErrorsUntil(
            [count](const std::string& text) { return std::ranges::count(text, '\n') >= count; }));
        return errorLines();
    }

    /// Sends SIGTERM, and waits.
    [[nodiscard]] std::optional<ChildProcess::Status> terminate() {
        m_child.send(SIGTERM);
        return wait();
    }

    [[nodiscard]] std::optional<ChildProcess::Status> wait() { return m_child.wait(); }

    [[nodiscard]] std::string home() const { return m_home.path(); }

    [[nodiscard]] pid_t process() const { return m_child.pid(); }

private:
    [[nodiscard]] ChildProcess::Options options(std::map<std::string, std::string> environment, Lines arguments) const {
        for (const char* name : {"DISPLAY", "OSTREL_MENUBAR_DEFAULTS_DOMAIN"}) {
            if (const char* value = std::getenv(name)) {
                environment.try_emplace(name, value);
            }
        }
        environment["HOME"] = m_home.path();
        environment["PATH"] = "/usr/bin:/bin";
        return {.program = MENUBAR_PROGRAM, .arguments = std::move(arguments), .environment = std::move(environment)};
    }

    TemporaryDirectory m_home;
    ChildProcess m_child;
};

/// The processes whose parent is `process`, but for the one that a sanitizer starts to name what it looks at.
Lines childrenOf(pid_t process) {
    const testing_support::TemporaryDirectory directory;
    const std::string list = directory / "list";
    const std::string command = "ps -A -ww -o ppid= -o comm= > '" + list + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::ifstream file(list);
    Lines names;
    bool isListed = false;
    for (std::string line; std::getline(file, line);) {
        isListed = isListed || line.find("ostrel-menubar") != std::string::npos;
        if (std::stol(line) == process && line.find("llvm-symbolizer") == std::string::npos) {
            names.push_back(line);
        }
    }
    EXPECT_TRUE(isListed) << "the program itself is in the list of processes";
    return names;
}

#ifndef __APPLE__
TEST(Program, saysInASentenceThatThereIsNoDisplay) {
    Program program({{"DISPLAY", ":64999"}});
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

TEST(Program, opensTheSettingsWindowAtStartOnlyForExactlyOne) {
    // The window's own switch, refused for want of a scratch file, tells that it was opened.
    const std::string saveOnOpen = "OSTREL_MENUBAR_SAVE_ON_OPEN";
    Program on({{"OSTREL_MENUBAR_OPEN_SETTINGS", "1"}, {saveOnOpen, "1"}});
    ASSERT_EQ(on.waitForErrorLines(2).size(), 2U);
    EXPECT_EQ(on.errorLines().back(),
              "ostrel-menubar: OSTREL_MENUBAR_SAVE_ON_OPEN ignored: set OSTREL_CONFIG_FILE to a "
              "scratch file first");
    EXPECT_EQ(on.terminate(), 0);
    for (const char* value : {"true", "yes", "0", ""}) {
        Program off({{"OSTREL_MENUBAR_OPEN_SETTINGS", value}, {saveOnOpen, "1"}});
        ASSERT_EQ(off.waitForErrorLines(1).size(), 1U);
        EXPECT_EQ(off.terminate(), 0);
        EXPECT_EQ(off.errorLines().size(), 1U) << value;
    }
}

TEST(Program, answersAboutTheLoginItemAndEndsBeforeItShowsAnything) {
    Program program({{"OSTREL_MENUBAR_LOGIN", "status"}});
    const auto status = program.wait();
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
