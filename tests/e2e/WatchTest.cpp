#include "tests/e2e/ReadMark.h"
#include "tests/e2e/ScratchHome.h"

#include <chrono>
#include <csignal>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::e2e::ChildProcess;
using menubar::e2e::contains;
using menubar::e2e::ReadMark;
using menubar::e2e::ScratchHome;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* enter = "\x1b[?1049h\x1b[?7l\x1b[?25l";
constexpr const char* leave = "\x1b[?25h\x1b[?7h\x1b[?1049l";

ChildProcess::Options watchOn(const ScratchHome& home, ChildProcess::Output output) {
    auto options = home.menubarctl({"menu", "--watch"});
    options.output = output;
    return options;
}

auto endsWith(std::string part) {
    return [part = std::move(part)](const std::string& output) { return output.ends_with(part); };
}

/// The last frame of a screen's output.
std::string lastFrame(const std::string& output) {
    const std::size_t at = output.rfind("\x1b[H");
    return at == std::string::npos ? "" : output.substr(at);
}

} // namespace

TEST(MenuWatch, takesTheTerminalOverAndGivesItBackOnInterrupt) {
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
        const ScratchHome home;
        ChildProcess watch(watchOn(home, ChildProcess::Output::terminal));
        ASSERT_TRUE(watch.readUntil(contains("Quit")));
        EXPECT_THAT(watch.output(), StartsWith(std::string(enter) + "\x1b[H"));
        EXPECT_THAT(watch.output(), Not(HasSubstr(leave)));
        watch.send(signal);
        EXPECT_EQ(watch.wait(), 0);
        EXPECT_THAT(watch.output(), EndsWith(leave));
        EXPECT_EQ(watch.errors(), "");
    }
}

TEST(MenuWatch, redrawsInPlaceAndFollowsTheFile) {
    const ScratchHome home;
    ChildProcess watch(watchOn(home, ChildProcess::Output::terminal));
    ASSERT_TRUE(watch.readUntil(contains("Daemon not running")));
    home.writeStatus(R"({"stoppedAt":"2025-03-04T10:15:33Z"})");
    ASSERT_TRUE(watch.readUntil(contains("Daemon stopped at 10:15")));
    // The old frame is written over, never cleared first: that would flicker.
    EXPECT_THAT(watch.output(), Not(HasSubstr("\x1b[2J")));
    // What was there is erased before a line is written: after one that fills the row it would take its last column.
    ASSERT_TRUE(watch.readUntil(endsWith("q ends\x1b[0m")));
    const std::string frame = lastFrame(watch.output());
    EXPECT_THAT(frame, StartsWith("\x1b[H\x1b[K  \x1b[2m⊘ --"));
    EXPECT_THAT(frame, HasSubstr("\r\n\x1b[J\x1b[2m  ↑↓ move"));
}

TEST(MenuWatch, followsTheSizeOfTheWindow) {
    const ScratchHome home;
    auto options = watchOn(home, ChildProcess::Output::terminal);
    options.rows = 40;
    ChildProcess watch(options);
    ASSERT_TRUE(watch.readUntil(contains("Quit")));
    watch.resizeTerminal(30, 5);
    ASSERT_TRUE(watch.readUntil(endsWith("\x1b[2m  q ends\x1b[0m")));
    EXPECT_THAT(lastFrame(watch.output()), Not(HasSubstr("Quit")));
    watch.resizeTerminal(80, 9);
    EXPECT_TRUE(watch.readUntil(contains("more lines · ")));
}

TEST(MenuWatch, intoAPipeWritesFramesApartByAnEmptyLine) {
    const ScratchHome home;
    home.writeStatus(R"({"stoppedAt":"2025-03-04T10:15:33Z"})");
    ChildProcess watch(watchOn(home, ChildProcess::Output::pipe));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(watch.readUntil(contains("\n\n  ⊘ --\n")));
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2500));
    EXPECT_THAT(watch.output(), StartsWith("  ⊘ --\n"));
    EXPECT_THAT(watch.output(), Not(HasSubstr("\x1b")));
    watch.send(SIGINT);
    EXPECT_EQ(watch.wait(), 0);
}

TEST(MenuWatch, endsAtOnceAndQuietlyWhenTheReaderGoes) {
    const ScratchHome home;
    home.writeStatus("{}");
    const ReadMark mark(home.statusFile());
    if (!mark.isKept()) {
        GTEST_SKIP() << ReadMark::whyNot;
    }
    bool hasLooked = true;
    // On a busy machine the time for a look may come before the end is noticed, though not again and again.
    for (int attempt = 0; hasLooked && attempt < 5; ++attempt) {
        ChildProcess watch(watchOn(home, ChildProcess::Output::pipe));
        ASSERT_TRUE(watch.readUntil(contains("Quit")));
        mark.set();
        watch.closeOutput();
        EXPECT_EQ(watch.wait(), 0);
        EXPECT_EQ(watch.errors(), "");
        hasLooked = mark.wasRead();
    }
    EXPECT_FALSE(hasLooked) << "it ends only when it looks at the file again";
}

TEST(MenuWatch, tenThousandSessionsFillTheScreenAndNoMore) {
    const ScratchHome home;
    std::string sessions;
    for (int i = 0; i < 10'000; ++i) {
        sessions += std::string(i == 0 ? "" : ",") + R"({"level":"ok"})";
    }
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z","sessions":[)" + sessions + "]}");
    ChildProcess watch(watchOn(home, ChildProcess::Output::terminal));
    ASSERT_TRUE(watch.readUntil(contains("more lines")));
    EXPECT_LT(watch.output().size(), 20'000U);
}
