#include "MenubarCore/Menu/MenuItem.h"

#include "tests/support/MenuDump.h"

#include <set>
#include <string_view>

#include <gtest/gtest.h>

using namespace menubar;

TEST(MenuDump, anEmptyMenuIsEmpty) {
    EXPECT_EQ(dump({}), "");
}

TEST(MenuDump, everythingAboutAnItemStandsOnItsLine) {
    const Menu menu = {
        {.title = "plain", .enabled = true},
        {.title = "grey"},
        {.title = "Icon only", .action = MenuAction::toggleCompact, .enabled = true, .checked = true},
        {.title = "api", .action = MenuAction::focusSession, .enabled = true, .tag = 7},
        {.title = "deep", .indentation = 2},
        {.title = "Undo", .selector = "undo:", .enabled = true},
        {.title = "Quit", .action = MenuAction::quit, .enabled = true, .keyEquivalent = "q"},
        {.title = "file", .tooltip = "/f", .action = MenuAction::openHandoff, .enabled = true, .path = "/f"},
    };
    EXPECT_EQ(dump(menu), R"("plain"
("grey")
"Icon only" checked -> toggleCompact
"api" tag=7 -> focusSession
    ("deep")
"Undo" -> undo:
"Quit" key=cmd-q -> quit
"file" -> openHandoff path="/f" tooltip="/f"
)");
}

TEST(MenuDump, aTextWithLineFeedsOrQuotesStaysOnItsLine) {
    EXPECT_EQ(dump({{.title = "a\n\"b\"\\", .tooltip = "1\n2"}}), R"(("a\n\"b\"\\") tooltip="1\n2")"
                                                                  "\n");
}

TEST(MenuDump, aSubmenuIsIndentedBelowItsItem) {
    const Menu menu = {{.title = "Edit", .enabled = true, .submenu = {{.kind = MenuItem::Kind::separator}}}};
    EXPECT_EQ(dump(menu), "\"Edit\"\n  ---\n");
}

TEST(MenuAction, everyOneHasATextOfItsOwn) {
    std::set<std::string_view> texts;
    const int last = static_cast<int>(MenuAction::quit);
    for (int action = 0; action <= last; ++action) {
        texts.insert(rawText(static_cast<MenuAction>(action)));
    }
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(last) + 1);
    EXPECT_EQ(rawText(MenuAction::none), "");
    EXPECT_EQ(rawText(MenuAction::focusSession), "focusSession");
}
