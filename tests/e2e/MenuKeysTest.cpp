// The menu on a terminal, used with the keyboard.

#include "tests/e2e/Eventually.h"
#include "tests/e2e/ScratchHome.h"
#include "tests/support/RecordedCalls.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace menubar;
using menubar::e2e::ChildProcess;
using menubar::e2e::contains;
using menubar::e2e::eventually;
using menubar::e2e::ScratchHome;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr const char* const down = "\x1b[B";
constexpr const char* const enter = "\x1b[?1049h\x1b[?7l\x1b[?25l";
constexpr const char* const leave = "\x1b[?25h\x1b[?7h\x1b[?1049l";
constexpr const char* const selected = "\x1b[7m";

/// Whether the last frame has the part.
auto shows(std::string part) {
    return [part = std::move(part)](const std::string& output) {
        const std::size_t frame = output.rfind("\x1b[H");
        return frame != std::string::npos && output.find(part, frame) != std::string::npos;
    };
}

class MenuKeys : public testing::Test {
protected:
    MenuKeys() {
        home.environment["PATH"] = std::string(DEMO_TOOLS) + ":/usr/bin:/bin";
        home.environment["OSTREL_DEMO_RECORD"] = home / "record";
        home.environment["TERM"] = "xterm";
        const std::string handoff = home.write("hand-off.md", "# what is next\n");
        home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","sessions":[
            {"dirName":"web","level":"ok","contextPct":90,"workspaceId":"w2"},
            {"dirName":"api","level":"ok","contextPct":5,"workspaceId":"w1","handoff":{"path":")" +
                         handoff + R"("}}]})");
    }

    [[nodiscard]] ChildProcess::Options menu(unsigned short columns = 60, unsigned short rows = 30) const {
        auto options = home.menubarctl({"menu", "--watch"});
        options.arguments.insert(options.arguments.end(), ScratchHome::fixedTime.begin(), ScratchHome::fixedTime.end());
        options.program = DEMO_MENUBARCTL_PROGRAM;
        options.output = ChildProcess::Output::terminal;
        options.columns = columns;
        options.rows = rows;
        return options;
    }

    static void quit(ChildProcess& child) {
        child.type("q");
        EXPECT_EQ(child.wait(), 0);
        EXPECT_THAT(child.output(), EndsWith(leave));
        EXPECT_EQ(child.errors(), "");
    }

    ScratchHome home;
};

/// Preferences that may be written: of this test alone, wherever the system keeps them.
class OwnPreferences {
public:
    explicit OwnPreferences(ScratchHome& home) : m_home(home) {
        m_home.environment["OSTREL_MENUBAR_DEFAULTS_DOMAIN"] = domain();
    }

    OwnPreferences(const OwnPreferences&) = delete;
    OwnPreferences& operator=(const OwnPreferences&) = delete;

    ~OwnPreferences() {
#if defined(__APPLE__)
        // Its status is not looked at: a test that failed may have stored nothing.
        (void)ScratchHome::run(
            {.program = "/usr/bin/defaults", .arguments = {"delete", domain()}, .environment = m_home.environment});
#endif
    }

private:
    [[nodiscard]] std::string domain() const {
        return std::string(ScratchHome::defaultsDomain) + "." +
               std::filesystem::path(m_home.path()).filename().string();
    }

    ScratchHome& m_home;
};

} // namespace

TEST_F(MenuKeys, returnOnASessionBringsItsTerminalForward) {
    ChildProcess child(menu());
    ASSERT_TRUE(child.readUntil(contains("q ends")));
    child.type(std::string(down) + "j");
    ASSERT_TRUE(child.readUntil(shows(std::string(selected) + "  api")));
    child.type("\r");
    const std::vector<std::string> expected{"quiet cmux <select-workspace> <--workspace> <w1>"};
    EXPECT_TRUE(eventually([&] { return testing_support::recordedCalls(home / "record") == expected; }));
    quit(child);
}

TEST_F(MenuKeys, aProgramThatFailsIsSaidInTheLastLine) {
    home.environment["OSTREL_DEMO_FAIL"] = "select-workspace";
    ChildProcess child(menu(120));
    ASSERT_TRUE(child.readUntil(contains("q ends")));
    child.type("j\r");
    EXPECT_TRUE(child.readUntil(shows("exit 1: ")));
    quit(child);
}

TEST_F(MenuKeys, aHandoffIsReadWithThePagerAndTheMenuComesBack) {
    const std::string pager =
        home.write("pager", "#!/bin/sh\necho \"reading $1 $2\"\nread -r line\necho \"typed $line\"\n");
    ASSERT_EQ(::chmod(pager.c_str(), 0755), 0);
    home.environment["PAGER"] = pager + " -x";
    ChildProcess child(menu());
    ASSERT_TRUE(child.readUntil(contains("q ends")));
    child.type("jjj");
    ASSERT_TRUE(child.readUntil(shows(std::string(selected) + "  Open handoff · api")));
    child.type("\r");
    ASSERT_TRUE(child.readUntil(contains(std::string(leave) + "reading -x " + home / "hand-off.md")));
    child.type("hello\n");
    ASSERT_TRUE(child.readUntil(contains("typed hello")));
    ASSERT_TRUE(child.readUntil([](const std::string& output) {
        return output.rfind("q ends") > output.find("typed hello") && output.rfind("q ends") != std::string::npos;
    }));
    quit(child);
}

TEST_F(MenuKeys, iconOnlyIsStoredWhereTheAppSeesIt) {
    const OwnPreferences preferences(home);
    ChildProcess child(menu());
    ASSERT_TRUE(child.readUntil(contains("q ends")));
    child.type("\x1b[F"
               "k");
    ASSERT_TRUE(child.readUntil(shows(std::string(selected) + "  Icon only")));
    child.type("\r");
    EXPECT_TRUE(child.readUntil(shows("✓ Icon only")));
    EXPECT_THAT(home.atFixedTime({"status"}).output, HasSubstr("Icon only:   on (stored)\n"));
    quit(child);
}

TEST_F(MenuKeys, controlZGivesTheTerminalBackAndTheSelectionStays) {
    ChildProcess child(menu());
    ASSERT_TRUE(child.readUntil(contains("q ends")));
    child.type("j");
    ASSERT_TRUE(child.readUntil(shows(std::string(selected) + "  web")));
    child.send(SIGTSTP);
    ASSERT_TRUE(child.waitUntilStopped());
    child.send(SIGCONT);
    ASSERT_TRUE(child.readUntil([](const std::string& output) {
        const std::size_t back = output.find(std::string(leave) + enter);
        return back != std::string::npos && shows(std::string(selected) + "  web")(output) &&
               output.rfind(std::string(selected) + "  web") > back;
    }));
    quit(child);
}
