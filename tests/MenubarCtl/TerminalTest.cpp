#include "MenubarCtl/Terminal.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace menubar;
using namespace menubar::ctl;

TEST(Styling, onlyATerminalGetsEscapes) {
    EXPECT_EQ(stylingFor(false, {}), Styling::plain);
    EXPECT_EQ(stylingFor(true, {}), Styling::colours);
    EXPECT_EQ(stylingFor(true, {{"TERM", "xterm-256color"}}), Styling::colours);
    EXPECT_EQ(stylingFor(true, {{"TERM", "dumb"}}), Styling::plain);
}

TEST(Styling, noColorForbidsColoursUnlessItIsEmpty) {
    EXPECT_EQ(stylingFor(true, {{"NO_COLOR", "1"}}), Styling::weights);
    EXPECT_EQ(stylingFor(true, {{"NO_COLOR", "0"}}), Styling::weights);
    EXPECT_EQ(stylingFor(true, {{"NO_COLOR", ""}}), Styling::colours);
    EXPECT_EQ(stylingFor(false, {{"NO_COLOR", ""}}), Styling::plain);
}

TEST(Styling, theChoiceOfTheCommandLineGoesBeforeTheEnvironmentAndThatBeforeTheTerminal) {
    const Environment none{{"NO_COLOR", "1"}, {"CLICOLOR_FORCE", "1"}};
    EXPECT_EQ(stylingFor(false, none, ColorChoice::always), Styling::colours);
    EXPECT_EQ(stylingFor(true, {}, ColorChoice::never), Styling::weights);
    EXPECT_EQ(stylingFor(false, {{"CLICOLOR_FORCE", "1"}}, ColorChoice::never), Styling::plain);
    EXPECT_EQ(stylingFor(true, none), Styling::weights);
    EXPECT_EQ(stylingFor(false, none), Styling::plain);
    EXPECT_EQ(stylingFor(false, {{"CLICOLOR_FORCE", "1"}}), Styling::colours);
    EXPECT_EQ(stylingFor(true, {{"CLICOLOR_FORCE", "1"}, {"TERM", "dumb"}}), Styling::colours);
    EXPECT_EQ(stylingFor(false, {{"CLICOLOR_FORCE", "0"}}), Styling::plain);
    EXPECT_EQ(stylingFor(false, {{"CLICOLOR_FORCE", ""}}), Styling::plain);
}

TEST(Terminal, whatIsNoTerminalHasEightyColumns) {
    const int file = ::open("/dev/null", O_RDWR);
    ASSERT_GE(file, 0);
    EXPECT_FALSE(isTerminal(file));
    EXPECT_EQ(terminalSize(file).columns, 80U);
    ::close(file);
}

TEST(WriteAll, writesWhatAFullPipeAtFirstDoesNotTake) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const int flags = ::fcntl(ends[1], F_GETFL);
    ::fcntl(ends[1], F_SETFL, flags | O_NONBLOCK);
    const std::string bytes(300'000, 'x'); // more than any pipe holds
    const pid_t writer = ::fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        ::close(ends[0]);
        ::_exit(writeAll(ends[1], bytes) ? 0 : 1);
    }
    ::close(ends[1]);
    std::size_t total = 0;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
        total += static_cast<std::size_t>(count);
    }
    ::close(ends[0]);
    int status = -1;
    ::waitpid(writer, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(total, bytes.size());
}

TEST(WriteAll, tellsThatTheReaderHasGone) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    ::close(ends[0]);
    const auto previous = std::signal(SIGPIPE, SIG_IGN);
    const auto written = writeAll(ends[1], "x");
    std::signal(SIGPIPE, previous);
    ::close(ends[1]);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), EPIPE);
}
