#include "MenubarCtl/TextOutput.h"

#include "MenubarCore/Text/DisplayColumns.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

using Tone = StatusItemPresentation::Tone;

MenuItem item(std::string title, bool enabled = true) {
    MenuItem result;
    result.title = std::move(title);
    result.enabled = enabled;
    return result;
}

MenuItem separator() {
    MenuItem result;
    result.kind = MenuItem::Kind::separator;
    return result;
}

StatusItemPresentation shown(Tone tone, std::string title = "93%") {
    return {.symbolName = "eye.trianglebadge.exclamationmark", .title = std::move(title), .tone = tone, .tooltip = ""};
}

StatusMenu menuOf(Menu items) {
    StatusMenu menu;
    menu.items = std::move(items);
    return menu;
}

/// The lines below the item and its separator.
std::vector<std::string> linesOf(const Menu& items, const TextStyle& style) {
    auto lines = menuLines(shown(Tone::muted), menuOf(items), style);
    lines.erase(lines.begin(), lines.begin() + 2);
    return lines;
}

constexpr TextStyle narrow{.columns = 20, .styling = Styling::plain};

} // namespace

TEST(MenuLines, beginWithTheItemAsTheMenuBarShowsIt) {
    const auto lines = menuLines(shown(Tone::critical), menuOf({item("Refresh")}), narrow);
    EXPECT_THAT(lines, ElementsAre("  ▲ 93%", "  ────────────────", "  Refresh"));
    EXPECT_EQ(menuLines(shown(Tone::critical, ""), {}, narrow)[0], "  ▲");
    StatusItemPresentation calm = shown(Tone::ok, "5%");
    calm.symbolName = "eye";
    EXPECT_EQ(menuLines(calm, {}, narrow)[0], "  ◉ 5%");
    calm.symbolName = "eye.slash";
    EXPECT_EQ(menuLines(calm, {}, narrow)[0], "  ⊘ 5%");
}

TEST(MenuLines, showCheckMarksIndentationSeparatorsAndKeys) {
    MenuItem checked = item("Icon only");
    checked.checked = true;
    MenuItem event = item("14:03 x", false);
    event.indentation = 1;
    MenuItem quit = item("Quit");
    quit.keyEquivalent = "q";
    EXPECT_THAT(linesOf({checked, event, separator(), quit}, narrow),
                ElementsAre("✓ Icon only", "    14:03 x", "  ────────────────", "  Quit           ⌘Q "));
}

TEST(MenuLines, cutTitlesToTheColumnsByTheWidthOfTheirCharacters) {
    EXPECT_THAT(linesOf({item("123456789012345678"), item("1234567890123456789"), item("日本語日本語日本語"),
                         item("日本語日本語日本語x"), item("e\u0301e\u0301")},
                        narrow),
                ElementsAre("  123456789012345678", "  12345678901234567…", "  日本語日本語日本語",
                            "  日本語日本語日本…", "  e\u0301e\u0301"));
}

TEST(MenuLines, neverCutTheMarkOfASimulatedActionAway) {
    const TextStyle style{.columns = 30, .styling = Styling::plain};
    EXPECT_THAT(linesOf({item("14:03 [ok] web: xy (dry-run)"), item("14:03 [ok] web: asked (dry-run)")}, style),
                ElementsAre("  14:03 [ok] web: xy (dry-run)", "  14:03 [ok] web: a… (dry-run)"));
}

TEST(MenuLines, aKeyKeepsItsPlaceBesideALongTitle) {
    MenuItem quit = item("Quit everything that there is");
    quit.keyEquivalent = "q";
    const auto lines = linesOf({quit}, narrow);
    EXPECT_EQ(lines[0], "  Quit everythi… ⌘Q ");
    EXPECT_EQ(displayColumns(lines[0]), 20U);
}

TEST(MenuLines, neverExceedTheColumnsHoweverFewThereAre) {
    MenuItem quit = item("Quit");
    quit.keyEquivalent = "q";
    MenuItem deep = item("日本 deep");
    deep.indentation = 3;
    for (std::size_t columns = 1; columns < 24; ++columns) {
        const TextStyle style{.columns = columns, .styling = Styling::plain};
        for (const std::string& line : menuLines(shown(Tone::ok), menuOf({quit, deep, separator()}), style)) {
            EXPECT_LE(displayColumns(line), columns) << line;
        }
    }
}

TEST(MenuLines, showNoControlOrOverrideCharacterOfATitle) {
    const auto lines = linesOf({item("a\x1b[2J\nb\u202Ec\u009Bd\te")}, {.columns = 80, .styling = Styling::plain});
    EXPECT_THAT(lines, ElementsAre("  a\uFFFD[2J\uFFFDb\uFFFDc\uFFFDd\uFFFDe"));
}

TEST(MenuLines, leaveTooltipsOut) {
    MenuItem withTooltip = item("api");
    withTooltip.tooltip = "secret";
    EXPECT_THAT(linesOf({withTooltip}, narrow), ElementsAre("  api"));
}

TEST(MenuLines, dimDisabledItemsOnATerminal) {
    const Menu menu{item("on"), item("off", false)};
    EXPECT_THAT(linesOf(menu, {.columns = 20, .styling = Styling::colours}),
                ElementsAre("  on", "  \x1b[2moff\x1b[0m"));
    EXPECT_THAT(linesOf(menu, {.columns = 20, .styling = Styling::weights}),
                ElementsAre("  on", "  \x1b[2moff\x1b[0m"));
    EXPECT_THAT(linesOf(menu, narrow), ElementsAre("  on", "  off"));
}

TEST(MenuLines, colourTheItemByItsToneAndASessionsMarkByItsLevel) {
    StatusMenu menu = menuOf({item("[critical] web"), item("[unknown] db"), item("[warn] api", false)});
    menu.sessions.resize(3);
    const std::vector levels{SessionLevel::critical, SessionLevel::unknown, SessionLevel::warn};
    for (std::size_t i = 0; i < 3; ++i) {
        menu.items[i].tag = static_cast<int>(i) + 1;
        menu.sessions[i].level = levels[i];
    }
    const auto colours = menuLines(shown(Tone::critical), menu, {.columns = 40, .styling = Styling::colours});
    EXPECT_EQ(colours[0], "  \x1b[1;31m▲ 93%\x1b[0m");
    EXPECT_EQ(colours[2], "  \x1b[31m[critical]\x1b[0m web");
    EXPECT_EQ(colours[3], "  [unknown] db");
    EXPECT_EQ(colours[4], "  \x1b[2;33m[warn]\x1b[0m\x1b[2m api\x1b[0m");
    const auto weights = menuLines(shown(Tone::critical), menu, {.columns = 40, .styling = Styling::weights});
    EXPECT_EQ(weights[0], "  \x1b[1m▲ 93%\x1b[0m");
    EXPECT_EQ(weights[2], "  [critical] web");
}

TEST(MenuLines, aBracketInTheTitleOfAnotherItemStaysPlain) {
    EXPECT_THAT(linesOf({item("[critical] config")}, {.columns = 40, .styling = Styling::colours}),
                ElementsAre("  [critical] config"));
}

TEST(MenuLines, areWholeForAReaderThatIsNoTerminal) {
    MenuItem quit = item("Quit");
    quit.keyEquivalent = "q";
    const std::string longName(300, 'x');
    const TextStyle style{.columns = 20, .styling = Styling::plain, .cuts = false};
    EXPECT_THAT(linesOf({item(longName), item("14:03 [ok] web: asked for more (dry-run)"), separator(), quit}, style),
                ElementsAre("  " + longName, "  14:03 [ok] web: asked for more (dry-run)", "  ────────────────",
                            "  Quit           ⌘Q "));
}

TEST(StatusText, tellsStateNoticesItemAndWhereTheFileIs) {
    StatusFile file;
    file.config.emplace();
    file.sessions.resize(2);
    file.configFile.emplace();
    file.configFile->changedSinceLoad = true;
    StatusPoll poll;
    poll.snapshot = StatusSnapshot::loaded(file);
    poll.state = DaemonState::Running{.pollAge = 3};
    poll.presentation = {.symbolName = "eye", .title = "72%", .tone = Tone::ok, .tooltip = "all is well"};
    EXPECT_EQ(statusText(poll, "/home/a/s.json", TimeZone(), Styling::plain),
              "Daemon running (last poll 3s ago)\n"
              "warn -- · critical -- · messaging off\n"
              "Notice:      Restart daemon to apply settings\n"
              "Item:        ◉ 72%\n"
              "Tooltip:     all is well\n"
              "Sessions:    2\n"
              "Icon only:   off (built in)\n"
              "Status file: /home/a/s.json\n");
}

TEST(StatusText, isSafeForATerminal) {
    StatusPoll poll;
    poll.state = DaemonState::Unreadable{.reason = "bad \x1b[31m\nfile"};
    const std::string text = statusText(poll, "/tmp/\x07\xFF", TimeZone(), Styling::plain);
    EXPECT_THAT(text, HasSubstr("\nbad \uFFFD[31m\uFFFDfile\n"));
    EXPECT_THAT(text, HasSubstr("Status file: /tmp/\uFFFD\uFFFD\n"));
    EXPECT_THAT(text, Not(HasSubstr("\x1b")));
}

TEST(StatusText, saysWhoDecidedOnIconOnly) {
    StatusPoll poll;
    poll.compact = {.compact = true, .source = CompactSetting::Source::environment};
    EXPECT_THAT(statusText(poll, "/s", TimeZone(), Styling::plain),
                HasSubstr("Icon only:   on (set by OSTREL_MENUBAR_COMPACT)\n"));
    poll.compact = {.compact = true, .source = CompactSetting::Source::defaults};
    EXPECT_THAT(statusText(poll, "/s", TimeZone(), Styling::plain), HasSubstr("Icon only:   on (stored)\n"));
}
