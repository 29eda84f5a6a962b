#include "tests/e2e/ScratchHome.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::e2e::ChildProcess;
using menubar::e2e::ScratchHome;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* critical =
    R"({"at":"2025-03-04T10:15:33Z","sessions":[{"dirName":"web","level":"critical","contextPct":93}]})";

/// Runs a command at the fixed time on a terminal.
std::string onTerminal(const ScratchHome& home, std::vector<std::string> arguments, unsigned short columns = 80) {
    arguments.insert(arguments.end(), ScratchHome::fixedTime.begin(), ScratchHome::fixedTime.end());
    auto options = home.menubarctl(std::move(arguments));
    options.output = ChildProcess::Output::terminal;
    options.columns = columns;
    const auto result = ScratchHome::run(options);
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
}

} // namespace

TEST(OnATerminal, tonesAreColouredAndDisabledItemsDim) {
    const ScratchHome home;
    home.writeStatus(critical);
    const std::string menu = onTerminal(home, {"menu"});
    EXPECT_THAT(menu, HasSubstr("\x1b[1;31m▲ 93%\x1b[0m"));
    EXPECT_THAT(menu, HasSubstr("\r\n  Refresh\r\n"));
    EXPECT_THAT(onTerminal(home, {"status"}), HasSubstr("\x1b[1;31m▲ 93%\x1b[0m"));
}

TEST(OnATerminal, sessionsFitItsWidth) {
    const ScratchHome home;
    home.writeStatus(
        R"({"at":"2025-03-04T10:15:33Z","sessions":[{"level":"ok","contextPct":5,"lifecycle":"needsInput",)"
        R"("cacheExpiresAt":"2025-03-04T10:20:33Z","dirName":"a-name-that-is-much-too-long-for-it"}]})");
    const std::string line = onTerminal(home, {"sessions"}, 60);
    EXPECT_THAT(line, HasSubstr("\x1b[32m◉\x1b[0m"));
    EXPECT_THAT(line, HasSubstr(" a-name-that-is…    5%  needs input  cache expires in 5m\x1b[0m\r\n"));
}

TEST(OnATerminal, aSavedSettingSaysWhatHasToHappenNext) {
    ScratchHome home;
    home.environment["OSTREL_CLI"] = DEMO_PROGRAM;
    home.write(".config/ostrel/config.json", "{}");
    const std::string hint = "restart the daemon to apply: ostrel-menubarctl daemon restart\n";
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"settings", "set", "warn-context", "45%"}, {"settings", "reset", "warn-context"}}) {
        auto options = home.menubarctl(arguments);
        EXPECT_EQ(ScratchHome::run(options).errors, "");
        options.output = ChildProcess::Output::terminal;
        const auto result = ScratchHome::run(options);
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(result.output, testing::StartsWith("settings saved to "));
        EXPECT_EQ(result.errors, hint);
    }
}

TEST(OnATerminal, jsonHoldsNothingThatTheTerminalObeys) {
    const ScratchHome home;
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z","sessions":[{"dirName":"\u009b31m\u202ex\u007f"}]})");
    const std::string json = onTerminal(home, {"menu", "--json"});
    EXPECT_THAT(json, HasSubstr(R"("title":"[unknown] \u009b31m\u202ex\u007f · unknown)"));
    EXPECT_THAT(json, Not(HasSubstr("\u009B")));
}

TEST(OnATerminal, diagnosticLinesHoldNothingThatTheTerminalObeys) {
    const ScratchHome home;
    auto options = home.menubarctl(
        {"-c", R"(exec "$0" status --verbose --status-file "$1" 2>&1)", MENUBARCTL_PROGRAM, "/no/\x1b[31m\u202Esuch"});
    options.program = "/bin/sh";
    options.output = ChildProcess::Output::terminal;
    const auto result = ScratchHome::run(options);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("ostrel-menubar: watching /no/\uFFFD[31m\uFFFDsuch\r\n"));
}

TEST(AwayFromATerminal, thereAreNoEscapesAndNothingIsCut) {
    const ScratchHome home;
    const std::string name(300, 'x');
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z","sessions":[{"level":"critical","contextPct":93,"dirName":")" +
                     name + "\"}]}");
    const std::string menu = home.atFixedTime({"menu"}).output;
    EXPECT_THAT(menu, Not(HasSubstr("\x1b")));
    EXPECT_THAT(menu, HasSubstr("\n  [critical] " + name + " · unknown · 93% · unknown\n"));
    EXPECT_EQ(home.atFixedTime({"sessions"}).output, "1  ▲ " + name + "   93%  unknown\n");
}

TEST(AwayFromATerminal, coloursComeWhenTheyAreAskedFor) {
    ScratchHome home;
    home.writeStatus(critical);
    EXPECT_THAT(home.atFixedTime({"menu", "--color", "always"}).output, HasSubstr("\x1b[1;31m▲ 93%\x1b[0m"));
    home.environment["CLICOLOR_FORCE"] = "1";
    EXPECT_THAT(home.atFixedTime({"sessions"}).output, HasSubstr("\x1b[31m▲\x1b[0m"));
}
