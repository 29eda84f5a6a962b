#include "MenubarCtl/MenuScreen.h"

#include "MenubarCore/Text/DisplayColumns.h"

#include "tests/MenubarCtl/Scene.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string session(const std::string& id, int percent) {
    return R"({"level":"ok","workspaceId":"w","sessionId":")" + id + R"(","dirName":")" + id + R"(","contextPct":)" +
           std::to_string(percent) + "}";
}

class MenuScreenTest : public testing::Test {
protected:
    void show(const std::string& sessions) {
        const Scene scene(running(sessions));
        screen.setPresentation(scene.poll.presentation);
        screen.setMenu(scene.menu);
    }

    void press(std::initializer_list<Key> keys) {
        for (const Key key : keys) {
            screen.move(key);
        }
    }

    /// The title of the item that Return would choose; "-" for none.
    std::string chosen() {
        const MenuItem* item = screen.choose();
        return item == nullptr ? "-" : item->title.substr(0, item->title.find(" ·"));
    }

    /// The lines as a person sees them, the selected one marked.
    [[nodiscard]] std::vector<std::string> seen() const {
        std::vector<std::string> lines = screen.lines(Styling::weights);
        for (std::string& line : lines) {
            const bool isSelected = line.starts_with("\x1b[7m");
            std::string plain;
            for (std::size_t at = 0; at < line.size(); ++at) {
                if (line[at] == '\x1b') {
                    at = line.find('m', at);
                } else {
                    plain += line[at];
                }
            }
            plain = plain.substr(0, plain.find_last_not_of(' ') + 1);
            line = isSelected ? ">" + plain.substr(1) : plain;
        }
        return lines;
    }

    MenuScreen screen;
};

} // namespace

TEST_F(MenuScreenTest, showsTheItemTheMenuAndTheKeys) {
    screen.resize({.columns = 60, .rows = 40});
    show(session("api", 42));
    const auto lines = seen();
    EXPECT_EQ(lines[0], "  ◉ 42%");
    EXPECT_EQ(lines[2], "  Daemon running (last poll 3s ago)");
    EXPECT_EQ(lines.back(), "  ↑↓ move · Return chooses · q ends");
    EXPECT_EQ(chosen(), "-");
}

TEST_F(MenuScreenTest, theKeysMoveOverTheItemsThatCanBeChosen) {
    screen.resize({.columns = 60, .rows = 40});
    show(session("api", 42) + "," + session("web", 7) + R"(,{"dirName":"lost"})");
    press({Key::down});
    EXPECT_EQ(chosen(), "api");
    press({Key::down});
    EXPECT_EQ(chosen(), "web");
    press({Key::down});
    EXPECT_EQ(chosen(), "Refresh");
    press({Key::down});
    EXPECT_EQ(chosen(), "Icon only");
    press({Key::down});
    EXPECT_EQ(chosen(), "Open status file");
    press({Key::down});
    EXPECT_EQ(chosen(), "Open status file");
    press({Key::home});
    EXPECT_EQ(chosen(), "api");
    press({Key::up});
    EXPECT_EQ(chosen(), "api");
    press({Key::end, Key::up});
    EXPECT_EQ(chosen(), "Icon only");
}

TEST_F(MenuScreenTest, whatNeedsADesktopIsDimmed) {
    screen.resize({.columns = 60, .rows = 40});
    show("");
    EXPECT_THAT(screen.lines(Styling::weights),
                testing::AllOf(testing::Contains("  \x1b[2mSettings...\x1b[0m"),
                               testing::Contains("  \x1b[2mQuit\x1b[0m"), testing::Contains("  Refresh")));
}

TEST_F(MenuScreenTest, theSelectionFollowsItsItemWhenTheMenuIsMadeAnew) {
    screen.resize({.columns = 60, .rows = 40});
    show(session("api", 42) + "," + session("web", 7));
    press({Key::down, Key::down});
    show(session("api", 42) + "," + session("web", 90));
    EXPECT_EQ(chosen(), "web");
    EXPECT_THAT(seen()[5], testing::StartsWith("> web"));
    show(session("api", 42));
    EXPECT_EQ(chosen(), "api");
    show("");
    EXPECT_EQ(chosen(), "Refresh");
}

TEST_F(MenuScreenTest, aSmallTerminalShowsAPartAndEveryLineCanBeReached) {
    screen.resize({.columns = 40, .rows = 10});
    std::string sessions = session("s0", 90);
    for (int i = 1; i < 8; ++i) {
        sessions += "," + session("s" + std::to_string(i), 80 - i);
    }
    show(sessions);
    EXPECT_THAT(seen(), ElementsAre("  ◉ 90%", "  ────────────────────────────────────",
                                    "  Daemon running (last poll 3s ago)", "  No config in status file",
                                    "  ────────────────────────────────────", "  s0 · unknown · 90% · unknown",
                                    "  s1 · unknown · 79% · unknown", "  s2 · unknown · 78% · unknown",
                                    "  s3 · unknown · 77% · unknown", "  ↑↓ move · Return chooses · q ends"));
    std::string everything;
    const auto collect = [&] {
        const auto lines = seen();
        EXPECT_EQ(lines.size(), 10U);
        for (std::size_t i = 2; i + 1 < lines.size(); ++i) {
            EXPECT_LE(displayColumns(lines[i]), 40U);
            everything += lines[i] + "\n";
        }
    };
    for (int i = 0; i < 20; ++i) {
        collect();
        press({Key::down});
    }
    EXPECT_EQ(chosen(), "Open status file");
    for (const char* title : {"s7 ·", "No handoffs", "Recent events", "No events yet", "Refresh", "Quit"}) {
        EXPECT_THAT(everything, HasSubstr(title));
    }
    everything.clear();
    for (int i = 0; i < 20; ++i) {
        press({Key::up});
        collect();
    }
    EXPECT_EQ(chosen(), "s0");
    EXPECT_EQ(seen()[2], "  Daemon running (last poll 3s ago)");
}

TEST_F(MenuScreenTest, pagesGoByScreenfuls) {
    screen.resize({.columns = 40, .rows = 13});
    std::string sessions = session("s00", 90);
    for (int i = 1; i < 50; ++i) {
        sessions += "," + session((i < 10 ? "s0" : "s") + std::to_string(i), 80 - i);
    }
    show(sessions);
    press({Key::down, Key::pageDown});
    EXPECT_EQ(chosen(), "s09");
    press({Key::pageDown, Key::pageDown});
    EXPECT_EQ(chosen(), "s27");
    press({Key::pageUp});
    EXPECT_EQ(chosen(), "s18");
    press({Key::pageUp, Key::pageUp, Key::pageUp});
    EXPECT_EQ(chosen(), "s00");
    press({Key::end});
    EXPECT_EQ(chosen(), "Open status file");
}

TEST_F(MenuScreenTest, whatIsOutOfViewIsBroughtIntoViewBeforeItCanBeChosen) {
    screen.resize({.columns = 40, .rows = 7});
    show(session("api", 42));
    press({Key::down});
    EXPECT_EQ(chosen(), "api");
    press({Key::down, Key::down}); // the next one is further away than that
    EXPECT_EQ(chosen(), "-");
    EXPECT_EQ(chosen(), "api");
}

TEST_F(MenuScreenTest, neverExceedsTheTerminalHoweverSmallItIs) {
    show(session("api", 42) + "," + session("web", 7));
    for (unsigned rows = 1; rows < 12; ++rows) {
        for (const unsigned columns : {1U, 5U, 20U}) {
            screen.resize({.columns = columns, .rows = rows});
            press({Key::down});
            const auto lines = screen.lines(Styling::plain);
            EXPECT_LE(lines.size(), rows);
            for (const std::string& line : lines) {
                EXPECT_LE(displayColumns(line), columns) << line;
            }
        }
    }
}

TEST_F(MenuScreenTest, aMessageStandsInTheLastLineUntilTheNextKey) {
    screen.resize({.columns = 40, .rows = 10});
    show("");
    screen.setMessage("cmux\x1b[2J not found in any of the places where it is looked for");
    EXPECT_EQ(seen().back(), "  cmux\uFFFD[2J not found in any of the plac…");
    press({Key::down});
    EXPECT_THAT(seen().back(), HasSubstr("q ends"));
}

TEST_F(MenuScreenTest, drawsTenThousandSessionsNoSlowerThanAScreenful) {
    screen.resize({.columns = 40, .rows = 10});
    std::string sessions = session("x", 1);
    for (int i = 1; i < 10'000; ++i) {
        sessions += "," + session("x" + std::to_string(i), 1);
    }
    show(sessions);
    EXPECT_EQ(seen().size(), 10U);
    press({Key::end});
    EXPECT_EQ(chosen(), "Open status file");
}
