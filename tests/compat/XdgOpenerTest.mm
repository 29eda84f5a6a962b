#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/AppKitWorkspace.h"
#include "compat/gnustep/desktop/XdgOpener.h"

#include "tests/appkit/Driver.h"
#include "tests/support/TemporaryDirectory.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace menubar {
namespace {

using testing_support::TemporaryDirectory;

/// An opener that writes its argument into a file.
class OpenerProgram {
public:
    explicit OpenerProgram(const std::string& lastLine = "") {
        m_program = m_directory.write("opener", "#!/bin/sh\nprintf '%s|' \"$@\" > '" + log() + ".part'\nmv '" + log() +
                                                    ".part' '" + log() + "'\n" + lastLine + "\n");
        std::filesystem::permissions(m_program, std::filesystem::perms::owner_all);
    }

    [[nodiscard]] const std::string& program() const { return m_program; }

    /// The arguments that it was called with, each followed by a bar.
    [[nodiscard]] std::string arguments() const {
        EXPECT_TRUE(driver::pumpUntil([this] { return std::filesystem::exists(log()); }));
        return testing_support::bytesOf(log());
    }

private:
    [[nodiscard]] std::string log() const { return m_directory / "log"; }

    TemporaryDirectory m_directory;
    std::string m_program;
};

TEST(XdgOpener, opensAPathAsItIs) {
    const OpenerProgram program;
    AppKitWorkspace workspace(std::make_unique<XdgOpener>(program.program()));
    workspace.open("/home/ann/a b $(x) 'q'.md");
    EXPECT_EQ(program.arguments(), "/home/ann/a b $(x) 'q'.md|");
}

TEST(XdgOpener, aNameIsNeitherAnOptionNorAnAddress) {
    for (const std::string name : {"--help", "https://example.invalid", "plan.md"}) {
        const OpenerProgram program;
        AppKitWorkspace workspace(std::make_unique<XdgOpener>(program.program()));
        workspace.open(name);
        EXPECT_EQ(program.arguments(), "./" + name + "|");
    }
}

TEST(XdgOpener, theOpenerGetsNothingThatIsOpenHere) {
    const int inheritable = ::fcntl(STDERR_FILENO, F_DUPFD, 100); // beyond what a shell opens for itself
    ASSERT_GE(inheritable, 100);
    const TemporaryDirectory directory;
    const std::string seen = directory / "seen";
    const OpenerProgram program("if [ -e /proc/$$/fd/" + std::to_string(inheritable) +
                                " ]; then echo open; else echo closed; fi > '" + seen + ".part'; mv '" + seen +
                                ".part' '" + seen + "'");
    AppKitWorkspace workspace(std::make_unique<XdgOpener>(program.program()));
    workspace.open("/a");
    EXPECT_TRUE(driver::pumpUntil([&] { return std::filesystem::exists(seen); }));
    std::string word;
    std::ifstream(seen) >> word;
    EXPECT_EQ(word, "closed");
    ::close(inheritable);
}

TEST(XdgOpener, revealsByOpeningTheDirectoryAround) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"/home/ann/plan.md", "/home/ann|"}, {"/plan.md", "/|"}, {"plan.md", "/|"}};
    for (const auto& [path, expected] : cases) {
        const OpenerProgram program;
        AppKitWorkspace workspace(std::make_unique<XdgOpener>(program.program()));
        workspace.reveal(path);
        EXPECT_EQ(program.arguments(), expected);
    }
}

TEST(XdgOpener, neverWaitsForTheOpener) {
    const OpenerProgram program("kill -STOP $$"); // until it is killed
    XdgOpener opener(program.program());
    opener.open("/a");
    opener.open("/b");
    ASSERT_EQ(opener.running().size(), 2U);
    for (const pid_t child : opener.running()) {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
}

TEST(XdgOpener, collectsOpenersThatAreDoneWhenTheNextOneStarts) {
    const OpenerProgram program;
    XdgOpener opener(program.program());
    opener.open("/a");
    ASSERT_EQ(opener.running().size(), 1U);
    const pid_t first = opener.running().front();
    siginfo_t info{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(first), &info, WEXITED | WNOWAIT), 0);
    opener.open("/b");
    ASSERT_EQ(opener.running().size(), 1U);
    EXPECT_NE(opener.running().front(), first);
    ::waitpid(opener.running().front(), nullptr, 0);
}

TEST(XdgOpener, saysInOneLineWhatCannotBeOpened) {
    XdgOpener opener("/nonexistent/opener");
    ::testing::internal::CaptureStderr();
    opener.open("/home/ann/plan.md");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "ostrel-menubar: cannot open /home/ann/plan.md: /nonexistent/opener: No such file or directory\n");
    EXPECT_TRUE(opener.running().empty());
}

} // namespace
} // namespace menubar
