// One line for the status bars of other programs, and the real tmux where there is one.

#include "MenubarCore/JSON/JSONValue.h"

#include "tests/e2e/ScratchHome.h"

#include <csignal>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::JSONValue;
using menubar::e2e::ChildProcess;
using menubar::e2e::contains;
using menubar::e2e::ScratchHome;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* hostile = R"({"at":"2025-03-04T10:15:30Z","sessions":[{"sessionId":"id-1","workspaceId":"w",
    "dirName":"#(touch \"$HOME/hit\")#[fg=red]%{A:x:}<b> | bash=x","level":"warn","contextPct":81,
    "lifecycle":"needsInput"}]})";

} // namespace

TEST(BarCommand, printsALineInEachFormatAndIsAlwaysDone) {
    const ScratchHome home;
    home.writeStatus(hostile);
    EXPECT_EQ(home.atFixedTime({"bar", "plain"}).output, "▲ 81% 1 waiting\n");
    EXPECT_EQ(home.atFixedTime({"bar", "tmux"}).output, "#[fg=#ff9500]▲ 81% 1 waiting#[default]\n");
    EXPECT_THAT(home.atFixedTime({"bar", "swiftbar"}).output,
                HasSubstr(" | bash=\"" + std::filesystem::canonical(MENUBARCTL_PROGRAM).string() +
                          "\" param1=focus param2=id-1 terminal=false refresh=true"));
    for (const char* format : {"plain", "tmux", "waybar", "polybar", "swiftbar"}) {
        const auto broken = home.atFixedTime({"bar", format, "--status-file", "/dev/null/x"});
        EXPECT_EQ(broken.status, 0);
        EXPECT_EQ(broken.errors, "");
    }
}

TEST(BarCommand, watchedPrintsALineOnlyWhenItHasChanged) {
    const ScratchHome home;
    home.writeStatus(hostile);
    auto options = home.menubarctl({"bar", "plain", "--watch"});
    options.arguments.insert(options.arguments.end(), ScratchHome::fixedTime.begin(), ScratchHome::fixedTime.end());
    ChildProcess child(options);
    ASSERT_TRUE(child.readUntil(contains("waiting\n")));
    home.writeStatus(R"({"at":"2025-03-04T10:15:31Z","sessions":[{"level":"ok","contextPct":7}]})");
    ASSERT_TRUE(child.readUntil(contains("7%\n")));
    EXPECT_EQ(child.output(), "▲ 81% 1 waiting\n◉ 7%\n");
    child.send(SIGTERM);
    EXPECT_EQ(child.wait(), 0);
}

TEST(BarCommand, watchedForSwiftbarEndsEachUpdate) {
    const ScratchHome home;
    home.writeStatus(hostile);
    ChildProcess child(home.menubarctl({"bar", "swiftbar", "--watch"}));
    ASSERT_TRUE(child.readUntil(contains("\n~~~\n")));
    child.closeOutput();
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(child.errors(), "");
}

TEST(BarCommand, tmuxShowsTheLineAndNothingThatASessionIsCalledRuns) {
    const std::string program = ScratchHome::installed("tmux");
    if (program.empty()) {
        GTEST_SKIP() << "tmux is not installed";
    }
    ScratchHome home;
    home.writeStatus(hostile);
    const std::string line = std::string(MENUBARCTL_PROGRAM) + " bar tmux --now 2025-03-04T10:15:33Z";
    home.write(".tmux.conf",
               "set -g status-interval 1\nset -g status-right-length 60\nset -g status-right \"[#(" + line + ")]\"\n");
    home.environment["TERM"] = "xterm-256color";
    home.environment["LC_ALL"] = ScratchHome::utf8Locale;
    auto options = home.menubarctl({"-S", home / "tmux.socket", "-f", home / ".tmux.conf", "new-session", "cat"});
    options.program = program;
    options.output = ChildProcess::Output::terminal;
    ChildProcess tmux(options);
    ASSERT_TRUE(tmux.readUntil(contains("▲ 81% 1 waiting"))) << tmux.output();
    // The tone's colour, as tmux says it to a terminal of 256: the nearest of those.
    EXPECT_THAT(tmux.output(), testing::ContainsRegex("38;5;208m[^\x1b]*▲ 81% 1 waiting|\x1b\\[38;5;208m"));
    auto kill = home.menubarctl({"-S", home / "tmux.socket", "kill-server"});
    kill.program = program;
    EXPECT_EQ(ScratchHome::run(kill).status, 0);
    (void)tmux.wait();
    EXPECT_FALSE(std::filesystem::exists(home / "hit"));
}
